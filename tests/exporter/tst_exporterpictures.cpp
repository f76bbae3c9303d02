#include "exporterrun.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QImage>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

/// What the first page of a PDF is drawn with.
QString drawingCommands(const QByteArray &document)
{
    const qsizetype stream = document.indexOf("stream\n") + 7;
    QByteArray compressed = document.mid(stream, document.indexOf("endstream", stream) - stream);
    // qUncompress() wants the length first; too small a guess is corrected by it.
    compressed.prepend(QByteArray("\0\0\x10\0", 4));
    return QString::fromLatin1(qUncompress(compressed));
}

} // namespace

/// What the files of the exporter hold: formats, sizes, lengths, layers and labels.
class tst_ExporterPictures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        failOnUnexpectedWarnings();
        m_folder = std::make_unique<QTemporaryDir>();
        m_gauge = writeGauge(path("Dial.gauge"));
    }

    void writesEachFormat_data();
    void writesEachFormat();
    void writesAPngOf512PixelsByDefault();
    void writesSeveralFormats();
    void writesEachSize_data();
    void writesEachSize();
    void drawsOnATransparentGround();
    void takesLayersByNameAndNumber_data();
    void takesLayersByNameAndNumber();
    void drawsOnlyTheLayersTaken();
    void namesLayersWithoutANameAsTheEditorDoes();
    void drawsLabelsAsTextOrAsPaths();
    void leavesPngLabelsAloneWhenTextIsPaths();
    void givesPicturesATrueSide_data();
    void givesPicturesATrueSide();
    void takesTheSizeFromSideAndDensity();
    void fillsThePage_data();
    void fillsThePage();
    void drawsHairlinesOnPaperOnePixelWide();
    void renewsOlderFiles();

private:
    [[nodiscard]] QString path(const char *name) const { return m_folder->filePath(QLatin1String(name)); }
    ExporterRun run(const QStringList &arguments) const
    {
        return runExporter(arguments, {.folder = m_folder->path()});
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_gauge;
};

void tst_ExporterPictures::writesEachFormat_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QByteArray>("beginning");
    QTest::newRow("PNG") << u"png"_s << QByteArray("\x89PNG\r\n\x1a\n");
    QTest::newRow("SVG") << u"svg"_s << QByteArray("<?xml");
    QTest::newRow("PDF") << u"pdf"_s << QByteArray("%PDF-");
    QTest::newRow("keyframe table") << u"csv"_s << QByteArray("Layer,Tick,Angle\rDial,0,");
}

void tst_ExporterPictures::writesEachFormat()
{
    QFETCH(const QString, format);
    QFETCH(const QByteArray, beginning);
    const ExporterRun result = run({u"--formats"_s, format, m_gauge});
    QCOMPARE(result.err, QByteArray());
    QCOMPARE(result.status, 0);
    QVERIFY(readFile(path("Dial.") + format).startsWith(beginning));
}

void tst_ExporterPictures::writesAPngOf512PixelsByDefault()
{
    QCOMPARE(run({m_gauge}).status, 0);
    QCOMPARE(contents(m_folder->path()), QStringList({u"Dial.gauge"_s, u"Dial.png"_s}));
    QCOMPARE(QImage(path("Dial.png")).size(), QSize(512, 512));
}

void tst_ExporterPictures::writesSeveralFormats()
{
    QCOMPARE(run({u"-f"_s, u"svg, png"_s, u"-f"_s, u"csv,svg"_s, m_gauge}).status, 0);
    QCOMPARE(contents(m_folder->path()),
             QStringList({u"Dial.csv"_s, u"Dial.gauge"_s, u"Dial.png"_s, u"Dial.svg"_s}));
}

void tst_ExporterPictures::writesEachSize_data()
{
    QTest::addColumn<QString>("sizes");
    QTest::addColumn<QMap<QString, int>>("pictures");
    QTest::newRow("the smallest") << u"64"_s << QMap<QString, int>{{u"Dial"_s, 64}};
    QTest::newRow("an odd one") << u"1001"_s << QMap<QString, int>{{u"Dial"_s, 1001}};
    QTest::newRow("several") << u"128, 64,300"_s
                             << QMap<QString, int>{
                                    {u"Dial-64"_s, 64}, {u"Dial-128"_s, 128}, {u"Dial-300"_s, 300}};
    QTest::newRow("one twice") << u"64,64"_s << QMap<QString, int>{{u"Dial"_s, 64}};
}

void tst_ExporterPictures::writesEachSize()
{
    QFETCH(const QString, sizes);
    using Pictures = QMap<QString, int>;
    QFETCH(const Pictures, pictures);
    QCOMPARE(run({u"-f"_s, u"png,svg,csv"_s, u"--size"_s, sizes, m_gauge}).status, 0);
    for (auto picture = pictures.cbegin(); picture != pictures.cend(); ++picture) {
        const QString stem = m_folder->filePath(picture.key());
        QCOMPARE(QImage(stem + u".png"_s).size(), QSize(picture.value(), picture.value()));
        const QByteArray box = u"viewBox=\"0 0 %1 %1\""_s.arg(picture.value()).toUtf8();
        QVERIFY(readFile(stem + u".svg"_s).contains(box));
    }
    // The table has no size and is there once; with it comes the gauge itself.
    QCOMPARE(contents(m_folder->path()).size(), 2 * pictures.size() + 2);
    QVERIFY(QFile::exists(path("Dial.csv")));
}

void tst_ExporterPictures::drawsOnATransparentGround()
{
    QCOMPARE(run({m_gauge}).status, 0);
    const QImage picture(path("Dial.png"));
    QCOMPARE(qAlpha(picture.pixel(0, 0)), 0);
    QCOMPARE(picture.pixel(256, 256), qRgba(255, 255, 255, 255)); // the dot at the centre
}

void tst_ExporterPictures::takesLayersByNameAndNumber_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QStringList>("expected");
    const auto rows = [](const char *title, const QStringList &values, const QStringList &expected) {
        QStringList options;
        for (const QString &value : values)
            options << u"--layers"_s << value;
        QTest::newRow(title) << options << expected;
    };
    rows("all", {}, {u"Face"_s, u"Scale, fine"_s, u"2"_s, u"Needle"_s, u"Face"_s});
    rows("one name", {u"Needle"_s}, {u"Needle"_s});
    rows("one number", {u"4"_s}, {u"Needle"_s});
    rows("several, in the order of the gauge", {u"Needle,1"_s}, {u"Face"_s, u"Needle"_s});
    rows("spaces around the comma", {u"4 , 1"_s}, {u"Face"_s, u"Needle"_s});
    rows("a name that two layers have", {u"Face"_s}, {u"Face"_s, u"Face"_s});
    rows("a name with a comma", {u"Scale, fine"_s}, {u"Scale, fine"_s});
    rows("the option twice", {u"Scale, fine"_s, u"Needle"_s}, {u"Scale, fine"_s, u"Needle"_s});
    rows("a name that is a number", {u"2"_s}, {u"2"_s});
    rows("the last number", {u"5"_s}, {u"Face"_s});
    rows("one layer twice", {u"4,Needle"_s}, {u"Needle"_s});
}

void tst_ExporterPictures::takesLayersByNameAndNumber()
{
    QFETCH(const QStringList, options);
    QFETCH(const QStringList, expected);
    const QString gauge =
        writeGauge(path("Five.gauge"), {u"Face"_s, u"Scale, fine"_s, u"2"_s, u"Needle"_s, u"Face"_s});
    const ExporterRun result = run(options + QStringList{u"-f"_s, u"gauge"_s, u"-o"_s, path("out"), gauge});
    QCOMPARE(result.err, QByteArray());
    QCOMPARE(layerNames(readFile(path("out/Five.gauge"))), expected);
}

void tst_ExporterPictures::drawsOnlyTheLayersTaken()
{
    const QString both = writeGauge(path("Both.gauge"), {u"One"_s, u"Other"_s});
    const QString one = writeGauge(path("One.gauge"), {u"One"_s});
    QCOMPARE(run({u"-f"_s, u"png,svg,csv"_s, one}).status, 0);
    QCOMPARE(run({u"-f"_s, u"png,svg,csv"_s, u"-l"_s, u"One"_s, both}).status, 0);
    for (const char *suffix : {".png", ".svg", ".csv"})
        QCOMPARE(readFile(path("Both") + QLatin1String(suffix)),
                 readFile(path("One") + QLatin1String(suffix)));
}

void tst_ExporterPictures::namesLayersWithoutANameAsTheEditorDoes()
{
    const QString gauge = writeGauge(path("My dial.v2.gauge"), {u""_s, u"Scale"_s, u""_s, u""_s});
    QCOMPARE(run({u"-f"_s, u"gauge"_s, u"-o"_s, path("out"), gauge}).status, 0);
    QCOMPARE(layerNames(readFile(path("out/My dial.v2.gauge"))),
             QStringList({u"My dial.v2"_s, u"Scale"_s, u"Layer 3"_s, u"Layer 4"_s}));
}

void tst_ExporterPictures::drawsLabelsAsTextOrAsPaths()
{
    QCOMPARE(run({u"-f"_s, u"svg"_s, m_gauge}).status, 0);
    const QByteArray text = readFile(path("Dial.svg"));
    QCOMPARE(text.count("<text "), 4); // three divisions of a partial sweep

    QCOMPARE(run({u"-f"_s, u"svg"_s, u"--text-as-paths"_s, u"--overwrite"_s, m_gauge}).status, 0);
    const QByteArray outlines = readFile(path("Dial.svg"));
    QCOMPARE(outlines.count("<text "), 0);
    QCOMPARE(outlines.count("<path "), text.count("<path ") + 4);
}

void tst_ExporterPictures::leavesPngLabelsAloneWhenTextIsPaths()
{
    QCOMPARE(run({m_gauge}).status, 0);
    QCOMPARE(run({u"--text-as-paths"_s, u"-o"_s, path("out"), m_gauge}).status, 0);
    QCOMPARE(readFile(path("out/Dial.png")), readFile(path("Dial.png")));
}

void tst_ExporterPictures::givesPicturesATrueSide_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<int>("size");
    QTest::addColumn<double>("millimetres");
    QTest::newRow("80 mm") << QStringList{u"--mm"_s, u"80"_s} << 512 << 80.0;
    QTest::newRow("80.5 mm at another size")
        << QStringList{u"--mm"_s, u"80.5"_s, u"--size"_s, u"2000"_s} << 2000 << 80.5;
    QTest::newRow("300 pixels per inch")
        << QStringList{u"--dpi"_s, u"300"_s, u"--size"_s, u"600"_s} << 600 << 50.8;
    QTest::newRow("the smallest") << QStringList{u"--mm"_s, u"1"_s} << 512 << 1.0;
    QTest::newRow("the largest") << QStringList{u"--mm"_s, u"5000"_s} << 512 << 5000.0;
}

void tst_ExporterPictures::givesPicturesATrueSide()
{
    QFETCH(const QStringList, options);
    QFETCH(const int, size);
    QFETCH(const double, millimetres);
    QCOMPARE(run(options + QStringList{u"-f"_s, u"png,svg,pdf"_s, m_gauge}).status, 0);

    const QImage picture(path("Dial.png"));
    QCOMPARE(picture.width(), size);
    QCOMPARE(picture.dotsPerMeterX(), static_cast<int>(std::round(size / millimetres * 1000.0)));
    QCOMPARE(picture.dotsPerMeterY(), picture.dotsPerMeterX());

    const QString drawing = QString::fromUtf8(readFile(path("Dial.svg")));
    const auto attributes = QRegularExpression(u"<svg width=\"([0-9.]+)mm\" height=\"([0-9.]+)mm\"\\s+"
                                               "viewBox=\"0 0 ([0-9]+) ([0-9]+)\""_s)
                                .match(drawing);
    QVERIFY(attributes.hasMatch());
    QCOMPARE(attributes.captured(1).toDouble(), millimetres);
    QCOMPARE(attributes.captured(2).toDouble(), millimetres);
    QCOMPARE(attributes.captured(3).toInt(), size);

    const QString page = QString::fromLatin1(readFile(path("Dial.pdf")));
    const auto box =
        QRegularExpression(u"/MediaBox \\[([0-9.]+) ([0-9.]+) ([0-9.]+) ([0-9.]+) *\\]"_s).match(page);
    QVERIFY(box.hasMatch());
    const double points = millimetres / 25.4 * 72.0;
    const double width = box.captured(3).toDouble() - box.captured(1).toDouble();
    const double height = box.captured(4).toDouble() - box.captured(2).toDouble();
    QVERIFY2(std::abs(width - points) <= 0.001, qPrintable(box.captured()));
    QVERIFY2(std::abs(height - points) <= 0.001, qPrintable(box.captured()));
}

void tst_ExporterPictures::takesTheSizeFromSideAndDensity()
{
    QCOMPARE(run({u"--mm"_s, u"50.8"_s, u"--dpi"_s, u"100"_s, m_gauge}).status, 0);
    const QImage picture(path("Dial.png"));
    QCOMPARE(picture.width(), 200);
    QCOMPARE(picture.dotsPerMeterX(), 3937); // 100 to the inch
}

void tst_ExporterPictures::fillsThePage_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<double>("points"); // of the page's side, 72 to the inch
    QTest::newRow("512 pixels of 1/96 inch") << QStringList{} << 384.0;
    QTest::newRow("1024 pixels of 1/96 inch") << QStringList{u"-s"_s, u"1024"_s} << 768.0;
    QTest::newRow("a true side") << QStringList{u"-s"_s, u"1024"_s, u"--mm"_s, u"127"_s} << 360.0;
}

void tst_ExporterPictures::fillsThePage()
{
    QFETCH(const QStringList, options);
    QFETCH(const double, points);
    QCOMPARE(run(options + QStringList{u"-f"_s, u"pdf"_s, m_gauge}).status, 0);
    const QString commands = drawingCommands(readFile(path("Dial.pdf")));
    // The page's own scale, then the drawing's, which is left out when it is 1.
    static const QRegularExpression scale(u"\n([0-9.]+) 0 0 (-?[0-9.]+) [0-9.]+ [0-9.]+ cm\n"_s);
    double across = 1.0;
    double down = 1.0;
    int scales = 0;
    for (auto found = scale.globalMatch(commands); scales < 2 && found.hasNext(); ++scales) {
        const QRegularExpressionMatch match = found.next();
        across *= match.captured(1).toDouble();
        down *= match.captured(2).toDouble();
    }
    QVERIFY(scales > 0);
    constexpr double canvas = 512.0;
    constexpr double writtenTo = 1e-5; // the file's numbers have nine decimals
    QVERIFY2(std::abs(across * canvas - points) < writtenTo, qPrintable(QString::number(across * canvas)));
    QVERIFY2(std::abs(down * canvas + points) < writtenTo, qPrintable(QString::number(down * canvas)));
}

void tst_ExporterPictures::drawsHairlinesOnPaperOnePixelWide()
{
    // All lines of a default layer are hairlines: one device pixel on a screen, next to nothing in print.
    QCOMPARE(run({u"-f"_s, u"pdf"_s, u"-s"_s, u"1024"_s, m_gauge}).status, 0);
    const QString commands = drawingCommands(readFile(path("Dial.pdf")));
    // Each width holds until the next; what is stroked with it ends in S, or in B* when it is filled too.
    static const QRegularExpression stroke(u"\n([0-9.]+) w (?:(?! w ).)*?\n(?:S|B\\*)\n"_s,
                                           QRegularExpression::DotMatchesEverythingOption);
    int strokes = 0;
    for (auto found = stroke.globalMatch(commands); found.hasNext(); ++strokes)
        QCOMPARE(found.next().captured(1).toDouble(), 0.5); // canvas units: half a pixel each at this size
    QCOMPARE(strokes, 6);                                   // the dot, an arc and four ticks
}

void tst_ExporterPictures::renewsOlderFiles()
{
    gaugeData data;
    data.startAngle = -30;
    data.divisionCount[1] = 5;
    const QString older = writeFile(path("Older.gauge"), data.toQString().toUtf8());
    QCOMPARE(run({u"-f"_s, u"gauge"_s, u"--overwrite"_s, older}).status, 0);
    QCOMPARE(readFile(older), gaugeFile::write({{u"Older"_s, data}}));
}

ADD_TEST_CLASS(tst_ExporterPictures)
#include "tst_exporterpictures.moc"
