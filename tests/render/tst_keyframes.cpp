#include "model/gaugedata.h"
#include "render/keyframes.h"
#include "render/sweep.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QTest>

#include <cmath>
#include <limits>

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
const QString header = QStringLiteral("Layer,Tick,Angle\r");

gaugeData quarterTurn()
{
    gaugeData layer;
    layer.angleLength = 90.0;
    layer.divisionCount[0] = 2;
    layer.tickCountIncrement = 50.0;
    return layer;
}

QList<double> angles(const gaugeData &layer)
{
    QList<double> found;
    const QList<QPointF> frames = keyframes(layer);
    for (const QPointF &frame : frames)
        found.append(frame.y());
    return found;
}

QList<double> values(const gaugeData &layer)
{
    QList<double> found;
    const QList<QPointF> frames = keyframes(layer);
    for (const QPointF &frame : frames)
        found.append(frame.x());
    return found;
}

} // namespace

/// Where a needle points for each reading, and the table that is made of it.
class tst_Keyframes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void pairsTickValuesWithAngles();
    void angleZeroIsNegativeZero();
    void goesThroughThePaintersAngle_data();
    void goesThroughThePaintersAngle();
    void countsTicksAsThePainterDoes_data();
    void countsTicksAsThePainterDoes();
    void addsUpFromTickToTick();
    void ignoresWhetherLabelsAreShown();
    void ignoresSubTicks();
    void lengthThatIsNoNumberGivesAnglesThatAreNone();

    void writesNumbers_data();
    void writesNumbers();

    void tableOfNothingIsItsHeader();
    void tableOfAQuarterTurn();
    void tableOfAFullCircle();
    void layerWithoutDivisionsHasNoLines();
    void layersFollowOneAnother();
    void linesEndInCarriageReturnsOnly();
    void quotesNames_data();
    void quotesNames();
    void writesOddNumbersUnquoted();
};

void tst_Keyframes::pairsTickValuesWithAngles()
{
    const QList<QPointF> frames = keyframes(quarterTurn());
    QCOMPARE(frames.size(), 3);
    QVERIFY(frames.at(0).x() == 0.0);
    QVERIFY(frames.at(0).y() == 0.0);
    QVERIFY(frames.at(1).x() == 50.0);
    QVERIFY(frames.at(1).y() == 45.0);
    QVERIFY(frames.at(2).x() == 100.0);
    QVERIFY(frames.at(2).y() == 90.0);
}

void tst_Keyframes::angleZeroIsNegativeZero()
{
    const double angle = keyframes(quarterTurn()).first().y();
    QVERIFY(angle == 0.0);
    QVERIFY(std::signbit(angle));
}

void tst_Keyframes::goesThroughThePaintersAngle_data()
{
    QTest::addColumn<double>("start");
    QTest::addColumn<double>("length");
    QTest::addColumn<double>("bias");
    QTest::addColumn<bool>("midpoint");
    QTest::newRow("thirds") << 0.1 << 77.7 << 0.5 << false;
    QTest::newRow("crowded start") << -135.3 << 270.6 << 0.2 << false;
    QTest::newRow("crowded end") << 12.34 << 200.0 << 0.9 << false;
    QTest::newRow("midpoint") << 5.0 << 123.4 << 0.3 << true;
    QTest::newRow("counter-clockwise") << 0.7 << -99.9 << 0.6 << true;
    QTest::newRow("roundings that show") << 1e-15 << 1.0 << 0.5 << false;
}

void tst_Keyframes::goesThroughThePaintersAngle()
{
    QFETCH(const double, start);
    QFETCH(const double, length);
    QFETCH(const double, bias);
    QFETCH(const bool, midpoint);
    gaugeData layer;
    layer.startAngle = start;
    layer.angleLength = length;
    layer.bias = bias;
    layer.midpointBias = midpoint;
    layer.divisionCount[0] = 7;
    const QList<double> found = angles(layer);
    QCOMPARE(found.size(), 8);
    for (int i = 0; i <= 7; ++i) {
        const double mathematical = (90.0 - start) - length * biasedFraction(i / 7.0, bias, midpoint);
        const double expected = -(mathematical - 90.0);
        QVERIFY(found.at(i) == expected);
    }
}

void tst_Keyframes::countsTicksAsThePainterDoes_data()
{
    QTest::addColumn<double>("length");
    QTest::addColumn<int>("divisions");
    QTest::addColumn<int>("frames");
    QTest::newRow("part of a circle") << 359.0 << 4 << 5;
    QTest::newRow("full circle") << 360.0 << 4 << 4;
    QTest::newRow("full circle counter-clockwise") << -360.0 << 4 << 4;
    QTest::newRow("no number") << notANumber << 4 << 5;
    QTest::newRow("without end") << infinity << 4 << 4;
    QTest::newRow("one") << 120.0 << 1 << 2;
    QTest::newRow("none, unlike the painter") << 120.0 << 0 << 0;
    QTest::newRow("negative") << 120.0 << -3 << 0;
    QTest::newRow("least int") << 120.0 << std::numeric_limits<int>::min() << 0;
}

void tst_Keyframes::countsTicksAsThePainterDoes()
{
    QFETCH(const double, length);
    QFETCH(const int, divisions);
    QFETCH(const int, frames);
    gaugeData layer;
    layer.angleLength = length;
    layer.divisionCount[0] = divisions;
    QCOMPARE(keyframes(layer).size(), frames);
}

void tst_Keyframes::addsUpFromTickToTick()
{
    gaugeData layer;
    layer.divisionCount[0] = 10;
    layer.tickCountIncrement = 0.1;
    const QList<double> found = values(layer);
    QCOMPARE(found.size(), 11);
    double sum = 0.0;
    for (const double value : found) {
        QVERIFY(value == sum);
        sum += 0.1;
    }
    // Ten tenths one after another fall short of a whole.
    QVERIFY(found.last() < 1.0);
}

void tst_Keyframes::ignoresWhetherLabelsAreShown()
{
    gaugeData layer = quarterTurn();
    layer.tickCountEnabled = false;
    layer.tickCountSkipFirst = true;
    layer.tickCountDecimalPlaces = 7;
    QCOMPARE(keyframeTable({{QStringLiteral("A"), layer}}),
             keyframeTable({{QStringLiteral("A"), quarterTurn()}}));
}

void tst_Keyframes::ignoresSubTicks()
{
    gaugeData layer = quarterTurn();
    layer.divisionCount = {2, 5, 5};
    QCOMPARE(angles(layer), angles(quarterTurn()));
}

void tst_Keyframes::lengthThatIsNoNumberGivesAnglesThatAreNone()
{
    gaugeData layer = quarterTurn();
    layer.angleLength = notANumber;
    const QList<double> found = angles(layer);
    QCOMPARE(found.size(), 3);
    for (const double angle : found)
        QVERIFY(std::isnan(angle));
}

void tst_Keyframes::writesNumbers_data()
{
    QTest::addColumn<double>("number");
    QTest::addColumn<QString>("text");
    QTest::newRow("whole") << 45.0 << "45";
    QTest::newRow("half") << 12.5 << "12.5";
    QTest::newRow("nearly a tenth") << 0.09999999999999432 << "0.1";
    QTest::newRow("too small to show") << 1e-11 << "0";
    QTest::newRow("ten decimals") << 0.0123456789 << "0.0123456789";
    QTest::newRow("rounded to ten") << 1.0 / 3.0 << "0.3333333333";
    QTest::newRow("rounded up") << 2.0 / 3.0 << "0.6666666667";
    QTest::newRow("zeros before the point stay") << 100.0 << "100";
    QTest::newRow("zeros within stay") << 10.0205 << "10.0205";
    QTest::newRow("zero") << 0.0 << "0";
    QTest::newRow("negative") << -135.25 << "-135.25";
    QTest::newRow("no grouping, no exponent") << 1e15 << "1000000000000000";
    QTest::newRow("not a number") << notANumber << "nan";
    QTest::newRow("infinite") << infinity << "inf";
    QTest::newRow("negative infinite") << -infinity << "-inf";
}

void tst_Keyframes::writesNumbers()
{
    QFETCH(const double, number);
    QFETCH(const QString, text);
    QCOMPARE(csvNumber(number), text);
}

void tst_Keyframes::tableOfNothingIsItsHeader()
{
    QCOMPARE(keyframeTable({}), header);
}

void tst_Keyframes::tableOfAQuarterTurn()
{
    const QStringList lines =
        keyframeTable({{QStringLiteral("Name"), quarterTurn()}}).split(QLatin1Char('\r'));
    QCOMPARE(lines.size(), 5);
    QCOMPARE(lines.at(0), QStringLiteral("Layer,Tick,Angle"));
    // A negative zero looks as Qt prints it.
    QVERIFY2(lines.at(1) == QLatin1String("Name,0,0") || lines.at(1) == QLatin1String("Name,0,-0"),
             qPrintable(lines.at(1)));
    QCOMPARE(lines.at(2), QStringLiteral("Name,50,45"));
    QCOMPARE(lines.at(3), QStringLiteral("Name,100,90"));
    QCOMPARE(lines.at(4), QString());
}

void tst_Keyframes::tableOfAFullCircle()
{
    gaugeData layer;
    layer.startAngle = 10.0;
    layer.angleLength = 360.0;
    layer.tickCountStart = -1.5;
    layer.tickCountIncrement = 0.25;
    const QString expected = header + QStringLiteral("A,-1.5,10\rA,-1.25,100\rA,-1,190\rA,-0.75,280\r");
    QCOMPARE(keyframeTable({{QStringLiteral("A"), layer}}), expected);
}

void tst_Keyframes::layerWithoutDivisionsHasNoLines()
{
    gaugeData layer;
    layer.divisionCount[0] = 0;
    QCOMPARE(keyframeTable({{QStringLiteral("Name"), layer}}), header);
}

void tst_Keyframes::layersFollowOneAnother()
{
    gaugeData first;
    first.startAngle = 1.0;
    first.angleLength = 10.0;
    first.divisionCount[0] = 1;
    gaugeData none = first;
    none.divisionCount[0] = -1;
    gaugeData last = first;
    last.startAngle = 2.0;
    const QString expected = header + QStringLiteral("First,0,1\rFirst,1,11\rLast,0,2\rLast,1,12\r");
    QCOMPARE(keyframeTable({{QStringLiteral("First"), first},
                            {QStringLiteral("None"), none},
                            {QStringLiteral("Last"), last}}),
             expected);
}

void tst_Keyframes::linesEndInCarriageReturnsOnly()
{
    const QString table = keyframeTable({{QStringLiteral("A"), quarterTurn()}});
    QCOMPARE(table.count(QLatin1Char('\r')), 4);
    QVERIFY(table.endsWith(QLatin1Char('\r')));
    QVERIFY(!table.contains(QLatin1Char('\n')));
}

void tst_Keyframes::quotesNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("field");
    QTest::newRow("plain") << "Layer 1"
                           << "Layer 1";
    QTest::newRow("empty") << ""
                           << "";
    QTest::newRow("comma") << "Speed, mph"
                           << "\"Speed, mph\"";
    QTest::newRow("quote") << "6\" dial"
                           << "\"6\"\" dial\"";
    QTest::newRow("only quotes") << "\"\""
                                 << "\"\"\"\"\"\"";
    QTest::newRow("comma and quote") << "\"a\",b"
                                     << "\"\"\"a\"\",b\"";
    QTest::newRow("line feed") << "two\nlines"
                               << "\"two\nlines\"";
    QTest::newRow("carriage return") << "two\rlines"
                                     << "\"two\rlines\"";
    QTest::newRow("other signs stay bare") << " 'tab\t; |"
                                           << " 'tab\t; |";
    QTest::newRow("beyond Latin") << QString::fromUtf8("Größe 速度") << QString::fromUtf8("Größe 速度");
}

void tst_Keyframes::quotesNames()
{
    QFETCH(const QString, name);
    QFETCH(const QString, field);
    gaugeData layer;
    layer.startAngle = 5.0;
    layer.angleLength = 360.0;
    layer.divisionCount[0] = 1;
    QCOMPARE(keyframeTable({{name, layer}}), header + field + QStringLiteral(",0,5\r"));
}

void tst_Keyframes::writesOddNumbersUnquoted()
{
    gaugeData layer;
    layer.angleLength = 360.0;
    layer.divisionCount[0] = 1;
    layer.startAngle = infinity;
    layer.tickCountStart = notANumber;
    QCOMPARE(keyframeTable({{QStringLiteral("A"), layer}}), header + QStringLiteral("A,nan,inf\r"));
}

ADD_TEST_CLASS(tst_Keyframes)
#include "tst_keyframes.moc"
