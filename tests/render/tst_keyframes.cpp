#include "model/gaugedata.h"
#include "render/keyframes.h"
#include "render/sweep.h"
#include "support/namedvalues.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QTest>

#include <cmath>

using namespace Qt::StringLiterals;

/// The keyframes of a layer and the table that is saved as CSV.
class tst_Keyframes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void valuesAndAngles();
    void anglesAndValuesHaveThePaintersRounding();
    void frameCounts();
    void numberFormat();
    void table();
    void namesAreQuotedIfNecessary();
};

namespace {

gaugeData quarterTurn()
{
    gaugeData layer;
    layer.angleLength = 90.0;
    layer.divisionCount = {2, 5, 5};
    layer.tickCountIncrement = 50.0;
    return layer;
}

} // namespace

void tst_Keyframes::valuesAndAngles()
{
    gaugeData layer = quarterTurn();
    const QList<QPointF> expected{{0.0, 0.0}, {50.0, 45.0}, {100.0, 90.0}};
    QCOMPARE(keyframes(layer), expected);
    // Labels that are not shown have keyframes too.
    layer.tickCountEnabled = false;
    layer.tickCountSkipFirst = true;
    QCOMPARE(keyframes(layer), expected);
}

void tst_Keyframes::anglesAndValuesHaveThePaintersRounding()
{
    for (const double start : {0.0, 0.1, -135.3, 12.34, 1e-15}) {
        gaugeData layer;
        layer.startAngle = start;
        layer.angleLength = -99.9;
        layer.bias = 0.3;
        layer.midpointBias = true;
        layer.divisionCount[0] = 10;
        layer.tickCountIncrement = 0.1;
        const QList<QPointF> frames = keyframes(layer);
        QCOMPARE(frames.size(), 11);
        double value = 0.0;
        for (int i = 0; i <= 10; ++i) {
            const double angle = (90.0 - start) - -99.9 * biasedFraction(i / 10.0, 0.3, true);
            QVERIFY(frames.at(i).x() == value);
            QVERIFY(frames.at(i).y() == -(angle - 90.0));
            value += 0.1;
        }
    }
    QVERIFY(std::signbit(keyframes(quarterTurn()).first().y())); // negative zero
}

void tst_Keyframes::frameCounts()
{
    struct Case
    {
        double length;
        int divisions;
        int frames;
    };
    for (const auto &[length, divisions, frames] :
         {Case{359.0, 4, 5}, Case{360.0, 4, 4}, Case{notANumber, 4, 5}, Case{120.0, 1, 2}, Case{120.0, 0, 0},
          Case{120.0, minInt, 0}}) {
        gaugeData layer;
        layer.angleLength = length;
        layer.divisionCount[0] = divisions;
        QCOMPARE(keyframes(layer).size(), frames);
    }
}

void tst_Keyframes::numberFormat()
{
    for (const auto &[number, text] : {std::pair(100.0, "100"_L1),
                                       {-135.25, "-135.25"_L1},
                                       {0.09999999999999432, "0.1"_L1},
                                       {1e-11, "0"_L1},
                                       {0.0123456789, "0.0123456789"_L1},
                                       {2.0 / 3.0, "0.6666666667"_L1},
                                       {10.0205, "10.0205"_L1},
                                       {1e15, "1000000000000000"_L1},
                                       {notANumber, "nan"_L1},
                                       {-infinity, "-inf"_L1}})
        QCOMPARE(csvNumber(number), text);
}

void tst_Keyframes::table()
{
    gaugeData first = quarterTurn();
    first.startAngle = 1.0;
    first.tickCountStart = -1.5;
    gaugeData none = first;
    none.divisionCount[0] = 0;
    gaugeData last;
    last.angleLength = 360.0;
    last.divisionCount[0] = 1;
    last.startAngle = infinity;
    last.tickCountStart = notANumber;
    // Each line ends with a carriage return and no line feed.
    QCOMPARE(keyframeTable({{u"First"_s, first}, {u"None"_s, none}, {u"Last"_s, last}}),
             u"Layer,Tick,Angle\rFirst,-1.5,1\rFirst,48.5,46\rFirst,98.5,91\rLast,nan,inf\r"_s);
    QCOMPARE(keyframeTable({}), u"Layer,Tick,Angle\r"_s);
}

void tst_Keyframes::namesAreQuotedIfNecessary()
{
    gaugeData layer;
    layer.startAngle = 5.0;
    layer.angleLength = 360.0;
    layer.divisionCount[0] = 1;
    for (const auto &[name, field] : {std::pair(u" 'Layer' 1;\t| Größe"_s, u" 'Layer' 1;\t| Größe"_s),
                                      {u"Speed, mph"_s, u"\"Speed, mph\""_s},
                                      {u"6\" \"dial\""_s, u"\"6\"\" \"\"dial\"\"\""_s},
                                      {u"two\nlines"_s, u"\"two\nlines\""_s},
                                      {u"two\rlines"_s, u"\"two\rlines\""_s}})
        QCOMPARE(keyframeTable({{name, layer}}), u"Layer,Tick,Angle\r"_s + field + u",0,5\r"_s);
}

ADD_TEST_CLASS(tst_Keyframes)
#include "tst_keyframes.moc"
