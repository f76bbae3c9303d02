#include "exporterrun.h"
#include "model/gaugedata.h"
#include "model/gaugefile.h"
#include "support/testmain.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace Qt::StringLiterals;

/// Tables of angles as files of the exporter.
class tst_ExporterTables : public ExporterTest
{
    Q_OBJECT

private Q_SLOTS:
    void jsonDescribesTheGauge();
    void takesLayersWhoseLabelsAreShown();
    void chosenLayers_data();
    void chosenLayers();
    void refusesChoices_data();
    void refusesChoices();
    void maxErrorChangesThePoints();
    void eachScaleGetsAnXmlFile();
    void oneFileTakesOneScale();
    void refusesOneFileForTwoGauges();
    void manyScalesOfOneName();
    void gaugesWithoutScale();
    void samplesHaveTheirScales_data();
    void samplesHaveTheirScales();

private:
    [[nodiscard]] QJsonObject json(const QStringList &arguments) const;
    void writeLayers(const QString &file, const QList<gaugeLayer> &layers) const
    {
        write(file, gaugeFile::write(layers));
    }
};

namespace {

/// A straight scale.
gaugeLayer layer(const QString &name, double start, double increment, double startAngle, double length)
{
    gaugeData data;
    data.divisionCount[0] = 2;
    data.tickCountStart = start;
    data.tickCountIncrement = increment;
    data.startAngle = startAngle;
    data.angleLength = length;
    return {name, data};
}

QStringList namesOf(const QJsonObject &document)
{
    QStringList names;
    for (const QJsonValue &scale : document[u"scales"].toArray())
        names.append(scale[u"name"].toString());
    return names;
}

QJsonArray pointsOf(const QJsonObject &document)
{
    return document[u"scales"][0][u"points"].toArray();
}

} // namespace

QJsonObject tst_ExporterTables::json(const QStringList &arguments) const
{
    const ExporterRun result =
        run(QStringList{u"-f"_s, u"json"_s, u"-"_s} + arguments, {.input = read(u"Dial.gauge"_s)});
    if (result.status != 0)
        qWarning("%s", result.err.constData());
    return QJsonDocument::fromJson(result.out).object();
}

void tst_ExporterTables::jsonDescribesTheGauge()
{
    writeLayers(u"My \"dial\".gauge"_s,
                {layer(u"Volts"_s, 0.0, 5.0, -60.0, 120.0), layer(u"Needle"_s, 0.0, 0.0, 30.0, 360.0)});
    const ExporterRun result =
        run({u"-f"_s, u"json"_s, u"-s"_s, u"512,101"_s, u"--split"_s, u"Needle"_s, u"My \"dial\".gauge"_s});
    QCOMPARE(result.err, QByteArray());
    const QByteArray bytes = read(u"My \"dial\".json"_s);
    QVERIFY(bytes.endsWith("}\n") && !bytes.contains('\r'));
    const QJsonObject document = QJsonDocument::fromJson(bytes).object();
    QCOMPARE(document[u"gauge"].toString(), u"My \"dial\""_s);
    QCOMPARE(document[u"version"].toString(), QStringLiteral(CORVALENCE_VERSION));
    QCOMPARE(document[u"size"].toInt(), 512);
    QCOMPARE(document[u"pivot"].toArray(), (QJsonArray{256, 256}));
    QCOMPARE(document[u"sizes"][1][u"pivot"].toArray(), (QJsonArray{50.5, 50.5}));
    const QJsonObject scale = document[u"scales"][0].toObject();
    QCOMPARE(scale, (QJsonObject{{u"name"_s, u"Volts"_s},
                                 {u"layers"_s, QJsonArray{u"Volts"_s}},
                                 {u"min"_s, 0},
                                 {u"max"_s, 10},
                                 {u"maxError"_s, 0.1},
                                 {u"points"_s, QJsonArray{QJsonArray{0, -60}, QJsonArray{10, 60}}}}));
    QCOMPARE(
        document[u"parts"][1].toObject(),
        (QJsonObject{{u"name"_s, u"needle"_s}, {u"angle"_s, 30}, {u"layers"_s, QJsonArray{u"Needle"_s}}}));
}

void tst_ExporterTables::takesLayersWhoseLabelsAreShown()
{
    gaugeLayer hidden = layer(u"Hidden"_s, 0.0, 1.0, 0.0, 90.0);
    hidden.data.tickCountEnabled = false;
    writeLayers(u"Dial.gauge"_s,
                {layer(u"One"_s, 0.0, 1.0, 0.0, 90.0), hidden, layer(u"Figure"_s, 7.0, 0.0, 0.0, 90.0),
                 layer(u"Two"_s, 0.0, 1.0, 0.0, 90.0)});
    QCOMPARE(namesOf(json({})), (QStringList{u"One"_s, u"Two"_s}));
    QCOMPARE(namesOf(json({u"--scale"_s, u"Hidden"_s})), QStringList{u"Hidden"_s});
}

void tst_ExporterTables::chosenLayers_data()
{
    QTest::addColumn<QStringList>("choices");
    QTest::addColumn<QStringList>("names");
    QTest::newRow("several") << QStringList{u"Scale B"_s, u"Scale A"_s}
                             << QStringList{u"Scale B"_s, u"Scale A"_s};
    QTest::newRow("list") << QStringList{u"Scale A,Scale B"_s} << QStringList{u"Scale A"_s, u"Scale B"_s};
    QTest::newRow("a layer twice") << QStringList{u"Scale A,Scale A"_s} << QStringList{u"Scale A"_s};
    QTest::newRow("beginning") << QStringList{u"Scale*"_s} << QStringList{u"Scale A"_s, u"Scale B"_s};
    QTest::newRow("number") << QStringList{u"2"_s} << QStringList{u"Scale B"_s};
    QTest::newRow("joined") << QStringList{u"All of it=Scale B,Scale A"_s} << QStringList{u"All of it"_s};
    QTest::newRow("joined by beginning") << QStringList{u"All=Scale*"_s} << QStringList{u"All"_s};
    QTest::newRow("name with =") << QStringList{u"x=Scale A"_s} << QStringList{u"x=Scale A"_s};
}

void tst_ExporterTables::chosenLayers()
{
    QFETCH(const QStringList, choices);
    QFETCH(const QStringList, names);
    QList<gaugeLayer> layers{layer(u"Scale A"_s, 0.0, 1.0, 0.0, 90.0),
                             layer(u"Scale B"_s, 2.0, 4.0, 90.2, 45.0)};
    if (choices.constFirst() == names.constFirst())
        layers.append(layer(u"x=Scale A"_s, 0.0, 1.0, 0.0, 90.0));
    writeLayers(u"Dial.gauge"_s, layers);
    QStringList arguments;
    for (const QString &choice : choices)
        arguments << u"--scale"_s << choice;
    const QJsonObject document = json(arguments);
    QCOMPARE(namesOf(document), names);
    if (names.constFirst().startsWith(u"All"_s)) {
        QCOMPARE(pointsOf(document).first().toArray(), (QJsonArray{0, 0}));
        QCOMPARE(pointsOf(document).last().toArray(), (QJsonArray{10, 135.2}));
    }
}

void tst_ExporterTables::refusesChoices_data()
{
    QTest::addColumn<QString>("choice");
    QTest::addColumn<QByteArray>("error");
    QTest::newRow("unknown") << u"Speed"_s << QByteArray("There is no layer \"Speed\".");
    QTest::newRow("unknown in a joined scale")
        << u"All=Low,Speed"_s << QByteArray("There is no layer \"Speed\".");
    QTest::newRow("empty in a list") << u"All=Low,"_s << QByteArray("There is no layer \"\".");
    QTest::newRow("empty name") << u" =Low"_s << QByteArray("There is no layer \"=Low\".");
    QTest::newRow("no scale") << u"Figure"_s
                              << QByteArray("The layer \"Figure\" has no scale: its increment is 0.");
    QTest::newRow("no divisions") << u"Empty"_s
                                  << QByteArray(
                                         "The layer \"Empty\" has no scale: it has no primary divisions.");
    QTest::newRow("increment too small")
        << u"Huge"_s
        << QByteArray(
               "The layer \"Huge\" has no scale: its values or angles are not finite, or its increment "
               "does not change the value.");
    QTest::newRow("values") << u"All=Low,Far"_s
                            << QByteArray(
                                   "The layers \"Low\" and \"Far\" do not meet: the values of one end at 2, "
                                   "those of the other begin at 3, a gap of 1.");
    QTest::newRow("angles") << u"All=Low,Off"_s
                            << QByteArray(
                                   "The layers \"Low\" and \"Off\" do not meet: at 2 one ends at 90 degrees, "
                                   "the other begins at 90.6, a gap of 0.6.");
    QTest::newRow("overlap") << u"All=Low,Low again"_s << QByteArray("do not meet");
}

void tst_ExporterTables::refusesChoices()
{
    QFETCH(const QString, choice);
    QFETCH(const QByteArray, error);
    gaugeLayer empty = layer(u"Empty"_s, 0.0, 1.0, 0.0, 90.0);
    empty.data.divisionCount[0] = 0;
    writeLayers(u"Dial.gauge"_s,
                {layer(u"Low"_s, 0.0, 1.0, 0.0, 90.0), empty, layer(u"Huge"_s, 1e300, 1.0, 0.0, 90.0),
                 layer(u"Far"_s, 3.0, 1.0, 90.0, 90.0), layer(u"Off"_s, 2.0, 1.0, 90.6, 90.0),
                 layer(u"Figure"_s, 7.0, 0.0, 0.0, 90.0), layer(u"Low again"_s, 0.0, 1.0, 0.0, 90.0)});
    const ExporterRun result = run({u"-f"_s, u"json"_s, u"--scale"_s, choice, u"Dial.gauge"_s});
    QCOMPARE(result.status, 1);
    QVERIFY2(result.err.contains(error), result.err.constData());
    QCOMPARE(files(), QStringList{u"Dial.gauge"_s});
}

void tst_ExporterTables::maxErrorChangesThePoints()
{
    gaugeLayer curved = layer(u"Curved"_s, 0.0, 1.0, 0.0, 90.0);
    curved.data.bias = 0.7;
    writeLayers(u"Dial.gauge"_s, {curved});
    const auto count = [this](const QString &maxError) {
        return pointsOf(json({u"--max-error"_s, maxError})).size();
    };
    QVERIFY(count(u"0.01"_s) > count(u"1"_s));
    QCOMPARE(count(u"90"_s), 2);
}

void tst_ExporterTables::eachScaleGetsAnXmlFile()
{
    writeLayers(u"Dial.gauge"_s, {layer(u"a/b"_s, 0.0, 1.0, 0.0, 90.0), layer(u"A:B"_s, 0.0, 2.0, 0.0, 45.0),
                                  layer(u"a_b"_s, 0.0, 3.0, 0.0, 45.0)});
    QCOMPARE(run("-f xml Dial.gauge").err, QByteArray());
    QCOMPARE(files(),
             (QStringList{u"Dial-A_B-2.xml"_s, u"Dial-a_b-3.xml"_s, u"Dial-a_b.xml"_s, u"Dial.gauge"_s}));
    QVERIFY(read(u"Dial-A_B-2.xml"_s).contains("<entry><ind>4</ind><dep>45</dep></entry>"));
    QCOMPARE(run("-f xml --scale A:B Dial.gauge").out, QByteArray("Dial.xml\n"));
}

void tst_ExporterTables::oneFileTakesOneScale()
{
    writeLayers(u"Dial.gauge"_s,
                {layer(u"One"_s, 0.0, 1.0, 0.0, 90.0), layer(u"Two"_s, 0.0, 1.0, 0.0, 90.0)});
    for (const char *arguments : {"--to one.xml Dial.gauge", "-f xml -"}) {
        const ExporterRun result = run(arguments, {.input = read(u"Dial.gauge"_s)});
        QCOMPARE(result.status, 1);
        QVERIFY(
            result.err.contains("It has 2 scales, but a file in xml holds only one (--scale chooses it)."));
    }
    QCOMPARE(run("--scale Two --to one.xml Dial.gauge").status, 0);
}

void tst_ExporterTables::refusesOneFileForTwoGauges()
{
    writeLayers(u"Dial.gauge"_s,
                {layer(u"One"_s, 0.0, 1.0, 0.0, 90.0), layer(u"Two"_s, 0.0, 1.0, 0.0, 90.0)});
    writeLayers(u"Dial-Two.gauge"_s, {layer(u"One"_s, 0.0, 1.0, 0.0, 90.0)});
    const ExporterRun result = run("-f xml --overwrite Dial.gauge Dial-Two.gauge");
    QCOMPARE(result.status, 1);
    QCOMPARE(result.err, QByteArray("Dial.gauge: Dial-Two.xml is already written for Dial-Two.gauge.\n"));

    // The first gauge creates the folder.
    QVERIFY(QDir(path({})).mkdir(u"folder"_s));
    QVERIFY(QFile::link(u"folder"_s, path(u"link"_s)));
    QCOMPARE(run("-f xml -j 1 --keep -o link/new Dial-Two.gauge Dial.gauge").err,
             QByteArray("Dial.gauge: link/new/Dial-Two.xml is already written for Dial-Two.gauge.\n"));
}

void tst_ExporterTables::manyScalesOfOneName()
{
    constexpr int count = 3000;
    writeLayers(u"Dial.gauge"_s, QList<gaugeLayer>(count, layer(u"A"_s, 0.0, 1.0, 0.0, 90.0)));
    const QByteArray names = run("-f xml --dry-run Dial.gauge").out;
    QCOMPARE(names.count('\n'), count);
    QVERIFY(names.contains("\nDial-A-3000.xml\n"));
    QCOMPARE(run("-f h Dial.gauge").status, 0);
    QVERIFY(read(u"Dial.h"_s).contains("dial_a_3000_tenths("));
}

void tst_ExporterTables::gaugesWithoutScale()
{
    writeLayers(u"Dial.gauge"_s, {layer(u"Figure"_s, 7.0, 0.0, 0.0, 90.0)});
    for (const char *format : {"xml", "h"}) {
        const ExporterRun result = run({u"-f"_s, QLatin1String(format), u"Dial.gauge"_s});
        QCOMPARE(result.status, 1);
        QVERIFY2(result.err.contains("Dial.gauge: It has no scale: "), result.err.constData());
    }
    QCOMPARE(namesOf(json({})), QStringList());
    QCOMPARE(files(), QStringList{u"Dial.gauge"_s});
}

void tst_ExporterTables::samplesHaveTheirScales_data()
{
    QTest::addColumn<QString>("sample");
    QTest::addColumn<QString>("choice");
    QTest::addColumn<double>("max");
    QTest::addColumn<double>("lastAngle");
    QTest::newRow("Ohmmeter") << u"Ohmmeter"_s << u"Ohms=Scale*,100 to 200 ohms,200 to 500 ohms"_s << 500.0
                              << -52.84;
    QTest::newRow("Battery") << u"Battery"_s << u"Percent"_s << 100.0 << 130.0;
    QTest::newRow("VU meter") << u"VU meter"_s << u"Percent"_s << 100.0 << 20.79;
    QTest::newRow("Clock") << u"Clock"_s << u"Hours"_s << 13.0 << 390.0;
}

void tst_ExporterTables::samplesHaveTheirScales()
{
    QFETCH(const QString, sample);
    QFETCH(const QString, choice);
    QFETCH(const double, max);
    QFETCH(const double, lastAngle);
    write(u"Dial.gauge"_s, readFile(QStringLiteral(CORVALENCE_SOURCE "/samples/%1.gauge").arg(sample)));
    const QJsonObject document = json({u"--scale"_s, choice});
    QCOMPARE(document[u"scales"].toArray().size(), 1);
    const QJsonArray last = pointsOf(document).last().toArray();
    QCOMPARE(last.at(0).toDouble(), max);
    QCOMPARE(last.at(1).toDouble(), lastAngle);
}

ADD_TEST_CLASS(tst_ExporterTables)
#include "tst_exportertables.moc"
