#include "render/angletable.h"
#include "render/angletablefiles.h"
#include "render/cnames.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSet>
#include <QTest>
#include <QXmlStreamReader>

#include <algorithm>

using namespace Qt::StringLiterals;

/// Tables of angles as JSON, XML and C, with names and numbers of all kinds.
class tst_AngleTableFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void numbersReadBackTheSame();
    void hostileNames_data();
    void hostileNames();
    void halvesOfSurrogatePairsAreReplaced();
    void identifiersDiffer();
    void headersOfGaugesHaveDifferentPrefixes();
    void headersRefuseNumbersThatDoNotFit();
    void headersUseTheUnitThatIsNeeded();
};

namespace {

AngleTable tableOf(const QString &name, const QList<QPointF> &points = {{0.0, -60.0}, {60.0, 60.0}})
{
    return {name, {name}, 0.1, points};
}

} // namespace

void tst_AngleTableFiles::numbersReadBackTheSame()
{
    for (const double number : {0.1, -1.0 / 3.0, 1e300, 5e-324, 120.0})
        QCOMPARE(shortestNumber(number).toDouble(), number);
    QCOMPARE(shortestNumber(0.1), QByteArray("0.1"));
    QCOMPARE(shortestNumber(-0.0), QByteArray("0"));
}

void tst_AngleTableFiles::hostileNames_data()
{
    QTest::addColumn<QString>("name");
    int row = 0;
    for (const QString &name : {u"*/ \"</script>&]]>"_s, u"?\?/"_s, u"-->"_s, u"--><!-- "_s,
                                u"\u0001\n\r\t\u001b\u007f"_s, u"int"_s, u""_s, u"\\"_s, u"\\u0022"_s,
                                u"#endif\n#error"_s, u"ä中\U0001f600"_s, u"\ufffe\uffff"_s, u"%n%s"_s})
        QTest::addRow("%d", row++) << name;
}

void tst_AngleTableFiles::hostileNames()
{
    QFETCH(const QString, name);
    const AngleTable table = tableOf(name);
    const QJsonObject json = QJsonDocument::fromJson(angleTableJson(table)).object();
    QCOMPARE(json[u"name"].toString(), name);

    QXmlStreamReader xml(angleTableXml(name, table));
    QString elements;
    while (!xml.atEnd()) {
        if (xml.readNext() == QXmlStreamReader::StartElement)
            elements += xml.name().toString() + u' ';
    }
    QCOMPARE(xml.errorString(), QString());
    QCOMPARE(elements, u"PropertyList interpolation entry ind dep entry ind dep "_s);

    // The name is in comments of plain ASCII, which end where they should.
    QByteArray header = angleTableHeader(name, {table});
    const QByteArray usual = angleTableHeader(u"x"_s, {tableOf(u"y"_s)});
    QCOMPARE(header.count('\n'), usual.count('\n'));
    QCOMPARE(header.count("/*"), usual.count("/*"));
    QCOMPARE(header.count("*/"), usual.count("*/"));
    QVERIFY(!header.contains("?\?") && !header.contains('\\'));
    QVERIFY(
        std::ranges::all_of(header, [](char byte) { return byte == '\n' || (byte >= ' ' && byte <= '~'); }));
}

void tst_AngleTableFiles::halvesOfSurrogatePairsAreReplaced()
{
    QString half = u"a"_s;
    half += QChar(0xd800);
    QCOMPARE(jsonString(half), QByteArray("\"a\xef\xbf\xbd\""));
    QVERIFY(angleTableXml(half, tableOf(half)).contains("a\xef\xbf\xbd of a\xef\xbf\xbd"));
}

void tst_AngleTableFiles::identifiersDiffer()
{
    const QStringList names{u"a b"_s, u"a-b"_s,           u"A B"_s,           u"a b 2"_s, u"a_b_2"_s,
                            u""_s,    u"scale"_s,         u"Dial"_s,          u"dial"_s,  u"1"_s,
                            u"int"_s, QString(300, u'x'), QString(301, u'x'), u"ä"_s};
    QList<AngleTable> tables;
    for (const QString &name : names)
        tables.append(tableOf(name));
    const QString header = QString::fromUtf8(angleTableHeader(u"Dial"_s, tables));
    const QRegularExpression function(u"static inline int32_t ([A-Za-z0-9_]+)\\("_s);
    QSet<QString> functions;
    for (const QRegularExpressionMatch &match : function.globalMatch(header)) {
        functions.insert(match.captured(1));
        QVERIFY(match.captured(1).size() <= 80);
    }
    QCOMPARE(functions.size(), names.size());
    QVERIFY(functions.contains(u"dial_tenths"_s) && functions.contains(u"dial_int_tenths"_s));
    // A name in C does not begin with a digit.
    QVERIFY(angleTableHeader(u"6 volts"_s, {tableOf(u"6 volts"_s)}).contains(" gauge_6_volts_"));
}

void tst_AngleTableFiles::headersOfGaugesHaveDifferentPrefixes()
{
    const QStringList names{u"Fuel 1"_s,
                            u"Fuel-1"_s,
                            u"Fuel_1"_s,
                            u"6 volts"_s,
                            u"Gauge 6 volts"_s,
                            u"Gauge"_s,
                            u"-"_s,
                            u"--"_s,
                            u"Engine oil pressure of the left engine"_s,
                            u"Engine oil pressure of the right engine"_s};
    QSet<QByteArray> prefixes;
    for (const QString &name : names) {
        const QByteArray prefix = gaugePrefix(name);
        QVERIFY2(!prefix.contains("__"), prefix.constData());
        prefixes.insert(prefix);
    }
    QCOMPARE(prefixes.size(), names.size());
    QCOMPARE(gaugePrefix(u"VU meter"_s), "vu_meter"_ba);
}

void tst_AngleTableFiles::headersRefuseNumbersThatDoNotFit()
{
    QCOMPARE(checkAngleTableHeader({tableOf(u"a"_s)}), QString());
    QCOMPARE(checkAngleTableHeader({tableOf(u"a"_s, {{0.0, 0.0}, {1e12, 90.0}})}),
             u"The scale \"a\" cannot be written in C: its values or angles are too large."_s);
    QCOMPARE(checkAngleTableHeader({tableOf(u"a"_s, {{0.0, 0.0}, {1.0, 1e300}})}),
             u"The scale \"a\" cannot be written in C: its values or angles are too large."_s);
    const QList<QPointF> tiny{{0.0, 0.0}, {1e-300, 90.0}};
    const QList<QPointF> farFromZero{{5e10, 0.0}, {5e10 + 10.0, 120.0}};
    for (const QList<QPointF> &points : {tiny, farFromZero}) {
        QCOMPARE(checkAngleTableHeader({tableOf(u"a"_s, points)}),
                 u"The scale \"a\" cannot be written in C: its values are too close together."_s);
    }
}

void tst_AngleTableFiles::headersUseTheUnitThatIsNeeded()
{
    // Rounding 0.005 of a value moves this needle by a hundredth of a degree.
    QVERIFY(angleTableHeader(u"a"_s, {tableOf(u"a"_s)}).contains("#define A_UNIT 100\n"));
    QVERIFY(angleTableHeader(u"a"_s, {tableOf(u"a"_s, {{0.0, 0.0}, {8000.0, 90.0}})})
                .contains("#define A_UNIT 1\n"));
    QVERIFY(angleTableHeader(u"a"_s, {tableOf(u"a"_s, {{0.0, 0.0}, {1e10, 90.0}})})
                .contains("tenths(int64_t value)"));
}

ADD_TEST_CLASS(tst_AngleTableFiles)
#include "tst_angletablefiles.moc"
