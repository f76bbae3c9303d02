#include "model/gaugefile.h"
#include "support/records.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QTest>
#include <QTranslator>

using namespace Qt::StringLiterals;

/// What cannot be read as a gauge: what is said, and what is left of the caller's layers and message.
class tst_GaugeFileErrors : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void emptyGaugeIsWrittenButNotRead();
    void unreadableBytesGiveAMessageAndNoLayers_data();
    void unreadableBytesGiveAMessageAndNoLayers();
    void everyCutDocumentIsRefused();
    void successReplacesTheLayersAndLeavesTheError_data();
    void successReplacesTheLayersAndLeavesTheError();
    void nullLayersFailAndLeaveTheError_data();
    void nullLayersFailAndLeaveTheError();
    void messagesAreTranslated_data();
    void messagesAreTranslated();
    void olderFormNeedsFiftyFields();
};

namespace {

const auto emptyFile = u"The file is empty."_s;
const auto noLayers = u"The file contains no layers."_s;
const auto noGauge =
    u"It is not valid JSON, and does not look like a gauge file from an earlier version either."_s;

const auto oldError = u"an earlier error"_s;

QList<gaugeLayer> twoLayers()
{
    return {{u"Rim"_s, gaugeData()}, {u"Needle"_s, sampleLayer()}};
}

QByteArray olderForm(const gaugeData &data)
{
    return data.toQString().toUtf8();
}

} // namespace

void tst_GaugeFileErrors::emptyGaugeIsWrittenButNotRead()
{
    QList<gaugeLayer> layers;
    QString error;
    QVERIFY(!gaugeFile::read(gaugeFile::write({}), &layers, &error));
    QCOMPARE(error, noLayers);
}

void tst_GaugeFileErrors::unreadableBytesGiveAMessageAndNoLayers_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("message");
    QTest::newRow("no bytes") << QByteArray() << emptyFile;
    QTest::newRow("space alone") << QByteArray(" \n \r\n\t ") << emptyFile;
    QTest::newRow("form feed and vertical tab") << QByteArray("\f\v") << emptyFile;

    const auto parserSays = [](const QByteArray &bytes) {
        QJsonParseError error{};
        QJsonDocument::fromJson(bytes, &error);
        return error.errorString();
    };
    const QList<std::pair<const char *, QByteArray>> broken{
        {"brace alone", "{"},
        {"object without end", R"({"layers": [{}])"},
        {"array without end", R"({"layers": [{})"},
        {"text without end", R"({"layers)"},
        {"word in place of a value", R"({"layers": none})"},
        {"comma at the end", R"({"layers": [{}],})"},
        {"two documents", R"({"layers": [{}]}{})"},
        {"null character after the document", QByteArray("{\"layers\": [{}]}\0", 17)},
        {"invalid UTF-8", "{\"layers\": [{\"name\": \"\xff\"}]}"},
    };
    for (const auto &[name, bytes] : broken)
        QTest::newRow(name) << bytes << parserSays(bytes);

    QTest::newRow("empty object") << QByteArray("{}") << noLayers;
    QTest::newRow("no layers") << QByteArray(R"({"format": "corvalence.gauge", "version": 2})") << noLayers;
    QTest::newRow("empty layers") << QByteArray(R"({"layers": []})") << noLayers;
    QTest::newRow("layers in an object") << QByteArray(R"({"layers": {}})") << noLayers;
    QTest::newRow("one layer in an object") << QByteArray(R"({"layers": {"name": "x"}})") << noLayers;
    QTest::newRow("layers in a text") << QByteArray(R"({"layers": "[{}]"})") << noLayers;
    QTest::newRow("layers null") << QByteArray(R"({"layers": null})") << noLayers;
    QTest::newRow("number of layers") << QByteArray(R"({"layers": 3})") << noLayers;
    QTest::newRow("layers in capitals") << QByteArray(R"({"Layers": [{}]})") << noLayers;
    QTest::newRow("layers deeper down") << QByteArray(R"({"gauge": {"layers": [{}]}})") << noLayers;

    QTest::newRow("a word") << QByteArray("gauge") << noGauge;
    QTest::newRow("array at the root") << QByteArray(R"([{"layers": [{}]}])") << noGauge;
    QTest::newRow("text at the root") << QByteArray(R"("{}")") << noGauge;
    QTest::newRow("49 fields") << QByteArray(48, ',') << noGauge;
    QTest::newRow("byte-order mark") << QByteArray("\xef\xbb\xbf{\"layers\": [{}]}") << noGauge;
    QTest::newRow("UTF-16") << QByteArray("{\0\"\0", 4).prepend("\xff\xfe") << noGauge;
    QTest::newRow("null character first") << QByteArray("\0{\"layers\": [{}]}", 17) << noGauge;
    QTest::newRow("comment first") << QByteArray("// gauge\n{\"layers\": [{}]}") << noGauge;
}

void tst_GaugeFileErrors::unreadableBytesGiveAMessageAndNoLayers()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const QString, message);

    QList<gaugeLayer> layers = twoLayers();
    QString error = oldError;
    QVERIFY(!gaugeFile::read(bytes, &layers, &error));
    QCOMPARE(error, message);
    QCOMPARE(layers.size(), 0);

    layers = twoLayers();
    QVERIFY(!gaugeFile::read(bytes, &layers, nullptr));
    QCOMPARE(layers.size(), 0);
}

void tst_GaugeFileErrors::everyCutDocumentIsRefused()
{
    const QByteArray whole = gaugeFile::write(twoLayers()).trimmed();
    for (qsizetype length = 1; length < whole.size(); ++length) {
        QList<gaugeLayer> layers = twoLayers();
        QString error;
        QVERIFY2(!gaugeFile::read(whole.first(length), &layers, &error), whole.first(length).constData());
        QCOMPARE(layers.size(), 0);
        QVERIFY(!error.isEmpty());
    }
}

void tst_GaugeFileErrors::successReplacesTheLayersAndLeavesTheError_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("today's form") << gaugeFile::write({gaugeLayer()});
    QTest::newRow("older form") << olderForm(gaugeData());
}

void tst_GaugeFileErrors::successReplacesTheLayersAndLeavesTheError()
{
    QFETCH(const QByteArray, bytes);
    QList<gaugeLayer> layers = twoLayers();
    QString error = oldError;
    QVERIFY(gaugeFile::read(bytes, &layers, &error));
    QCOMPARE(error, oldError);
    QCOMPARE(layers.size(), 1);
    QVERIFY(layers.first().data.isDefault());
}

void tst_GaugeFileErrors::nullLayersFailAndLeaveTheError_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("broken document") << QByteArray("{");
    QTest::newRow("good document") << gaugeFile::write(twoLayers());
    QTest::newRow("older form") << olderForm(gaugeData());
}

void tst_GaugeFileErrors::nullLayersFailAndLeaveTheError()
{
    QFETCH(const QByteArray, bytes);
    QString error = oldError;
    QVERIFY(!gaugeFile::read(bytes, nullptr, &error));
    QCOMPARE(error, oldError);
    QVERIFY(!gaugeFile::read(bytes, nullptr, nullptr));
}

/// Puts what it is asked for into brackets, in the context of QObject only.
class BracketTranslator : public QTranslator
{
public:
    [[nodiscard]] bool isEmpty() const override { return false; }
    [[nodiscard]] QString translate(const char *context, const char *source, const char * /*comment*/,
                                    int /*n*/) const override
    {
        if (qstrcmp(context, "QObject") != 0)
            return {};
        return u'[' + QString::fromUtf8(source) + u']';
    }
};

void tst_GaugeFileErrors::messagesAreTranslated_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("message");
    QTest::newRow("empty") << QByteArray() << emptyFile;
    QTest::newRow("no layers") << QByteArray("{}") << noLayers;
    QTest::newRow("no gauge") << QByteArray("x") << noGauge;
}

void tst_GaugeFileErrors::messagesAreTranslated()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const QString, message);
    BracketTranslator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    QList<gaugeLayer> layers;
    QString error;
    QVERIFY(!gaugeFile::read(bytes, &layers, &error));
    QCOMPARE(error, u'[' + message + u']');
}

void tst_GaugeFileErrors::olderFormNeedsFiftyFields()
{
    const QByteArray fortyNine = QByteArray(48, ',').replace(',', "1,") + "Helvetica";
    QList<gaugeLayer> layers;
    QString error;
    QVERIFY(!gaugeFile::read(fortyNine, &layers, &error));
    QCOMPARE(error, noGauge);
    QVERIFY(gaugeFile::read(fortyNine + ",#ffffff", &layers, &error));
    QCOMPARE(layers.size(), 1);
}

ADD_TEST_CLASS(tst_GaugeFileErrors)
#include "tst_gaugefileerrors.moc"
