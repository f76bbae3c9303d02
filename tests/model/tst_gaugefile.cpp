#include "model/gaugefile.h"
#include "support/records.h"
#include "support/testmain.h"
#include "support/translator.h"
#include "support/warnings.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

using namespace Qt::StringLiterals;

/// Writing and reading gauge files. tst_Corpus tests reading with many documents.
class tst_GaugeFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void documentIsIndented();
    void layersAreWrittenInOrder();
    void layersAreReadBack();
    void namesAreReadBack();
    void layersAreReadIntoDefaults();
    void whiteSpaceIsTrimmed();
    void commaSeparatedFormatIsUtf8();

    void everyTruncatedDocumentIsRejected();
    void successKeepsTheError();
    void nullErrorIsAllowed();
    void nullLayersAreRejected();
    void messagesAreTranslated();
};

namespace {

QList<gaugeLayer> twoLayers()
{
    return {{u"Rim"_s, gaugeData()}, {u"Needle"_s, sampleLayer()}};
}

/// Reads a document that must be valid.
QList<gaugeLayer> read(const QByteArray &bytes)
{
    QList<gaugeLayer> layers;
    if (!gaugeFile::read(bytes, &layers, nullptr))
        qFatal("Cannot read %s", bytes.constData());
    return layers;
}

} // namespace

void tst_GaugeFile::documentIsIndented()
{
    QCOMPARE(gaugeFile::write({}), QByteArray("{\n"
                                              "    \"format\": \"corvalence.gauge\",\n"
                                              "    \"layers\": [\n"
                                              "    ],\n"
                                              "    \"version\": 2\n"
                                              "}\n"));
}

void tst_GaugeFile::layersAreWrittenInOrder()
{
    QJsonArray expected;
    for (const gaugeLayer &layer : twoLayers()) {
        QJsonObject object = layer.data.toJson();
        object.insert("name"_L1, layer.name);
        expected.append(object);
    }
    const QJsonObject root = QJsonDocument::fromJson(gaugeFile::write(twoLayers())).object();
    QCOMPARE(root.value("layers"_L1).toArray(), expected);
}

void tst_GaugeFile::layersAreReadBack()
{
    const QList<gaugeLayer> layers = read(gaugeFile::write(twoLayers()));
    QCOMPARE(layers.size(), 2);
    QCOMPARE(layers.at(0).name, u"Rim"_s);
    QCOMPARE(layers.at(1).name, u"Needle"_s);
    QCOMPARE(differingFields(layers.at(0).data, gaugeData()), QStringList());
    QCOMPARE(differingFields(layers.at(1).data, sampleLayer()), QStringList());
}

void tst_GaugeFile::namesAreReadBack()
{
    for (const QString &name :
         {u""_s, u"{\"a\\b\": null} "_s, u"a\nb\r\nc\td\b\f"_s, u"a\0b\u0001\u001f\u007f\u0085"_s,
          u"Größe \u05d0\u202e \U0001F9ED e\u0301"_s, QString(QChar(0xd83e)), u"\ufffe\uffff\ufeff"_s})
        QCOMPARE(read(gaugeFile::write({{name, gaugeData()}})).first().name, name);
}

void tst_GaugeFile::layersAreReadIntoDefaults()
{
    const QList<gaugeLayer> layers = read(R"({"layers": [{"gauge": {"bias": 0.25}}, {}]})");
    QCOMPARE(layers.size(), 2);
    QCOMPARE(layers.at(0).data.bias, 0.25);
    QCOMPARE(differingFields(layers.at(1).data, gaugeData()), QStringList());
}

void tst_GaugeFile::whiteSpaceIsTrimmed()
{
    const QByteArray space(" \t\n\r\v\f");
    QVERIFY(read(space + R"({"layers": [{}]})" + space).first().data.isDefault());
    QVERIFY(read(space + gaugeData().toQString().toUtf8() + space).first().data.isDefault());
    QList<gaugeLayer> layers;
    QString error;
    QVERIFY(!gaugeFile::read(space, &layers, &error));
    QCOMPARE(error, u"The file is empty."_s);
}

void tst_GaugeFile::commaSeparatedFormatIsUtf8()
{
    gaugeData data = sampleLayer();
    data.tickCountFont.setFamily(u"Schrift für Größen \U0001F9ED"_s);
    const QList<gaugeLayer> layers = read(data.toQString().toUtf8());
    QCOMPARE(layers.size(), 1);
    QCOMPARE(layers.first().name, u""_s);
    QCOMPARE(differingFields(layers.first().data, data), QStringList());
}

void tst_GaugeFile::everyTruncatedDocumentIsRejected()
{
    const QByteArray whole = gaugeFile::write(twoLayers()).trimmed();
    for (qsizetype length = 1; length < whole.size(); ++length) {
        QList<gaugeLayer> layers = twoLayers();
        QString error;
        QVERIFY2(!gaugeFile::read(whole.first(length), &layers, &error), whole.first(length));
        QVERIFY(layers.isEmpty());
        QVERIFY(!error.isEmpty());
    }
}

void tst_GaugeFile::successKeepsTheError()
{
    for (const QByteArray &bytes : {gaugeFile::write({gaugeLayer()}), gaugeData().toQString().toUtf8()}) {
        QList<gaugeLayer> layers = twoLayers();
        QString error = u"an earlier error"_s;
        QVERIFY(gaugeFile::read(bytes, &layers, &error));
        QCOMPARE(error, u"an earlier error"_s);
        QCOMPARE(layers.size(), 1);
    }
}

void tst_GaugeFile::nullErrorIsAllowed()
{
    for (const char *bytes : {"", "{", "{}", "gauge"}) {
        QList<gaugeLayer> layers = twoLayers();
        QVERIFY(!gaugeFile::read(bytes, &layers, nullptr));
        QVERIFY(layers.isEmpty());
    }
}

void tst_GaugeFile::nullLayersAreRejected()
{
    for (const QByteArray &bytes : {QByteArray(), QByteArray("{"), gaugeFile::write(twoLayers())}) {
        QString error = u"an earlier error"_s;
        QVERIFY(!gaugeFile::read(bytes, nullptr, &error));
        QCOMPARE(error, u"an earlier error"_s);
    }
}

void tst_GaugeFile::messagesAreTranslated()
{
    const BracketTranslator translator("QObject");
    const QMap<QByteArray, QString> messages{
        {"", u"[The file is empty.]"_s},
        {"{}", u"[The file contains no layers.]"_s},
        {"x",
         u"[It is not valid JSON, and does not look like a gauge file from an earlier version either.]"_s}};
    for (const QByteArray &bytes : messages.keys()) {
        QList<gaugeLayer> layers;
        QString error;
        QVERIFY(!gaugeFile::read(bytes, &layers, &error));
        QCOMPARE(error, messages.value(bytes));
    }
}

ADD_TEST_CLASS(tst_GaugeFile)
#include "tst_gaugefile.moc"
