#include "model/gaugefile.h"
#include "support/records.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

/// The documents of tests/data/documents against the table beside them, and documents too large to keep.
class tst_Corpus : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init() { failOnUnexpectedWarnings(); }

    void tableHasEveryDocument();
    void documentIsReadAsTheTableSays_data();
    void documentIsReadAsTheTableSays();
    void ownDocumentIsWrittenAlike_data();
    void ownDocumentIsWrittenAlike();

    void tenThousandLayersComeBack();
    void nestingWithoutEndIsRefused_data();
    void nestingWithoutEndIsRefused();
    void enormousNameComesBack();
    void olderFormOfAHundredThousandFieldsIsRead();

private:
    QJsonObject m_table;
};

namespace {

QString dataFolder()
{
    return QStringLiteral(CORVALENCE_TEST_DATA);
}

QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("%s: %s", qUtf8Printable(path), qUtf8Printable(file.errorString()));
    return file.readAll();
}

QByteArray documentNamed(const QString &name)
{
    return bytesOf(dataFolder() + u"/documents/"_s + name);
}

/// As a file would hold it: numbers that JSON cannot hold are null.
QJsonObject asInAFile(const QJsonObject &json)
{
    return QJsonDocument::fromJson(QJsonDocument(json).toJson()).object();
}

/// A default layer's JSON object with @a values, which are keyed by their paths.
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
    m_table = QJsonDocument::fromJson(bytesOf(dataFolder() + u"/documents.json"_s), &error).object();
    QVERIFY2(error.error == QJsonParseError::NoError, qPrintable(error.errorString()));
}

void tst_Corpus::tableHasEveryDocument()
{
    QStringList documents = QDir(dataFolder() + u"/documents"_s).entryList(QDir::Files);
    QStringList entries = m_table.keys();
    documents.sort();
    entries.sort();
    QCOMPARE(documents, entries);
}

void tst_Corpus::documentIsReadAsTheTableSays_data()
{
    QTest::addColumn<QString>("name");
    for (const QString &name : m_table.keys())
        QTest::newRow(qPrintable(name)) << name;
}

void tst_Corpus::documentIsReadAsTheTableSays()
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
}

void tst_Corpus::ownDocumentIsWrittenAlike_data()
{
    QTest::addColumn<QString>("name");
    for (const QString &name : m_table.keys()) {
        if (m_table.value(name).toObject().contains("writtenByProgram"_L1))
            QTest::newRow(qPrintable(name)) << name;
    }
}

void tst_Corpus::ownDocumentIsWrittenAlike()
{
    QFETCH(const QString, name);
    QList<gaugeLayer> layers;
    QVERIFY(gaugeFile::read(documentNamed(name), &layers, nullptr));
    QCOMPARE(gaugeFile::write(layers), documentNamed(name));
}

void tst_Corpus::tenThousandLayersComeBack()
{
    QList<gaugeLayer> written;
    for (int i = 0; i < 10000; ++i) {
        written.append({QString::number(i), gaugeData()});
        written.last().data.divisionCount[static_cast<size_t>(i % 3)] = i;
    }
    const QByteArray bytes = gaugeFile::write(written);
    QList<gaugeLayer> read;
    QVERIFY(gaugeFile::read(bytes, &read, nullptr));
    QCOMPARE(read.size(), 10000);
    for (int i = 0; i < 10000; ++i) {
        QCOMPARE(read.at(i).name, QString::number(i));
        QCOMPARE(read.at(i).data.divisionCount, written.at(i).data.divisionCount);
    }
    QCOMPARE(gaugeFile::write(read), bytes);
}

void tst_Corpus::nestingWithoutEndIsRefused_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("arrays") << "{\"layers\": " + QByteArray(1000000, '[');
    QTest::newRow("objects") << QByteArray("{\"layers\": ").repeated(1000000);
}

void tst_Corpus::nestingWithoutEndIsRefused()
{
    QFETCH(const QByteArray, bytes);
    QList<gaugeLayer> layers(2);
    QString error;
    QVERIFY(!gaugeFile::read(bytes, &layers, &error));
    QCOMPARE(error, u"too deeply nested document"_s);
    QVERIFY(layers.isEmpty());
}

void tst_Corpus::enormousNameComesBack()
{
    const QString name(5000000, u'ß');
    QList<gaugeLayer> layers;
    QVERIFY(gaugeFile::read(gaugeFile::write({{name, gaugeData()}}), &layers, nullptr));
    QCOMPARE(layers.size(), 1);
    QVERIFY(layers.first().name == name); // not QCOMPARE, which would print it
}

void tst_Corpus::olderFormOfAHundredThousandFieldsIsRead()
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
