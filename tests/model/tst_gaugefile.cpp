#include "model/gaugefile.h"
#include "support/records.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QScopeGuard>
#include <QTest>

using namespace Qt::StringLiterals;

/// A gauge as bytes: what is written, and what is read from documents of either form.
class tst_GaugeFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void documentHasFormatVersionAndLayers();
    void documentIsIndented();
    void layersAreWrittenInTheirOrder();
    void twoLayersComeBack();
    void everyNameComesBack_data();
    void everyNameComesBack();

    void documentIsReadWithoutItsLabels_data();
    void documentIsReadWithoutItsLabels();
    void nameThatIsNoTextIsEmpty_data();
    void nameThatIsNoTextIsEmpty();
    void elementThatIsNoObjectIsADefaultLayer_data();
    void elementThatIsNoObjectIsADefaultLayer();
    void layersStartFromTheDefaults();
    void spaceAroundTheDocumentIsIgnored_data();
    void spaceAroundTheDocumentIsIgnored();

    void olderFormYieldsOneUnnamedLayer();
    void olderFormIsReadAsUtf8();
    void byteOrderMarkMakesItTheOlderForm();
};

namespace {

QList<gaugeLayer> twoLayers()
{
    return {{u"Rim"_s, gaugeData()}, {u"Needle"_s, sampleLayer()}};
}

QByteArray olderForm(const gaugeData &data)
{
    return data.toQString().toUtf8();
}

void compareWithDefault(const gaugeLayer &layer, const QString &name)
{
    QCOMPARE(layer.name, name);
    QCOMPARE(valuesOf(layer.data), valuesOf(gaugeData()));
}

} // namespace

void tst_GaugeFile::documentHasFormatVersionAndLayers()
{
    const QJsonObject root = QJsonDocument::fromJson(gaugeFile::write(twoLayers())).object();
    QCOMPARE(root.keys(), (QStringList{u"format"_s, u"layers"_s, u"version"_s}));
    QCOMPARE(root.value("format"_L1), QJsonValue(u"corvalence.gauge"_s));
    QCOMPARE(root.value("version"_L1), QJsonValue(2));
    QVERIFY(root.value("layers"_L1).isArray());
}

void tst_GaugeFile::documentIsIndented()
{
    QCOMPARE(gaugeFile::write({}), QByteArray("{\n"
                                              "    \"format\": \"corvalence.gauge\",\n"
                                              "    \"layers\": [\n"
                                              "    ],\n"
                                              "    \"version\": 2\n"
                                              "}\n"));
}

void tst_GaugeFile::layersAreWrittenInTheirOrder()
{
    const QList<gaugeLayer> layers = twoLayers();
    QJsonArray expected;
    for (const gaugeLayer &layer : layers) {
        QJsonObject object = layer.data.toJson();
        object.insert("name"_L1, layer.name);
        expected.append(object);
    }
    const QJsonObject root = QJsonDocument::fromJson(gaugeFile::write(layers)).object();
    QCOMPARE(root.value("layers"_L1).toArray(), expected);
}

void tst_GaugeFile::twoLayersComeBack()
{
    const QList<gaugeLayer> written = twoLayers();
    QList<gaugeLayer> read;
    QVERIFY(gaugeFile::read(gaugeFile::write(written), &read, nullptr));
    QCOMPARE(read.size(), 2);
    for (qsizetype i = 0; i < 2; ++i) {
        QCOMPARE(read.at(i).name, written.at(i).name);
        QCOMPARE(read.at(i).data.toJson(), written.at(i).data.toJson());
    }
}

void tst_GaugeFile::everyNameComesBack_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("empty") << u""_s;
    QTest::newRow("spaces") << u"  two  "_s;
    QTest::newRow("quotes and backslashes") << uR"("C:\dials\" / 'x')"_s;
    QTest::newRow("line ends and tabs") << u"a\nb\r\nc\td\b\f"_s;
    QTest::newRow("control characters") << u"\u0001\u001f\u007f\u0085"_s;
    QTest::newRow("null character") << u"a\0b"_s;
    QTest::newRow("umlauts") << u"Größe ÄÖÜ"_s;
    QTest::newRow("combining marks") << u"e\u0301\u0323"_s;
    QTest::newRow("right to left") << u"\u05d0\u05d1 \u202eabc\u202c"_s;
    QTest::newRow("beyond the first plane") << u"\U0001F9ED\U0001D11E"_s;
    QTest::newRow("half a surrogate pair") << QString(QChar(0xd83e)) + u"x"_s;
    QTest::newRow("not a character") << u"\ufffe\uffff\ufeff"_s;
    QTest::newRow("line separators") << u"a\u2028b\u2029c"_s;
    QTest::newRow("placeholders") << u"%1 %n &amp; <b>"_s;
    QTest::newRow("looks like JSON") << u"{\"name\": null}"_s;
    QTest::newRow("long") << QString(100000, u'x');
}

void tst_GaugeFile::everyNameComesBack()
{
    QFETCH(const QString, name);
    QList<gaugeLayer> layers;
    QVERIFY(gaugeFile::read(gaugeFile::write({{name, gaugeData()}}), &layers, nullptr));
    QCOMPARE(layers.size(), 1);
    QCOMPARE(layers.first().name, name);
}

void tst_GaugeFile::documentIsReadWithoutItsLabels_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("neither") << QByteArray(R"({"layers": [{"name": "A"}]})");
    QTest::newRow("format alone") << QByteArray(
        R"({"format": "corvalence.gauge", "layers": [{"name": "A"}]})");
    QTest::newRow("others") << QByteArray(
        R"({"format": "dial", "version": 99, "layers": [{"name": "A"}], "more": [1]})");
    QTest::newRow("of other types") << QByteArray(
        R"({"format": 2, "version": "two", "layers": [{"name": "A"}]})");
}

void tst_GaugeFile::documentIsReadWithoutItsLabels()
{
    QFETCH(const QByteArray, bytes);
    QList<gaugeLayer> layers;
    QVERIFY(gaugeFile::read(bytes, &layers, nullptr));
    QCOMPARE(layers.size(), 1);
    compareWithDefault(layers.first(), u"A"_s);
}

void tst_GaugeFile::nameThatIsNoTextIsEmpty_data()
{
    QTest::addColumn<QByteArray>("layer");
    QTest::newRow("absent") << QByteArray("{}");
    QTest::newRow("null") << QByteArray(R"({"name": null})");
    QTest::newRow("number") << QByteArray(R"({"name": 5})");
    QTest::newRow("flag") << QByteArray(R"({"name": true})");
    QTest::newRow("array") << QByteArray(R"({"name": ["A"]})");
    QTest::newRow("object") << QByteArray(R"({"name": {"name": "A"}})");
    QTest::newRow("capitals") << QByteArray(R"({"Name": "A"})");
}

void tst_GaugeFile::nameThatIsNoTextIsEmpty()
{
    QFETCH(const QByteArray, layer);
    QList<gaugeLayer> layers;
    QVERIFY(gaugeFile::read("{\"layers\": [" + layer + "]}", &layers, nullptr));
    QCOMPARE(layers.size(), 1);
    compareWithDefault(layers.first(), u""_s);
}

void tst_GaugeFile::elementThatIsNoObjectIsADefaultLayer_data()
{
    QTest::addColumn<QByteArray>("element");
    QTest::newRow("null") << QByteArray("null");
    QTest::newRow("number") << QByteArray("7");
    QTest::newRow("text") << QByteArray(R"("name")");
    QTest::newRow("flag") << QByteArray("true");
    QTest::newRow("array") << QByteArray(R"([{"name": "A"}])");
}

void tst_GaugeFile::elementThatIsNoObjectIsADefaultLayer()
{
    QFETCH(const QByteArray, element);
    QList<gaugeLayer> layers;
    QVERIFY(gaugeFile::read(R"({"layers": [{"name": "A"}, )" + element + R"(, {"name": "C"}]})", &layers,
                            nullptr));
    QCOMPARE(layers.size(), 3);
    compareWithDefault(layers.at(0), u"A"_s);
    compareWithDefault(layers.at(1), u""_s);
    compareWithDefault(layers.at(2), u"C"_s);
}

void tst_GaugeFile::layersStartFromTheDefaults()
{
    QList<gaugeLayer> layers;
    QVERIFY(gaugeFile::read(R"({"layers": [{"gauge": {"bias": 0.25}}, {}]})", &layers, nullptr));
    QCOMPARE(layers.size(), 2);
    QCOMPARE(layers.at(0).data.bias, 0.25);
    compareWithDefault(layers.at(1), u""_s);
}

void tst_GaugeFile::spaceAroundTheDocumentIsIgnored_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray space(" \t\n\r\v\f");
    QTest::newRow("today's form") << space + R"({"layers": [{}]})" + space;
    QTest::newRow("older form") << space + olderForm(gaugeData()) + space;
}

void tst_GaugeFile::spaceAroundTheDocumentIsIgnored()
{
    QFETCH(const QByteArray, bytes);
    QList<gaugeLayer> layers;
    QVERIFY(gaugeFile::read(bytes, &layers, nullptr));
    QCOMPARE(layers.size(), 1);
    compareWithDefault(layers.first(), u""_s);
}

void tst_GaugeFile::olderFormYieldsOneUnnamedLayer()
{
    QList<gaugeLayer> layers;
    QVERIFY(gaugeFile::read(olderForm(sampleLayer()), &layers, nullptr));
    QCOMPARE(layers.size(), 1);
    QCOMPARE(layers.first().name, u""_s);
    QCOMPARE(valuesOf(layers.first().data), valuesOf(sampleLayer()));
}

void tst_GaugeFile::olderFormIsReadAsUtf8()
{
    gaugeData data;
    data.tickCountFont = QFont(u"Schrift für Größen \U0001F9ED"_s, 12);
    QList<gaugeLayer> layers;
    QVERIFY(gaugeFile::read(data.toQString().toUtf8(), &layers, nullptr));
    QCOMPARE(layers.first().data.tickCountFont, data.tickCountFont);
}

void tst_GaugeFile::byteOrderMarkMakesItTheOlderForm()
{
    // The mark is no brace, so the fields are counted; as text the mark itself is dropped.
    gaugeData data;
    data.startAngle = 45.0;
    QList<gaugeLayer> layers;
    QVERIFY(gaugeFile::read("\xef\xbb\xbf" + olderForm(data), &layers, nullptr));
    QCOMPARE(layers.size(), 1);
    QCOMPARE(valuesOf(layers.first().data), valuesOf(data));
}

ADD_TEST_CLASS(tst_GaugeFile)
#include "tst_gaugefile.moc"
