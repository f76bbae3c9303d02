#include "support/editor.h"
#include "support/paintcounter.h"
#include "support/records.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QTest>

#include <limits>

using namespace Qt::StringLiterals;

namespace {

/// What a control shows: a number, whether it is checked, the style sheet of a colour, a font.
QVariant shownBy(const QWidget *control)
{
    if (const auto *box = qobject_cast<const QDoubleSpinBox *>(control))
        return box->value();
    if (const auto *box = qobject_cast<const QSpinBox *>(control))
        return box->value();
    if (const auto *box = qobject_cast<const QComboBox *>(control))
        return box->currentIndex();
    if (const auto *box = qobject_cast<const QCheckBox *>(control))
        return box->isChecked();
    if (qobject_cast<const QToolButton *>(control) != nullptr)
        return control->styleSheet();
    const QFont &font = control->font();
    return u"%1, %2, %3, %4"_s.arg(font.family())
        .arg(font.pointSize())
        .arg(font.bold() ? u"bold"_s : u"regular"_s, font.italic() ? u"italic"_s : u"upright"_s);
}

QString styleOf(const QColor &color)
{
    return u"background-color: %1}"_s.arg(color.name());
}

/// What the bound controls show of sampleLayer(), in their order.
QVariantList unusualValues()
{
    const gaugeData layer = sampleLayer();
    return {
        layer.startAngle,
        layer.angleLength,
        layer.bias,
        1,
        layer.roundedTickCaps,
        layer.divisionCount[0],
        layer.divisionInnerRadius[0],
        layer.divisionOuterRadius[0],
        layer.divisionLineWidth[0],
        styleOf(layer.divisionColor[0]),
        layer.divisionCount[1],
        layer.divisionInnerRadius[1],
        layer.divisionOuterRadius[1],
        layer.divisionLineWidth[1],
        styleOf(layer.divisionColor[1]),
        layer.divisionCount[2],
        layer.divisionInnerRadius[2],
        layer.divisionOuterRadius[2],
        layer.divisionLineWidth[2],
        styleOf(layer.divisionColor[2]),
        layer.roundedArcCaps,
        layer.arcStartAngle[0],
        layer.arcAngleLength[0],
        layer.arcRadius[0],
        layer.arcWidth[0],
        styleOf(layer.arcColor[0]),
        layer.arcStartAngle[1],
        layer.arcAngleLength[1],
        layer.arcRadius[1],
        layer.arcWidth[1],
        styleOf(layer.arcColor[1]),
        layer.arcStartAngle[2],
        layer.arcAngleLength[2],
        layer.arcRadius[2],
        layer.arcWidth[2],
        styleOf(layer.arcColor[2]),
        layer.arcStartAngle[3],
        layer.arcAngleLength[3],
        layer.arcRadius[3],
        layer.arcWidth[3],
        styleOf(layer.arcColor[3]),
        layer.tickCountRadius,
        layer.tickCountDecimalPlaces,
        layer.tickCountStart,
        layer.tickCountIncrement,
        u"DejaVu Serif, 17, bold, italic"_s,
        styleOf(layer.tickCountColor),
        layer.tickCountRotate,
        layer.tickCountEnabled,
        layer.tickCountSkipFirst,
    };
}

} // namespace

/// The way back: the working copy is shown in the controls, and that is all that happens.
class tst_ActiveGauge : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void controlShowsItsField_data();
    void controlShowsItsField();
    void noHandlerRunsAndNothingIsSaved();
    void previewIsNotPainted();
    void selectingLayerFillsAllControls();
    void startIsShownWithTheLayersOwnDecimals();
    void decimalsGoDownWithTheLayer();
    void valueOutOfRangeIsClampedInTheControlOnly_data();
    void valueOutOfRangeIsClampedInTheControlOnly();
    void nextEditPushesTheClampedValues();
    void editOfAnotherGroupLeavesValuesOutOfRange();
    void loadedColorIsReadBackByTheNextEdit();
    void extremeRecordIsShown_data();
    void extremeRecordIsShown();
};

void tst_ActiveGauge::controlShowsItsField_data()
{
    const QVariantList values = unusualValues();
    QTest::addColumn<QVariant>("value");
    const QStringList names = boundControls();
    QCOMPARE(values.size(), names.size());
    for (qsizetype index = 0; index < names.size(); ++index)
        QTest::newRow(qPrintable(names.at(index))) << values.at(index);
}

void tst_ActiveGauge::controlShowsItsField()
{
    QFETCH(QVariant, value);
    Editor editor;
    const auto *control = editor.control<QWidget>(QString::fromLatin1(QTest::currentDataTag()));
    QVERIFY(shownBy(control) != value);
    editor.preview()->workingLayer = sampleLayer();
    editor.call("setActiveGauge");
    QCOMPARE(shownBy(control), value);
}

void tst_ActiveGauge::noHandlerRunsAndNothingIsSaved()
{
    Editor editor;
    gaugeData layer = sampleLayer();
    // A handler would read these back from the controls, clamped or rounded.
    layer.startAngle = 1000.0;
    layer.divisionInnerRadius = {2.0, 3.0, 4.0};
    layer.arcWidth = {500.0, 600.0, 700.0, 800.0};
    layer.tickCountRadius = 9.0;
    editor.preview()->workingLayer = layer;
    editor.call("setActiveGauge");
    QCOMPARE(differingFields(editor.preview()->workingLayer, layer), QStringList());
    QCOMPARE(differingFields(editor.preview()->layers.first(), gaugeData()), QStringList());
}

void tst_ActiveGauge::previewIsNotPainted()
{
    Editor editor;
    editor.show();
    editor.preview()->workingLayer = sampleLayer();
    const PaintCounter paints(editor.preview());
    editor.call("setActiveGauge");
    QCoreApplication::processEvents();
    QCOMPARE(paints.count(), 0);
}

void tst_ActiveGauge::selectingLayerFillsAllControls()
{
    Editor editor;
    editor.addLayer(u"second"_s);
    editor.preview()->layers[1] = sampleLayer();
    editor.layerList()->setCurrentRow(1);
    const QStringList names = boundControls();
    const QVariantList values = unusualValues();
    for (qsizetype index = 0; index < names.size(); ++index)
        QCOMPARE(shownBy(editor.control<QWidget>(names.at(index))), values.at(index));
    // A handler would have written the one layer's values into the other.
    QCOMPARE(differingFields(editor.preview()->layers.at(0), gaugeData()), QStringList());
    QCOMPARE(differingFields(editor.preview()->layers.at(1), sampleLayer()), QStringList());
    QCOMPARE(differingFields(editor.preview()->workingLayer, sampleLayer()), QStringList());

    editor.layerList()->setCurrentRow(0);
    for (qsizetype index = 0; index < names.size(); ++index)
        QVERIFY2(shownBy(editor.control<QWidget>(names.at(index))) != values.at(index),
                 qPrintable(names.at(index)));
    QCOMPARE(differingFields(editor.preview()->layers.at(1), sampleLayer()), QStringList());
}

void tst_ActiveGauge::startIsShownWithTheLayersOwnDecimals()
{
    Editor editor;
    editor.preview()->workingLayer.tickCountDecimalPlaces = 3;
    editor.preview()->workingLayer.tickCountStart = 0.125;
    editor.preview()->workingLayer.tickCountIncrement = 0.375;
    editor.call("setActiveGauge");
    const auto &start = *editor.control<QDoubleSpinBox>("tickCountStartSpinBox"_L1);
    QCOMPARE(start.value(), 0.125);
    QCOMPARE(start.text(), start.locale().toString(0.125, 'f', 3));
    QCOMPARE(editor.control<QDoubleSpinBox>("tickCountIncrementSpinBox"_L1)->value(), 0.375);
}

void tst_ActiveGauge::decimalsGoDownWithTheLayer()
{
    Editor editor;
    editor.preview()->workingLayer.tickCountDecimalPlaces = 3;
    editor.call("setActiveGauge");
    editor.preview()->workingLayer.tickCountDecimalPlaces = 0;
    editor.call("setActiveGauge");
    QCOMPARE(editor.control<QDoubleSpinBox>("tickCountStartSpinBox"_L1)->decimals(), 0);
    QCOMPARE(editor.control<QDoubleSpinBox>("tickCountIncrementSpinBox"_L1)->decimals(), 0);
}

void tst_ActiveGauge::valueOutOfRangeIsClampedInTheControlOnly_data()
{
    QTest::addColumn<double>("stored");
    QTest::addColumn<double>("shown");
    QTest::newRow("gaugeStartAngleSpinBox") << 1000.0 << 360.0;
    QTest::newRow("gaugeAngleLengthSpinBox") << -1000.0 << -360.0;
    QTest::newRow("gaugeBiasSpinBox") << -0.5 << 0.0;
    QTest::newRow("gaugeDivisions1SpinBox") << 1000.0 << 100.0;
    QTest::newRow("gaugeDivisions2SpinBox") << 0.0 << 1.0;
    QTest::newRow("gaugeDivisions3SpinBox") << -7.0 << 1.0;
    QTest::newRow("gaugeDivisions2OuterRadiusSpinBox") << 1.5 << 1.0;
    QTest::newRow("arc3WidthSpinBox") << 101.0 << 100.0;
    QTest::newRow("tickCountStartSpinBox") << 5000.0 << 360.0;
    QTest::newRow("tickCountIncrementSpinBox") << -40000.0 << -32000.0;
    QTest::newRow("tickCountDecimalPlacesSpinBox") << 9.0 << 6.0;
}

void tst_ActiveGauge::valueOutOfRangeIsClampedInTheControlOnly()
{
    QFETCH(double, stored);
    QFETCH(double, shown);
    gaugeData layer;
    layer.startAngle = 1000.0;
    layer.angleLength = -1000.0;
    layer.bias = -0.5;
    layer.divisionCount = {1000, 0, -7};
    layer.divisionOuterRadius = {1.0, 1.5, 1.0};
    layer.arcWidth = {0.0, 0.0, 101.0, 0.0};
    layer.tickCountStart = 5000.0;
    layer.tickCountIncrement = -40000.0;
    layer.tickCountDecimalPlaces = 9;
    Editor editor;
    editor.preview()->workingLayer = layer;
    editor.call("setActiveGauge");
    const auto *control = editor.control<QWidget>(QString::fromLatin1(QTest::currentDataTag()));
    QCOMPARE(shownBy(control).toDouble(), shown);
    QVERIFY(shown != stored);
    QCOMPARE(differingFields(editor.preview()->workingLayer, layer), QStringList());
}

void tst_ActiveGauge::nextEditPushesTheClampedValues()
{
    Editor editor;
    editor.preview()->workingLayer.startAngle = 1000.0;
    editor.preview()->workingLayer.angleLength = 720.0;
    editor.call("setActiveGauge");
    editor.control<QDoubleSpinBox>("gaugeBiasSpinBox"_L1)->setValue(0.25);
    const gaugeData &saved = editor.preview()->layers.first();
    QCOMPARE(saved.startAngle, 360.0);
    QCOMPARE(saved.angleLength, 360.0);
    QCOMPARE(saved.bias, 0.25);
}

void tst_ActiveGauge::editOfAnotherGroupLeavesValuesOutOfRange()
{
    Editor editor;
    editor.preview()->workingLayer.startAngle = 1000.0;
    editor.preview()->workingLayer.arcRadius[1] = 3.0;
    editor.call("setActiveGauge");
    editor.control<QDoubleSpinBox>("arc1RadiusSpinBox"_L1)->setValue(0.5);
    const gaugeData &saved = editor.preview()->layers.first();
    QCOMPARE(saved.startAngle, 1000.0);
    QCOMPARE(saved.arcRadius[0], 0.5);
    QCOMPARE(saved.arcRadius[1], 3.0);
}

void tst_ActiveGauge::loadedColorIsReadBackByTheNextEdit()
{
    // In a window that was never shown, whose style sheets nothing has applied yet.
    Editor editor;
    editor.preview()->workingLayer = sampleLayer();
    editor.call("setActiveGauge");
    for (int ring = 1; ring <= 3; ++ring)
        editor.control<QDoubleSpinBox>(u"gaugeDivisions%1WidthSpinBox"_s.arg(ring))->setValue(9.0);
    for (int arc = 1; arc <= 4; ++arc)
        editor.control<QDoubleSpinBox>(u"arc%1WidthSpinBox"_s.arg(arc))->setValue(9.0);
    editor.control<QDoubleSpinBox>("tickCountRadiusSpinBox"_L1)->setValue(0.5);
    const gaugeData &saved = editor.preview()->layers.first();
    QCOMPARE(saved.divisionColor, sampleLayer().divisionColor);
    QCOMPARE(saved.arcColor, sampleLayer().arcColor);
    QCOMPARE(saved.tickCountColor, sampleLayer().tickCountColor);
}

void tst_ActiveGauge::extremeRecordIsShown_data()
{
    QTest::addColumn<double>("number");
    QTest::addColumn<int>("count");
    using Double = std::numeric_limits<double>;
    using Int = std::numeric_limits<int>;
    QTest::newRow("not a number") << Double::quiet_NaN() << Int::max();
    QTest::newRow("infinite") << Double::infinity() << Int::max();
    QTest::newRow("minus infinite") << -Double::infinity() << Int::min();
    QTest::newRow("largest") << Double::max() << Int::max();
    QTest::newRow("most negative") << Double::lowest() << Int::min();
    QTest::newRow("smallest") << Double::denorm_min() << -1;
}

void tst_ActiveGauge::extremeRecordIsShown()
{
    QFETCH(double, number);
    QFETCH(int, count);
    gaugeData layer;
    layer.startAngle = layer.angleLength = layer.bias = number;
    layer.divisionCount.fill(count);
    layer.divisionInnerRadius.fill(number);
    layer.divisionOuterRadius.fill(number);
    layer.divisionLineWidth.fill(number);
    layer.divisionColor.fill(QColor());
    layer.arcStartAngle.fill(number);
    layer.arcAngleLength.fill(number);
    layer.arcRadius.fill(number);
    layer.arcWidth.fill(number);
    layer.arcColor.fill(QColor());
    layer.tickCountStart = layer.tickCountIncrement = layer.tickCountRadius = number;
    layer.tickCountDecimalPlaces = count;
    layer.tickCountColor = QColor();

    Editor editor;
    editor.preview()->workingLayer = layer;
    editor.call("setActiveGauge");
    QCOMPARE(differingFields(editor.preview()->workingLayer, layer), QStringList());
    // Every box holds a value of its range, so that the next edit heals the layer.
    const auto boxes = editor.window.findChildren<QDoubleSpinBox *>();
    for (const QDoubleSpinBox *box : boxes)
        QVERIFY2(box->value() >= box->minimum() && box->value() <= box->maximum(),
                 qPrintable(box->objectName()));
    QCOMPARE(editor.control<QToolButton>("arc1ColorButton"_L1)->styleSheet(),
             u"background-color: #000000}"_s);
}

ADD_TEST_CLASS(tst_ActiveGauge)
#include "tst_activegauge.moc"
