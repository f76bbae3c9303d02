#include "support/editor.h"
#include "support/paintcounter.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QMetaMethod>
#include <QSet>
#include <QSignalSpy>
#include <QTest>

#include <limits>
#include <memory>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

/// The controls that show the active layer.
QSet<QString> boundControls()
{
    QSet<QString> names;
    for (const GaugeField &field : gaugeFields())
        names.insert(field.control);
    return names;
}

QSet<QString> blockedWidgets(const Editor &editor)
{
    QSet<QString> names;
    const auto widgets = editor.window.findChildren<QWidget *>();
    for (const QWidget *widget : widgets) {
        if (widget->signalsBlocked())
            names.insert(widget->objectName());
    }
    return names;
}

/// A layer with values that no control can show.
gaugeData layerOutOfRange()
{
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
    return layer;
}

} // namespace

/// The controls show the active layer, and showing it changes nothing.
class tst_ActiveLayer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void selectedLayerIsShown();
    void showingEmitsNoSignals();
    void showingDoesNotRepaint();
    void blockingReachesTheBoundControlsOnly();
    void decimalsFollowTheLayer();
    void valuesOutOfRangeAreLimitedInTheControlsOnly();
    void editStoresTheLimitedValuesOfItsGroupOnly();
    void extremeLayerIsShown_data();
    void extremeLayerIsShown();
};

void tst_ActiveLayer::selectedLayerIsShown()
{
    const Editor editor;
    editor.addLayer(u"second"_s);
    editor.preview()->layers[1] = sampleLayer();
    editor.layerList()->setCurrentRow(1);
    QCOMPARE(differingFields(editor.shownLayer(), sampleLayer()), QStringList());
    QCOMPARE(differingFields(editor.preview()->workingLayer, sampleLayer()), QStringList());
    editor.layerList()->setCurrentRow(0);
    QCOMPARE(differingFields(editor.shownLayer(), gaugeData()), QStringList());
    QCOMPARE(differingFields(editor.preview()->layers.at(0), gaugeData()), QStringList());
    QCOMPARE(differingFields(editor.preview()->layers.at(1), sampleLayer()), QStringList());
}

void tst_ActiveLayer::showingEmitsNoSignals()
{
    Editor editor;
    std::vector<std::unique_ptr<QSignalSpy>> spies;
    for (const QString &name : boundControls()) {
        auto *control = editor.control<QWidget>(name);
        const QMetaObject &meta = *control->metaObject();
        for (int index = QWidget::staticMetaObject.methodCount(); index < meta.methodCount(); ++index) {
            if (meta.method(index).methodType() == QMetaMethod::Signal)
                spies.push_back(std::make_unique<QSignalSpy>(control, meta.method(index)));
        }
    }
    QVERIFY(spies.size() > 100);
    editor.preview()->workingLayer = sampleLayer();
    editor.call("setActiveGauge");
    for (const auto &spy : spies)
        QVERIFY2(spy->isEmpty(), spy->signal());
}

void tst_ActiveLayer::showingDoesNotRepaint()
{
    Editor editor;
    editor.show();
    editor.preview()->workingLayer = sampleLayer();
    const PaintCounter paints(editor.preview());
    editor.call("setActiveGauge");
    QCoreApplication::processEvents();
    QCOMPARE(paints.count(), 0);
}

void tst_ActiveLayer::blockingReachesTheBoundControlsOnly()
{
    Editor editor;
    QCOMPARE(boundControls().size(), 50);
    QVERIFY(QMetaObject::invokeMethod(&editor.window, "blockWidgetSignals", Q_ARG(bool, true)));
    QCOMPARE(blockedWidgets(editor), boundControls());
    QVERIFY(QMetaObject::invokeMethod(&editor.window, "blockWidgetSignals", Q_ARG(bool, false)));
    QCOMPARE(blockedWidgets(editor), QSet<QString>());
    QVERIFY(QMetaObject::invokeMethod(&editor.window, "blockWidgetSignals", Q_ARG(bool, true)));
    editor.call("setActiveGauge");
    QCOMPARE(blockedWidgets(editor), QSet<QString>());
}

void tst_ActiveLayer::decimalsFollowTheLayer()
{
    Editor editor;
    for (const int decimals : {3, 0}) {
        editor.preview()->workingLayer.tickCountDecimalPlaces = decimals;
        editor.preview()->workingLayer.tickCountStart = decimals == 0 ? 2.0 : 0.125;
        editor.call("setActiveGauge");
        const auto &start = *editor.control<QDoubleSpinBox>("tickCountStartSpinBox"_L1);
        QCOMPARE(start.text(),
                 start.locale().toString(editor.preview()->workingLayer.tickCountStart, 'f', decimals));
        QCOMPARE(editor.control<QDoubleSpinBox>("tickCountIncrementSpinBox"_L1)->decimals(), decimals);
    }
}

void tst_ActiveLayer::valuesOutOfRangeAreLimitedInTheControlsOnly()
{
    Editor editor;
    editor.preview()->workingLayer = layerOutOfRange();
    editor.call("setActiveGauge");
    gaugeData limited = layerOutOfRange();
    limited.startAngle = 360.0;
    limited.angleLength = -360.0;
    limited.bias = 0.0;
    limited.divisionCount = {100, 1, 1};
    limited.divisionOuterRadius[1] = 1.0;
    limited.arcWidth[2] = 100.0;
    limited.tickCountStart = 360.0;
    limited.tickCountIncrement = -32000.0;
    limited.tickCountDecimalPlaces = 6;
    QCOMPARE(differingFields(editor.shownLayer(), limited), QStringList());
    QCOMPARE(differingFields(editor.preview()->workingLayer, layerOutOfRange()), QStringList());
    QCOMPARE(differingFields(editor.preview()->layers.first(), gaugeData()), QStringList());
}

void tst_ActiveLayer::editStoresTheLimitedValuesOfItsGroupOnly()
{
    Editor editor;
    editor.preview()->workingLayer = layerOutOfRange();
    editor.call("setActiveGauge");
    editor.edit(gaugeField("bias"), 0.25);
    const gaugeData &saved = editor.preview()->layers.first();
    QCOMPARE(differingFields(saved, layerOutOfRange()),
             (QStringList{u"startAngle"_s, u"angleLength"_s, u"bias"_s}));
    QCOMPARE(saved.startAngle, 360.0);
    QCOMPARE(saved.angleLength, -360.0);
}

void tst_ActiveLayer::extremeLayerIsShown_data()
{
    QTest::addColumn<double>("number");
    QTest::addColumn<int>("count");
    using Double = std::numeric_limits<double>;
    using Int = std::numeric_limits<int>;
    QTest::newRow("NaN") << Double::quiet_NaN() << Int::max();
    QTest::newRow("infinite") << Double::infinity() << Int::max();
    QTest::newRow("minus infinite") << -Double::infinity() << Int::min();
    QTest::newRow("max") << Double::max() << Int::max();
    QTest::newRow("lowest") << Double::lowest() << Int::min();
    QTest::newRow("smallest positive") << Double::denorm_min() << -1;
}

void tst_ActiveLayer::extremeLayerIsShown()
{
    QFETCH(double, number);
    QFETCH(int, count);
    gaugeData layer;
    for (const GaugeField &field : gaugeFields()) {
        if (field.kind == GaugeField::Number)
            field.set(layer, number);
        else if (field.kind == GaugeField::Color)
            field.set(layer, QColor());
        else if (field.kind == GaugeField::Integer && field.position != GaugeField::insideFont)
            field.set(layer, count);
    }
    Editor editor;
    editor.preview()->workingLayer = layer;
    editor.call("setActiveGauge");
    QCOMPARE(differingFields(editor.preview()->workingLayer, layer), QStringList());
    // Each box has a value in its range, which the next edit stores.
    const auto boxes = editor.window.findChildren<QDoubleSpinBox *>();
    for (const QDoubleSpinBox *box : boxes)
        QVERIFY2(box->value() >= box->minimum() && box->value() <= box->maximum(),
                 qPrintable(box->objectName()));
    QCOMPARE(editor.shownLayer().arcColor[0], QColor(Qt::black));
}

ADD_TEST_CLASS(tst_ActiveLayer)
#include "tst_activelayer.moc"
