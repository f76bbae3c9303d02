#include "model/gaugefile.h"
#include "support/files.h"
#include "support/records.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

/// Reads the documents in tests/data/documents and compares the layers with tests/data/documents.json. Also
/// reads very large documents.
class tst_Corpus : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init() { failOnUnexpectedWarnings(); }

    void tableListsEachDocument();
    void documentIsRead_data();
    void documentIsRead();

    void tenThousandLayers();
    void deepNestingIsRejected();
    void hundredThousandFields();

private:
    QJsonObject m_table;
};

namespace {

QByteArray documentNamed(const QString &name)
{
    return readFile(testDataPath(u"documents/"_s + name));
}

/// The object after writing and parsing it: NaN and infinity become null.
QJsonObject asInAFile(const QJsonObject &json)
{
    return QJsonDocument::fromJson(QJsonDocument(json).toJson()).object();
}

/// The JSON object of a default layer with @a values, whose keys are paths.
QJsonObject defaultWith(const QJsonObject &values)
{
    QJsonObject json = gaugeData().toJson();
    for (auto value = values.begin(); value != values.end(); ++value)
        json = withValueAt(json, value.key(), value.value());
    return json;
}

void expectWarning(const QString &beginning)
{
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u'^' + QRegularExpression::escape(beginning)));
}

} // namespace

void tst_Corpus::initTestCase()
{
    QJsonParseError error{};
    m_table = QJsonDocument::fromJson(readFile(testDataPath(u"documents.json"_s)), &error).object();
    QVERIFY2(error.error == QJsonParseError::NoError, qPrintable(error.errorString()));
}

void tst_Corpus::tableListsEachDocument()
{
    QStringList documents = QDir(testDataPath(u"documents"_s)).entryList(QDir::Files);
    QStringList entries = m_table.keys();
    documents.sort();
    entries.sort();
    QCOMPARE(documents, entries);
}

void tst_Corpus::documentIsRead_data()
{
    QTest::addColumn<QString>("name");
    for (const QString &name : m_table.keys())
        QTest::newRow(qPrintable(name)) << name;
}

void tst_Corpus::documentIsRead()
{
    QFETCH(const QString, name);
    const QJsonObject entry = m_table.value(name).toObject();
    const QJsonArray expected = entry.value("layers"_L1).toArray();
    if (entry.contains("warning"_L1))
        expectWarning(entry.value("warning"_L1).toString());

    QList<gaugeLayer> layers(2);
    QString error;
    const bool accepted = gaugeFile::read(documentNamed(name), &layers, &error);

    QCOMPARE(error, entry.value("error"_L1).toString());
    QCOMPARE(accepted, !entry.contains("error"_L1));
    QCOMPARE(layers.size(), expected.size());
    for (qsizetype i = 0; i < layers.size(); ++i) {
        const QJsonObject layer = expected.at(i).toObject();
        QCOMPARE(layers.at(i).name, layer.value("name"_L1).toString());
        QCOMPARE(asInAFile(layers.at(i).data.toJson()), defaultWith(layer.value("values"_L1).toObject()));
    }
    if (entry.contains("writtenByProgram"_L1))
        QCOMPARE(gaugeFile::write(layers), documentNamed(name));
}

void tst_Corpus::tenThousandLayers()
{
    QList<gaugeLayer> written;
    for (int i = 0; i < 10000; ++i)
        written.append({QString::number(i), sampleLayer(i % 200)});
    const QByteArray bytes = gaugeFile::write(written);
    QList<gaugeLayer> read;
    QVERIFY(gaugeFile::read(bytes, &read, nullptr));
    QCOMPARE(read.size(), 10000);
    QCOMPARE(read.last().name, u"9999"_s);
    QCOMPARE(gaugeFile::write(read), bytes);
}

void tst_Corpus::deepNestingIsRejected()
{
    for (const QByteArray &bytes :
         {R"({"layers": )" + QByteArray(1000000, '['), QByteArray(R"({"layers": )").repeated(1000000)}) {
        QList<gaugeLayer> layers(2);
        QString error;
        QVERIFY(!gaugeFile::read(bytes, &layers, &error));
        QCOMPARE(error, u"too deeply nested document"_s);
        QVERIFY(layers.isEmpty());
    }
}

void tst_Corpus::hundredThousandFields()
{
    expectWarning(u"QFont::fromString: Invalid description '7,7,7"_s);
    QList<gaugeLayer> layers;
    QVERIFY(gaugeFile::read(QByteArray("7,").repeated(99999) + "#123456", &layers, nullptr));
    QCOMPARE(layers.size(), 1);
    QCOMPARE(layers.first().data.angleLength, 7.0);
    QCOMPARE(layers.first().data.tickCountFont, QFont(u"7"_s, 7));
    QCOMPARE(layers.first().data.tickCountColor, QColor(0x12, 0x34, 0x56));
}

ADD_TEST_CLASS(tst_Corpus)
#include "tst_corpus.moc"
