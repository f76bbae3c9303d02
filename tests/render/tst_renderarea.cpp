#include "render/keyframes.h"
#include "render/renderarea.h"
#include "render/sweep.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QMetaMethod>
#include <QTest>

#include <array>
#include <cmath>
#include <functional>
#include <limits>

namespace {

using Action = std::function<void(RenderArea &)>;

/// Every field of a record, numbers to the last bit.
QStringList allFields(const gaugeData &layer)
{
    QStringList all;
    const auto number = [&all](double value) { all.append(QString::number(value, 'g', 17)); };
    const auto color = [&all](const QColor &value) {
        all.append(value.isValid() ? value.name(QColor::HexArgb) : QStringLiteral("invalid"));
    };
    number(layer.startAngle);
    number(layer.angleLength);
    number(layer.bias);
    number(layer.midpointBias);
    number(layer.roundedTickCaps);
    for (size_t i = 0; i < 3; ++i) {
        number(layer.divisionCount.at(i));
        number(layer.divisionInnerRadius.at(i));
        number(layer.divisionOuterRadius.at(i));
        number(layer.divisionLineWidth.at(i));
        color(layer.divisionColor.at(i));
    }
    number(layer.roundedArcCaps);
    for (size_t i = 0; i < 4; ++i) {
        number(layer.arcStartAngle.at(i));
        number(layer.arcAngleLength.at(i));
        number(layer.arcRadius.at(i));
        number(layer.arcWidth.at(i));
        color(layer.arcColor.at(i));
    }
    number(layer.tickCountEnabled);
    number(layer.tickCountStart);
    number(layer.tickCountIncrement);
    number(layer.tickCountDecimalPlaces);
    number(layer.tickCountRadius);
    number(layer.tickCountRotate);
    number(layer.tickCountSkipFirst);
    all.append(layer.tickCountFont.toString());
    color(layer.tickCountColor);
    return all;
}

gaugeData layerStartingAt(double angle)
{
    gaugeData layer;
    layer.startAngle = angle;
    layer.angleLength = 200.0;
    layer.divisionCount = {5, 2, 2};
    layer.divisionLineWidth = {3.0, 1.5, 0.0};
    layer.arcWidth[0] = 9.0;
    layer.tickCountColor = QColor(10, 20, 30, 40);
    return layer;
}

} // namespace

/// The preview: its state, its setters and what it shows.
class tst_RenderArea : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void startsEmpty();
    void letsItsBackgroundThrough();
    void hintsItsSize();
    void slotsAreRegisteredInOrder();
    void slotsCanBeInvokedByName();
    void leftOutArgumentsHaveDefaults();
    void settersWriteTheirFieldsOnly_data();
    void settersWriteTheirFieldsOnly();
    void settersTakeAnything();
    void loadsAndSavesLayers();
    void copiesOneLayerOntoAnother();
    void ignoresRowsOutsideTheStack_data();
    void ignoresRowsOutsideTheStack();
    void setsItsBackgroundRole();
    void defaultGaugeIsTheDefault();
    void offersBiasAndKeyframes();
};

void tst_RenderArea::startsEmpty()
{
    const RenderArea area(nullptr);
    QVERIFY(area.layers.isEmpty());
    QCOMPARE(allFields(area.workingLayer), allFields(gaugeData()));
}

void tst_RenderArea::letsItsBackgroundThrough()
{
    QWidget parent;
    auto *area = new RenderArea(&parent);
    QCOMPARE(area->parentWidget(), &parent);
    QVERIFY(!area->isWindow());
    QVERIFY(area->testAttribute(Qt::WA_TranslucentBackground));
    QVERIFY(area->testAttribute(Qt::WA_OpaquePaintEvent));
    QVERIFY(area->testAttribute(Qt::WA_NoSystemBackground));
    QVERIFY(!area->autoFillBackground());
    QCOMPARE(area->styleSheet(), QStringLiteral("QWidget{background-color: transparent;}"));
    QCOMPARE(area->palette().color(QPalette::Window), QColor(Qt::transparent));

    const RenderArea alone(nullptr);
    QCOMPARE(alone.windowOpacity(), 0.0);
}

void tst_RenderArea::hintsItsSize()
{
    const RenderArea area(nullptr);
    QCOMPARE(area.sizeHint(), QSize(512, 512));
    QCOMPARE(area.minimumSizeHint(), QSize(100, 100));
}

void tst_RenderArea::slotsAreRegisteredInOrder()
{
    const QString ring = QStringLiteral("int inDivisions, double inInnerRadius, double inOuterRadius, "
                                        "double inLineWidth");
    const QString arc =
        QStringLiteral("double inStartAngle, double inAngleLength, double inRadius, double inWidth");
    const QString counts =
        QStringLiteral("bool inEnable, double inStart, double inIncrement, int inDecPlaces, double inRadius, "
                       "bool inRotate, bool inSkipFirst");
    const QString color = QStringLiteral(", QColor inColor");
    const QString font = QStringLiteral(", QFont inFont");
    QStringList expected{
        QStringLiteral("void setAngles(double inStartAngle, double inAngleLength, double inBias, bool "
                       "midpointBias)"),
        QStringLiteral("void setRoundCaps(bool inRoundTickCaps, bool inRoundArcCaps)")};
    // A default argument registers the shorter form as a clone.
    for (int i = 1; i <= 3; ++i) {
        expected.append(QStringLiteral("void setDivisions%1(%2)").arg(i).arg(ring + color));
        expected.append(QStringLiteral("clone void setDivisions%1(%2)").arg(i).arg(ring));
    }
    for (int i = 1; i <= 4; ++i) {
        expected.append(QStringLiteral("void setArc%1(%2)").arg(i).arg(arc + color));
        expected.append(QStringLiteral("clone void setArc%1(%2)").arg(i).arg(arc));
    }
    expected.append(QStringLiteral("void setTickCounts(%1)").arg(counts + font + color));
    expected.append(QStringLiteral("clone void setTickCounts(%1)").arg(counts + font));
    expected.append(QStringLiteral("clone void setTickCounts(%1)").arg(counts));
    expected.append({QStringLiteral("void manualRedraw()"), QStringLiteral("void loadLayer(int inIndex)"),
                     QStringLiteral("void saveLayerData(int inIndex)"),
                     QStringLiteral("void setBackground(QPalette::ColorRole inRole)"),
                     QStringLiteral("gaugeData defaultGauge()")});

    QStringList found;
    const QMetaObject &meta = RenderArea::staticMetaObject;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        QCOMPARE(method.methodType(), QMetaMethod::Slot);
        QCOMPARE(method.access(), QMetaMethod::Public);
        QStringList parameters;
        for (int p = 0; p < method.parameterCount(); ++p) {
            parameters.append(
                QString::fromLatin1(method.parameterTypes().at(p) + ' ' + method.parameterNames().at(p)));
        }
        const bool clone = (method.attributes() & QMetaMethod::Cloned) != 0;
        found.append(QStringLiteral("%1%2 %3(%4)")
                         .arg(clone ? QStringLiteral("clone ") : QString(),
                              QString::fromLatin1(method.typeName()), QString::fromLatin1(method.name()),
                              parameters.join(QStringLiteral(", "))));
    }
    QCOMPARE(found, expected);
}

void tst_RenderArea::slotsCanBeInvokedByName()
{
    RenderArea area(nullptr);
    QVERIFY(QMetaObject::invokeMethod(&area, "setAngles", Q_ARG(double, 1.0), Q_ARG(double, 2.0),
                                      Q_ARG(double, 0.25), Q_ARG(bool, true)));
    QVERIFY(QMetaObject::invokeMethod(&area, "setArc4", Q_ARG(double, 3.0), Q_ARG(double, 4.0),
                                      Q_ARG(double, 0.5), Q_ARG(double, 6.0)));
    gaugeData expected;
    expected.startAngle = 1.0;
    expected.angleLength = 2.0;
    expected.bias = 0.25;
    expected.midpointBias = true;
    expected.arcStartAngle[3] = 3.0;
    expected.arcAngleLength[3] = 4.0;
    expected.arcRadius[3] = 0.5;
    expected.arcWidth[3] = 6.0;
    expected.arcColor[3] = Qt::white;
    QCOMPARE(allFields(area.workingLayer), allFields(expected));

    gaugeData answer;
    answer.startAngle = 99.0;
    QVERIFY(QMetaObject::invokeMethod(&area, "defaultGauge", Q_RETURN_ARG(gaugeData, answer)));
    QVERIFY(answer.startAngle == 0.0);
}

void tst_RenderArea::leftOutArgumentsHaveDefaults()
{
    RenderArea area(nullptr);
    area.workingLayer.divisionColor = {Qt::red, Qt::red, Qt::red};
    area.workingLayer.arcColor = {Qt::red, Qt::red, Qt::red, Qt::red};
    area.workingLayer.tickCountColor = Qt::red;
    area.workingLayer.tickCountFont = QFont(QStringLiteral("Serif"), 40, QFont::Bold, true);
    area.setDivisions1(4, 0.8, 1.0, 0.0);
    area.setDivisions2(1, 0.9, 1.0, 0.0);
    area.setDivisions3(1, 0.95, 1.0, 0.0);
    area.setArc1(0.0, 120.0, 1.0, 0.0);
    area.setArc2(0.0, 0.0, 1.0, 0.0);
    area.setArc3(0.0, 0.0, 1.0, 0.0);
    area.setArc4(0.0, 0.0, 1.0, 0.0);
    area.setTickCounts(true, 0.0, 1.0, 0, 0.74, false, false);
    gaugeData expected;
    expected.arcColor = {Qt::white, Qt::white, Qt::white, Qt::white};
    QCOMPARE(allFields(area.workingLayer), allFields(expected));
    QCOMPARE(area.workingLayer.tickCountFont, QFont(QStringLiteral("Sans Serif"), 10));
}

void tst_RenderArea::settersWriteTheirFieldsOnly_data()
{
    QTest::addColumn<Action>("set");
    QTest::addColumn<gaugeData>("expected");

    gaugeData angles;
    angles.startAngle = -3.5;
    angles.angleLength = 400.25;
    angles.bias = 0.125;
    angles.midpointBias = true;
    QTest::newRow("setAngles") << Action([](RenderArea &a) { a.setAngles(-3.5, 400.25, 0.125, true); })
                               << angles;
    gaugeData tickCaps;
    tickCaps.roundedTickCaps = true;
    QTest::newRow("setRoundCaps, ticks")
        << Action([](RenderArea &a) { a.setRoundCaps(true, false); }) << tickCaps;
    gaugeData arcCaps;
    arcCaps.roundedArcCaps = true;
    QTest::newRow("setRoundCaps, arcs")
        << Action([](RenderArea &a) { a.setRoundCaps(false, true); }) << arcCaps;

    const std::array<void (RenderArea::*)(int, double, double, double, QColor), 3> rings{
        &RenderArea::setDivisions1, &RenderArea::setDivisions2, &RenderArea::setDivisions3};
    for (size_t i = 0; i < rings.size(); ++i) {
        gaugeData expected;
        expected.divisionCount.at(i) = -7;
        expected.divisionInnerRadius.at(i) = 0.1;
        expected.divisionOuterRadius.at(i) = 0.2;
        expected.divisionLineWidth.at(i) = 0.3;
        expected.divisionColor.at(i) = QColor(1, 2, 3, 4);
        QTest::addRow("setDivisions%zu", i + 1) << Action([setter = rings.at(i)](RenderArea &a) {
            (a.*setter)(-7, 0.1, 0.2, 0.3, QColor(1, 2, 3, 4));
        }) << expected;
    }
    const std::array<void (RenderArea::*)(double, double, double, double, QColor), 4> arcs{
        &RenderArea::setArc1, &RenderArea::setArc2, &RenderArea::setArc3, &RenderArea::setArc4};
    for (size_t i = 0; i < arcs.size(); ++i) {
        gaugeData expected;
        expected.arcStartAngle.at(i) = 11.0;
        expected.arcAngleLength.at(i) = -12.0;
        expected.arcRadius.at(i) = 13.0;
        expected.arcWidth.at(i) = 14.0;
        expected.arcColor.at(i) = QColor(5, 6, 7, 8);
        QTest::addRow("setArc%zu", i + 1) << Action([setter = arcs.at(i)](RenderArea &a) {
            (a.*setter)(11.0, -12.0, 13.0, 14.0, QColor(5, 6, 7, 8));
        }) << expected;
    }

    gaugeData counts;
    counts.tickCountEnabled = false;
    counts.tickCountStart = 21.0;
    counts.tickCountIncrement = -22.0;
    counts.tickCountDecimalPlaces = 23;
    counts.tickCountRadius = 0.24;
    counts.tickCountRotate = true;
    counts.tickCountSkipFirst = false;
    counts.tickCountFont = QFont(QStringLiteral("Serif"), 25, QFont::Black, true);
    counts.tickCountColor = QColor(9, 10, 11, 12);
    QTest::newRow("setTickCounts") << Action([font = counts.tickCountFont](RenderArea &a) {
        a.setTickCounts(false, 21.0, -22.0, 23, 0.24, true, false, font, QColor(9, 10, 11, 12));
    }) << counts;
    gaugeData skipping;
    skipping.tickCountSkipFirst = true;
    QTest::newRow("setTickCounts, skip first")
        << Action([](RenderArea &a) { a.setTickCounts(true, 0.0, 1.0, 0, 0.74, false, true); }) << skipping;
}

void tst_RenderArea::settersWriteTheirFieldsOnly()
{
    QFETCH(const Action, set);
    QFETCH(const gaugeData, expected);
    RenderArea area(nullptr);
    area.layers = {gaugeData(), layerStartingAt(5.0)};
    set(area);
    QCOMPARE(allFields(area.workingLayer), allFields(expected));
    // The stack is somebody else's business.
    QCOMPARE(area.layers.size(), 2);
    QCOMPARE(allFields(area.layers.at(0)), allFields(gaugeData()));
    QCOMPARE(allFields(area.layers.at(1)), allFields(layerStartingAt(5.0)));
}

void tst_RenderArea::settersTakeAnything()
{
    const double notANumber = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    RenderArea area(nullptr);
    area.setAngles(notANumber, infinity, -9.0, false);
    area.setDivisions1(std::numeric_limits<int>::min(), -infinity, 1e300, -1.0, QColor());
    area.setTickCounts(true, notANumber, infinity, -5, -2.0, true, true, QFont(), QColor());
    const gaugeData &stored = area.workingLayer;
    QVERIFY(std::isnan(stored.startAngle));
    QVERIFY(stored.angleLength == infinity);
    QVERIFY(stored.bias == -9.0);
    QCOMPARE(stored.divisionCount[0], std::numeric_limits<int>::min());
    QVERIFY(stored.divisionInnerRadius[0] == -infinity);
    QVERIFY(stored.divisionOuterRadius[0] == 1e300);
    QVERIFY(stored.divisionLineWidth[0] == -1.0);
    QVERIFY(!stored.divisionColor[0].isValid());
    QVERIFY(std::isnan(stored.tickCountStart));
    QCOMPARE(stored.tickCountDecimalPlaces, -5);
    QVERIFY(stored.tickCountRadius == -2.0);
}

void tst_RenderArea::loadsAndSavesLayers()
{
    RenderArea area(nullptr);
    area.layers = {layerStartingAt(1.0), layerStartingAt(2.0)};
    area.loadLayer(1);
    QCOMPARE(allFields(area.workingLayer), allFields(layerStartingAt(2.0)));
    area.workingLayer = layerStartingAt(3.0);
    area.saveLayerData(0);
    QCOMPARE(allFields(area.layers.at(0)), allFields(layerStartingAt(3.0)));
    QCOMPARE(allFields(area.layers.at(1)), allFields(layerStartingAt(2.0)));
    QCOMPARE(area.layers.size(), 2);
}

void tst_RenderArea::copiesOneLayerOntoAnother()
{
    RenderArea area(nullptr);
    area.layers = {layerStartingAt(1.0), layerStartingAt(2.0), layerStartingAt(3.0)};
    area.loadLayer(2);
    area.saveLayerData(0);
    QCOMPARE(allFields(area.layers.at(0)), allFields(layerStartingAt(3.0)));
    QCOMPARE(allFields(area.layers.at(1)), allFields(layerStartingAt(2.0)));
    QCOMPARE(allFields(area.layers.at(2)), allFields(layerStartingAt(3.0)));
}

void tst_RenderArea::ignoresRowsOutsideTheStack_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("layers");
    QTest::newRow("no row selected") << -1 << 2;
    QTest::newRow("just past the end") << 2 << 2;
    QTest::newRow("empty stack") << 0 << 0;
    QTest::newRow("least int") << std::numeric_limits<int>::min() << 2;
    QTest::newRow("most int") << std::numeric_limits<int>::max() << 2;
}

void tst_RenderArea::ignoresRowsOutsideTheStack()
{
    QFETCH(const int, row);
    QFETCH(const int, layers);
    RenderArea area(nullptr);
    for (int i = 0; i < layers; ++i)
        area.layers.append(layerStartingAt(i));
    area.workingLayer = layerStartingAt(77.0);
    area.loadLayer(row);
    QCOMPARE(allFields(area.workingLayer), allFields(layerStartingAt(77.0)));
    area.saveLayerData(row);
    QCOMPARE(area.layers.size(), layers);
    for (int i = 0; i < layers; ++i)
        QCOMPARE(allFields(area.layers.at(i)), allFields(layerStartingAt(i)));
}

void tst_RenderArea::setsItsBackgroundRole()
{
    RenderArea area(nullptr);
    area.setBackground(QPalette::Highlight);
    QCOMPARE(area.backgroundRole(), QPalette::Highlight);
}

void tst_RenderArea::defaultGaugeIsTheDefault()
{
    RenderArea area(nullptr);
    area.layers = {layerStartingAt(1.0)};
    area.workingLayer = layerStartingAt(2.0);
    QCOMPARE(allFields(area.defaultGauge()), allFields(gaugeData()));
    QVERIFY(area.defaultGauge().isDefault());
    QCOMPARE(allFields(area.layers.at(0)), allFields(layerStartingAt(1.0)));
    QCOMPARE(allFields(area.workingLayer), allFields(layerStartingAt(2.0)));
}

void tst_RenderArea::offersBiasAndKeyframes()
{
    for (const double t : {0.0, 0.3, 1.0}) {
        for (const double bias : {0.0, 0.2, 0.5, 0.9, 1.0}) {
            QVERIFY(RenderArea::applyBias(t, bias, false) == biasedFraction(t, bias, false));
            QVERIFY(RenderArea::applyBias(t, bias, true) == biasedFraction(t, bias, true));
        }
    }
    RenderArea area(nullptr);
    area.layers = {gaugeData()};
    const gaugeData other = layerStartingAt(30.0);
    QCOMPARE(area.layerKeyframes(other), keyframes(other));
    QCOMPARE(area.layerKeyframes(other).size(), 6);
}

ADD_TEST_CLASS(tst_RenderArea)
#include "tst_renderarea.moc"
