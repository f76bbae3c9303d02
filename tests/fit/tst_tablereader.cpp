#include "fit/scalecurve.h"
#include "fit/tablereader.h"
#include "model/gaugedata.h"
#include "render/angletable.h"
#include "render/angletablefiles.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QTest>

#include <cmath>

using namespace Qt::StringLiterals;

/// The tables of measured points that are read and refused.
class tst_TableReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void readsTables_data();
    void readsTables();
    void readsExportedTables_data();
    void readsExportedTables();
    void refusesFaults_data();
    void refusesFaults();
};

namespace {

QByteArray xmlTable(const QByteArray &content)
{
    return "<?xml version=\"1.0\"?>\n<PropertyList>\n" + content + "\n</PropertyList>\n";
}

QByteArray jsonTable(const QByteArray &points)
{
    return "{\"scales\": [{\"points\": " + points + "}]}";
}

} // namespace

void tst_TableReader::readsTables_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QList<QPointF>>("points");
    const QList<QPointF> rising{{0.0, -45.0}, {1.5, 0.0}, {10.0, 45.0}};
    const auto row = [](const char *name, const QByteArray &bytes, const QList<QPointF> &points) {
        QTest::newRow(name) << bytes << points;
    };

    row("commas", "0,-45\n1.5,0\n10,45\n", rising);
    row("semicolons", "0;-45\n1.5;0\n10;45\n", rising);
    row("decimal commas", "0;-45,0\n1,5;0\n10;45\n", rising);
    row("tabs", "0\t-45\n1.5\t0\n10\t45\n", rising);
    row("blanks", "0 -45\n 1.5    0 \n10 45", rising);
    row("blanks around separators", "0 , -45\n1.5, 0\n 10 ,45\n", rising);
    row("heading", "ohms,angle\n0,-45\n1.5,0\n10,45\n", rising);
    row("heading of three words", "ohms and angle\n0,-45\n1.5,0\n10,45\n", rising);
    row("comments and empty lines", "# a meter\n\nohms,angle # both\n0,-45 # the left end\n\n1.5,0\n#\n10,45",
        rising);
    row("Windows lines", "ohms,angle\r\n0,-45\r\n1.5,0\r\n10,45\r\n", rising);
    row("lines that end with a carriage return", "0,-45\r1.5,0\r10,45\r", rising);
    row("byte-order mark", "\xef\xbb\xbfvalue,angle\n0,-45\n1.5,0\n10,45\n", rising);
    row("exponents and plus signs", "+0e0,-4.5e1\n15E-1,+0\n1e1,45\n", rising);
    row("any order", "10,45\n0,-45\n1.5,0\n", rising);
    row("a point twice", "0,-45\n1.5,0\n0,-45\n10,45\n", rising);
    row("falling angles", "0,45\n1,0\n", {{0.0, 45.0}, {1.0, 0.0}});
    row("a flat part", "0,0\n1,5\n2,5\n3,9\n", {{0.0, 0.0}, {1.0, 5.0}, {2.0, 5.0}, {3.0, 9.0}});
    row("several turns", "0,0\n10,1000\n", {{0.0, 0.0}, {10.0, 1000.0}});
    row("XML",
        xmlTable("<interpolation><note/><entry><ind>0</ind><dep>-45</dep></entry>\n"
                 "<entry><ind> 1.5 </ind><dep>0</dep><note/></entry>"
                 "<entry><ind>10</ind><dep>45</dep></entry></interpolation><other><entry/></other>"),
        rising);
    row("JSON", jsonTable("[[0, -45], [1.5, 0], [10, 45]]"), rising);
    row("the largest numbers", "-1e15,0\n1e15,1e15\n", {{-1e15, 0.0}, {1e15, 1e15}});
}

void tst_TableReader::readsTables()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const QList<QPointF>, points);
    const MeasuredTable table = readTable(bytes);
    QCOMPARE(table.failure, QString());
    QCOMPARE(table.points, points);
}

void tst_TableReader::readsExportedTables_data()
{
    QTest::addColumn<QList<gaugeData>>("layers");
    gaugeData scale;
    scale.startAngle = -120.0;
    scale.angleLength = 240.0;
    scale.divisionCount[0] = 10;
    scale.tickCountStart = 5.0;
    scale.tickCountIncrement = 10.0;
    for (const double bias : {0.001, 0.3, 0.5, 0.999}) {
        for (const bool midpoint : {false, true}) {
            scale.bias = bias;
            scale.midpointBias = midpoint;
            QTest::addRow("bias %g%s", bias, midpoint ? " of the midpoint" : "") << QList<gaugeData>{scale};
        }
    }
    scale.bias = 0.001;
    scale.midpointBias = false;
    scale.tickCountStart = 0.0;
    QTest::newRow("a jump at 0") << QList<gaugeData>{scale};
    // No number lies between the last two values, and the last is a power of two.
    scale.tickCountIncrement = 1.0;
    for (const auto &[divisions, bias] : {std::pair(4, 0.01), {8, 0.02}, {8, 0.05}}) {
        scale.divisionCount[0] = divisions;
        scale.bias = bias;
        QTest::addRow("a jump at %d, bias %g", divisions, bias) << QList<gaugeData>{scale};
    }
    scale.divisionCount[0] = 4;
    scale.bias = 0.99;
    QTest::newRow("the steepest jump of the editor's form") << QList<gaugeData>{scale};
    scale.tickCountStart = -4.0;
    QTest::newRow("a jump at -4") << QList<gaugeData>{scale};
    scale.divisionCount[0] = 10;
    scale.tickCountStart = 0.0;
    scale.tickCountIncrement = 10.0;
    scale.bias = 0.5;
    gaugeData next = scale;
    next.tickCountStart = 100.0;
    next.startAngle = 120.0;
    QTest::newRow("layers that meet") << QList<gaugeData>{scale, next};
    next.startAngle = 120.0 + 1e-13;
    QTest::newRow("layers that meet but for rounding") << QList<gaugeData>{scale, next};
    next.startAngle = 120.0 - 1e-13;
    QTest::newRow("layers that overlap by rounding") << QList<gaugeData>{scale, next};
    next.startAngle = 119.85;
    QTest::newRow("layers that overlap a little") << QList<gaugeData>{scale, next};
    next.startAngle = 120.5;
    QTest::newRow("layers that are apart") << QList<gaugeData>{scale, next};
}

void tst_TableReader::readsExportedTables()
{
    QFETCH(const QList<gaugeData>, layers);
    AngleTable table;
    table.points = joinedTablePoints(layers, table.maxError);
    QVERIFY(table.points.size() >= 2);
    for (const QByteArray &file :
         {angleTableXml(u"Gauge"_s, table), "{\"scales\": [" + angleTableJson(table) + "]}"}) {
        const MeasuredTable read = readTable(file);
        QCOMPARE(read.failure, QString());
        for (const auto kind : {ScaleCurve::Kind::Smooth, ScaleCurve::Kind::Straight}) {
            const ScaleCurve curve(read.points, kind);
            for (const QPointF &point : std::as_const(table.points))
                QVERIFY(std::abs(curve.angle(point.x()) - point.y()) < 2.0 * table.maxError);
            double before = table.points.constFirst().y();
            for (int i = 0; i <= 1000; ++i) {
                const double angle =
                    curve.angle(curve.minValue() * (1.0 - i / 1000.0) + curve.maxValue() * (i / 1000.0));
                QVERIFY(angle >= before - 1e-9);
                before = angle;
            }
        }
    }
}

void tst_TableReader::refusesFaults_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("failure");
    const auto row = [](const char *name, const QByteArray &bytes, const QString &failure) {
        QTest::newRow(name) << bytes << failure;
    };
    const QString tooFew = u"line 1: the file ends after no point; a scale needs two points at least"_s;

    row("empty", "", tooFew);
    row("only a heading", "value,angle\n", tooFew);
    row("one point", "0,1\n", u"line 1: the file ends after one point; a scale needs two points at least"_s);
    row("one point twice", "0,1\n\n0,1\n",
        u"line 3: the file ends after one point; a scale needs two points at least"_s);
    row("two headings", "value,angle\nohms,degrees\n", u"line 2: \"ohms\" is not a number"_s);
    row("prose", "Dear Sir,\nthank you, for\n", u"line 2: \"thank you\" is not a number"_s);
    row("a column missing", "0,1\n5\n", u"line 2: one column instead of two, value and angle"_s);
    row("a number missing", "0,1\n5,\n", u"line 2: a number is missing"_s);
    row("too many columns", "0 1 2\n", u"line 1: 3 columns instead of two, value and angle"_s);
    row("decimal commas between commas", "0,5,1,5\n",
        u"line 1: 4 columns instead of two, value and angle (decimal commas need semicolons between the "
        "columns)"_s);
    row("decimal comma and point", "1.000,5;1\n", u"line 1: \"1.000,5\" is not a number"_s);
    row("quotes", "\"0\",\"1\"\n", u"line 1: \"\"0\"\" is not a number"_s);
    row("hexadecimal", "0,1\n0x10,2\n", u"line 2: \"0x10\" is not a number"_s);
    row("a long text", "0,1\n" + QByteArray(1000, 'x') + ",2\n",
        u"line 2: \"xxxxxxxxxxxxxxxxxxxxxxxxxxxxxx…\" is not a number"_s);
    row("not a number", "nan,1\n", u"line 1: \"nan\" is not a finite number"_s);
    row("infinite", "0,1\n1,-inf\n", u"line 2: \"-inf\" is not a finite number"_s);
    row("beyond a double", "1e400,1e400\n", u"line 1: \"1e400\" is not a finite number"_s);
    row("too large", "0,1\n1e308,2\n", u"line 2: \"1e308\" is too large; numbers are limited to 1e15"_s);
    row("two angles", "0,1\n5,2\n5,3\n", u"line 3: the value 5 has the angle 3 here and 2 at line 2"_s);
    row("values too close", "1,1\n1.0000000000000002,2\n",
        u"line 2: the value 1.0000000000000002 is too close to that at line 1"_s);
    row("angles turn back", "0,1\n9,4\n5,7\n",
        u"line 2: the angles turn back, from 7 at the value 5 to 4 at 9"_s);
    row("angles come back", "0,1\n1,2\n2,1\n",
        u"line 3: the angles turn back, from 2 at the value 1 to 1 at 2"_s);
    row("angles turn back by tiny numbers", "0,0\n1,2e-170\n2,1e-170\n",
        u"line 3: the angles turn back, from 2e-170 at the value 1 to 1e-170 at 2"_s);
    row("layers that overlap", jsonTable("[[0, 1], [5, 4.4], [5.000000000000001, 4], [9, 8]]"),
        u"point 3: the angles turn back, from 4.4 at the value 5 to 4 at 5, where layers meet; remove one of "
        u"both "
        "points"_s);
    row("a jump too steep", jsonTable("[[0, 0], [1e-250, 10], [1, 30]]"),
        u"point 2: the value 1e-250 is too close to that at point 1"_s);
    row("all angles the same", "0,1\n5,1\n", u"line 2: all angles are the same"_s);
    row("NUL", QByteArray("0,1\n1,\0", 8) + "2\n", u"line 2: a NUL byte, which is no text"_s);
    for (const QByteArray &mark : {QByteArray("\xff\xfe"), QByteArray("\xfe\xff")})
        row(mark.toHex().constData(), mark + "0,1\n1,2\n",
            u"line 1: the text is in UTF-16; a table must be in UTF-8"_s);

    row("another XML", "<html>\n</html>",
        u"line 1: the XML is no angle table: its root is not \"PropertyList\""_s);
    row("XML without a table", xmlTable(""),
        u"line 4: the file ends after no point; a scale needs two points at least"_s);
    row("two tables in XML", xmlTable("<interpolation/>\n<interpolation/>"),
        u"line 4: a second \"interpolation\"; a table has one"_s);
    row("XML without a number", xmlTable("<interpolation>\n<entry><ind>1</ind></entry></interpolation>"),
        u"line 4: an entry needs a number in \"ind\" and in \"dep\""_s);
    row("XML with a text",
        xmlTable("<interpolation><entry><ind>1</ind><dep>two</dep></entry></interpolation>"),
        u"line 3: \"two\" is not a number"_s);
    row("XML with a line break in a number",
        xmlTable("<interpolation><entry><ind>1\n2</ind><dep>2</dep></entry></interpolation>"),
        u"line 3: \"1 2\" is not a number"_s);
    row("XML that ends early", "<PropertyList>\n<interpolation><entry><ind>1</ind>",
        u"line 2: Premature end of document."_s);
    row("JSON without scales", "{}",
        u"line 1: the JSON is no table of one scale: \"scales\" has 0 elements"_s);
    row("JSON of two scales", "{\"scales\": [{}, {}]}",
        u"line 1: the JSON is no table of one scale: \"scales\" has 2 elements (corvalence-export "
        "--scale writes one of them)"_s);
    row("JSON without points", "{\"scales\": [{}]}",
        u"\"points\": the file ends after no point; a scale needs two points at least"_s);
    row("JSON with a text", jsonTable("[[0, 1], [1, \"2\"]]"),
        u"point 2: it is not a pair of numbers, value and angle"_s);
    row("JSON that ends early", "{\"scales\": [{\"points\": [[0, 1]\n, [1",
        u"line 2: invalid termination by number"_s);
    row("JSON with three numbers", jsonTable("[[0, 1, 2]]"),
        u"point 1: it is not a pair of numbers, value and angle"_s);
    row("JSON beyond the limit", jsonTable("[[0, 1], [1e16, 2]]"),
        u"point 2: \"1e+16\" is too large; numbers are limited to 1e15"_s);
    row("JSON a little beyond the limit", jsonTable("[[0, 1], [1000000400000000, 2]]"),
        u"point 2: \"1.0000004e+15\" is too large; numbers are limited to 1e15"_s);
}

void tst_TableReader::refusesFaults()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const QString, failure);
    const MeasuredTable table = readTable(bytes);
    QCOMPARE(table.failure, failure);
    QVERIFY(table.points.isEmpty());
}

ADD_TEST_CLASS(tst_TableReader)
#include "tst_tablereader.moc"
