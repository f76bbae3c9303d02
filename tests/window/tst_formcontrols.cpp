#include "support/testmain.h"
#include "support/warnings.h"
#include "ui_window.h"

#include <QMap>
#include <QTest>

using namespace Qt::StringLiterals;

/// Every control of the form as it is once the form is built: its kind, limits, value, text and tool tip.
class tst_FormControls : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void doubleSpinBox_data();
    void doubleSpinBox();
    void spinBox_data();
    void spinBox();
    void checkBox_data();
    void checkBox();
    void button_data();
    void button();
    void comboBoxesAreEmpty_data();
    void comboBoxesAreEmpty();
    void layerListIsEmpty();
    void onlyLayerButtonsFillTheirBackground();
    void thereAreNoOtherControls();

private:
    template <typename Control>
    [[nodiscard]] const Control *control(const QString &name) const
    {
        const auto *found = m_widget.findChild<const Control *>(name);
        // The very type: a spin box made of a class of its own would be another kind.
        return found != nullptr && found->metaObject() == &Control::staticMetaObject ? found : nullptr;
    }

    QWidget m_widget;
    Ui_Window m_form;

public:
    tst_FormControls() { m_form.setupUi(&m_widget); }
};

void tst_FormControls::doubleSpinBox_data()
{
    QTest::addColumn<double>("minimum");
    QTest::addColumn<double>("maximum");
    QTest::addColumn<double>("step");
    QTest::addColumn<int>("decimals");
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("toolTip");

    const QString angleStart = u"Angle Start: -360 to 360"_s;
    const QString angleLength = u"Angle Length: -360 to 360"_s;
    const QString lineWidth = u"Width of Line"_s;
    const QString innerRadius = u"Inner Radius of Tick Marks"_s;
    const QString outerRadius = u"Outer Radius of Tick Marks"_s;
    const QString arcRadius = u"Radius of Arc"_s;

    QTest::newRow("gaugeStartAngleSpinBox") << -360.0 << 360.0 << 1.0 << 2 << 0.0 << angleStart;
    QTest::newRow("gaugeAngleLengthSpinBox") << -360.0 << 360.0 << 1.0 << 2 << 120.0 << angleLength;
    QTest::newRow("gaugeBiasSpinBox") << 0.0 << 1.0 << 0.05 << 2 << 0.5 << u"Bias Amount: 0 to 1"_s;

    QTest::newRow("gaugeDivisions1InnerRadiusSpinBox") << 0.0 << 1.0 << 0.01 << 3 << 0.8 << innerRadius;
    QTest::newRow("gaugeDivisions2InnerRadiusSpinBox") << 0.0 << 1.0 << 0.01 << 3 << 0.9 << innerRadius;
    QTest::newRow("gaugeDivisions3InnerRadiusSpinBox") << 0.0 << 1.0 << 0.01 << 3 << 0.95 << innerRadius;
    QTest::newRow("gaugeDivisions1OuterRadiusSpinBox") << 0.0 << 1.0 << 0.01 << 3 << 1.0 << outerRadius;
    QTest::newRow("gaugeDivisions2OuterRadiusSpinBox") << 0.0 << 1.0 << 0.01 << 3 << 1.0 << outerRadius;
    QTest::newRow("gaugeDivisions3OuterRadiusSpinBox") << 0.0 << 1.0 << 0.01 << 3 << 1.0 << outerRadius;
    QTest::newRow("gaugeDivisions1WidthSpinBox") << 0.0 << 100.0 << 1.0 << 3 << 0.0 << lineWidth;
    QTest::newRow("gaugeDivisions2WidthSpinBox") << 0.0 << 100.0 << 1.0 << 3 << 0.0 << lineWidth;
    QTest::newRow("gaugeDivisions3WidthSpinBox") << 0.0 << 100.0 << 1.0 << 3 << 0.0 << lineWidth;

    QTest::newRow("arc1StartAngleSpinBox") << -360.0 << 360.0 << 1.0 << 2 << 0.0 << angleStart;
    QTest::newRow("arc2StartAngleSpinBox") << -360.0 << 360.0 << 1.0 << 2 << 0.0 << angleStart;
    QTest::newRow("arc3StartAngleSpinBox") << -360.0 << 360.0 << 1.0 << 2 << 0.0 << angleStart;
    QTest::newRow("arc4StartAngleSpinBox") << -360.0 << 360.0 << 1.0 << 2 << 0.0 << angleStart;
    QTest::newRow("arc1AngleLengthSpinBox") << -360.0 << 360.0 << 1.0 << 3 << 120.0 << angleLength;
    QTest::newRow("arc2AngleLengthSpinBox") << -360.0 << 360.0 << 1.0 << 3 << 0.0 << angleLength;
    QTest::newRow("arc3AngleLengthSpinBox") << -360.0 << 360.0 << 1.0 << 3 << 0.0 << angleLength;
    QTest::newRow("arc4AngleLengthSpinBox") << -360.0 << 360.0 << 1.0 << 3 << 0.0 << angleLength;
    QTest::newRow("arc1RadiusSpinBox") << 0.0 << 1.0 << 0.01 << 3 << 1.0 << arcRadius;
    QTest::newRow("arc2RadiusSpinBox") << 0.0 << 1.0 << 0.01 << 3 << 1.0 << arcRadius;
    QTest::newRow("arc3RadiusSpinBox") << 0.0 << 1.0 << 0.01 << 3 << 1.0 << arcRadius;
    QTest::newRow("arc4RadiusSpinBox") << 0.0 << 1.0 << 0.01 << 3 << 1.0 << arcRadius;
    QTest::newRow("arc1WidthSpinBox") << 0.0 << 100.0 << 1.0 << 3 << 0.0 << lineWidth;
    QTest::newRow("arc2WidthSpinBox") << 0.0 << 100.0 << 1.0 << 3 << 0.0 << lineWidth;
    QTest::newRow("arc3WidthSpinBox") << 0.0 << 100.0 << 1.0 << 3 << 0.0 << lineWidth;
    QTest::newRow("arc4WidthSpinBox") << 0.0 << 100.0 << 1.0 << 3 << 0.0 << lineWidth;

    QTest::newRow("tickCountRadiusSpinBox") << 0.0 << 1.0 << 0.01 << 3 << 0.74 << u"Radius of Tick Counts"_s;
    QTest::newRow("tickCountStartSpinBox") << -360.0 << 360.0 << 1.0 << 0 << 0.0 << u"First Tick Value"_s;
    QTest::newRow("tickCountIncrementSpinBox")
        << -32000.0 << 32000.0 << 1.0 << 0 << 1.0 << u"Number to Increment Ticks By"_s;
}

void tst_FormControls::doubleSpinBox()
{
    QFETCH(double, minimum);
    QFETCH(double, maximum);
    QFETCH(double, step);
    QFETCH(int, decimals);
    QFETCH(double, value);
    QFETCH(QString, toolTip);
    const auto *box = control<QDoubleSpinBox>(QString::fromLatin1(QTest::currentDataTag()));
    QVERIFY(box != nullptr);
    QCOMPARE(box->minimum(), minimum);
    QCOMPARE(box->maximum(), maximum);
    QCOMPARE(box->singleStep(), step);
    QCOMPARE(box->decimals(), decimals);
    QCOMPARE(box->value(), value);
    QCOMPARE(box->toolTip(), toolTip);
    QVERIFY(!box->isReadOnly());
    QVERIFY(!box->wrapping());
    QCOMPARE(box->prefix() + box->suffix() + box->specialValueText(), QString());
}

void tst_FormControls::spinBox_data()
{
    QTest::addColumn<int>("minimum");
    QTest::addColumn<int>("maximum");
    QTest::addColumn<int>("step");
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("toolTip");

    QTest::newRow("gaugeDivisions1SpinBox") << 0 << 100 << 1 << 4 << u"Number of Primary Divisions"_s;
    QTest::newRow("gaugeDivisions2SpinBox") << 1 << 100 << 1 << 1 << u"Number of Secondary Divisions"_s;
    QTest::newRow("gaugeDivisions3SpinBox") << 1 << 100 << 1 << 1 << u"Number of Tertiary Divisions"_s;
    QTest::newRow("tickCountDecimalPlacesSpinBox")
        << 0 << 6 << 1 << 0 << u"Number of Decimal Places for Tick Counts"_s;
    QTest::newRow("pngSizeSpinBox") << 64 << 4096 << 32 << 512
                                    << u"Size of the exported PNG/SVG square in pixels (max 4096)"_s;
}

void tst_FormControls::spinBox()
{
    QFETCH(int, minimum);
    QFETCH(int, maximum);
    QFETCH(int, step);
    QFETCH(int, value);
    QFETCH(QString, toolTip);
    const auto *box = control<QSpinBox>(QString::fromLatin1(QTest::currentDataTag()));
    QVERIFY(box != nullptr);
    QCOMPARE(box->minimum(), minimum);
    QCOMPARE(box->maximum(), maximum);
    QCOMPARE(box->singleStep(), step);
    QCOMPARE(box->value(), value);
    QCOMPARE(box->toolTip(), toolTip);
    QVERIFY(!box->isReadOnly());
    QVERIFY(!box->wrapping());
    QCOMPARE(box->prefix() + box->suffix() + box->specialValueText(), QString());
}

void tst_FormControls::checkBox_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("checked");
    QTest::addColumn<Qt::LayoutDirection>("direction");
    QTest::addColumn<QString>("toolTip");

    QTest::newRow("roundedTickCapsCheckBox")
        << u"Rounded End Caps"_s << false << Qt::RightToLeft << u"Draw Lines with Rounded Caps?"_s;
    QTest::newRow("roundedArcCapsCheckBox")
        << u"Rounded End Caps"_s << false << Qt::RightToLeft << u"Draw Lines with Rounded Caps?"_s;
    QTest::newRow("tickCountCheckBox")
        << u"Show Tick Counts"_s << true << Qt::LeftToRight << u"Show Tick Counts on Gauge?"_s;
    QTest::newRow("tickCountRotateCheckBox") << u"Rotate Tick Counts"_s << false << Qt::LeftToRight
                                             << u"Rotate Tick Counts to match Tick Angle?"_s;
    QTest::newRow("skipFirstTickCheckBox") << u"Skip First Tick"_s << false << Qt::LeftToRight
                                           << u"Skip drawing first tick count for overlap?"_s;
}

void tst_FormControls::checkBox()
{
    QFETCH(QString, text);
    QFETCH(bool, checked);
    QFETCH(Qt::LayoutDirection, direction);
    QFETCH(QString, toolTip);
    const auto *box = control<QCheckBox>(QString::fromLatin1(QTest::currentDataTag()));
    QVERIFY(box != nullptr);
    QCOMPARE(box->text(), text);
    QCOMPARE(box->isChecked(), checked);
    QCOMPARE(box->layoutDirection(), direction);
    QCOMPARE(box->toolTip(), toolTip);
}

void tst_FormControls::button_data()
{
    QTest::addColumn<bool>("isToolButton");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("toolTip");

    const QString dots = u"..."_s;
    QTest::newRow("gaugeDivisions1ColorButton") << true << dots << u"Set Primary Division Color"_s;
    QTest::newRow("gaugeDivisions2ColorButton") << true << dots << u"Set Secondary Division Color"_s;
    QTest::newRow("gaugeDivisions3ColorButton") << true << dots << u"Set Tertiary Division Color"_s;
    QTest::newRow("arc1ColorButton") << true << dots << u"Set Arc 1 Color"_s;
    QTest::newRow("arc2ColorButton") << true << dots << u"Set Arc 2 Color"_s;
    QTest::newRow("arc3ColorButton") << true << dots << u"Set Arc 3 Color"_s;
    QTest::newRow("arc4ColorButton") << true << dots << u"Set Arc 4 Color"_s;
    QTest::newRow("tickColorButton") << true << dots << u"Set Tick Count Color"_s;
    QTest::newRow("tickCountFontButton") << false << u"Font"_s << u"Change Font for Tick Counts"_s;
    QTest::newRow("AddLayerButton") << false << u"Add Layer"_s << u"Add New Layer"_s;
    QTest::newRow("RemoveLayerButton") << false << u"Remove Layer"_s << u"Remove Selected Layer"_s;
    QTest::newRow("SaveLayerButton") << false << u"Save Layer..."_s
                                     << u"Save only the selected layer, as a reusable preset"_s;
    QTest::newRow("saveButton") << false << u"Save"_s << u"Save the whole gauge - every layer - to a file"_s;
    QTest::newRow("loadButton") << false << u"Load"_s
                                << u"Load a gauge file or preset, adding its layers to this gauge"_s;
    QTest::newRow("saveSVGButton") << false << u"Save SVG"_s << u"Save Scalable Vector Graphics Format"_s;
    QTest::newRow("savePNGButton") << false << u"Save PNG"_s << u"Save PNG file (no background)"_s;
    QTest::newRow("saveKeyFrameButton")
        << false << u"Save Keyframes CSV"_s << u"Save CSV File with Angle Values for Animation Reference"_s;
    QTest::newRow("loadReferenceButton")
        << false << u"Load Reference"_s << u"Load Reference Image png (512x512px)"_s;
    QTest::newRow("clearReferenceButton") << false << u"Clear Reference"_s << u"Clear Reference Image"_s;
    QTest::newRow("checkUpdatesButton") << false << u"Check For Updates"_s << QString();
}

void tst_FormControls::button()
{
    QFETCH(bool, isToolButton);
    QFETCH(QString, text);
    QFETCH(QString, toolTip);
    const QString name = QString::fromLatin1(QTest::currentDataTag());
    const QAbstractButton *button = isToolButton
                                        ? static_cast<const QAbstractButton *>(control<QToolButton>(name))
                                        : control<QPushButton>(name);
    QVERIFY(button != nullptr);
    QCOMPARE(button->text(), text);
    QCOMPARE(button->toolTip(), toolTip);
    QVERIFY(!button->isCheckable());
    QVERIFY(button->styleSheet().isEmpty());
}

void tst_FormControls::comboBoxesAreEmpty_data()
{
    QTest::addColumn<QString>("toolTip");
    QTest::newRow("biasTypeComboBox") << u"Which function to use for Bias."_s;
    QTest::newRow("presetComboBox") << u"Select a Preset from file"_s;
}

void tst_FormControls::comboBoxesAreEmpty()
{
    QFETCH(QString, toolTip);
    const auto *box = control<QComboBox>(QString::fromLatin1(QTest::currentDataTag()));
    QVERIFY(box != nullptr);
    QCOMPARE(box->count(), 0);
    QVERIFY(!box->isEditable());
    QCOMPARE(box->toolTip(), toolTip);
}

void tst_FormControls::layerListIsEmpty()
{
    const auto *list = control<QListWidget>(u"layerList"_s);
    QVERIFY(list != nullptr);
    QCOMPARE(list->count(), 0);
    QCOMPARE(list->toolTip(), u"Select a Layer. Double-click a name to rename it."_s);
}

void tst_FormControls::onlyLayerButtonsFillTheirBackground()
{
    QStringList filling;
    const auto buttons = m_widget.findChildren<QAbstractButton *>();
    for (const QAbstractButton *button : buttons) {
        if (button->autoFillBackground())
            filling.append(button->objectName());
    }
    filling.sort();
    QCOMPARE(filling, (QStringList{u"AddLayerButton"_s, u"RemoveLayerButton"_s, u"SaveLayerButton"_s}));
}

void tst_FormControls::thereAreNoOtherControls()
{
    QMap<QString, int> found;
    const auto widgets = m_widget.findChildren<QWidget *>();
    for (const QWidget *widget : widgets) {
        // What Qt's own widgets are made of has no name, or one of Qt's.
        if (!widget->objectName().isEmpty() && !widget->objectName().startsWith("qt_"_L1))
            ++found[QLatin1String(widget->metaObject()->className())];
    }
    // The 37 numbered labels, the backdrop of the preview and the about label.
    const QMap<QString, int> expected{
        {u"QDoubleSpinBox"_s, 31}, {u"QSpinBox"_s, 5},    {u"QCheckBox"_s, 5},   {u"QPushButton"_s, 12},
        {u"QToolButton"_s, 8},     {u"QComboBox"_s, 2},   {u"QListWidget"_s, 1}, {u"QGroupBox"_s, 5},
        {u"QFrame"_s, 5},          {u"QLabel"_s, 37 + 2},
    };
    QCOMPARE(found, expected);
}

ADD_TEST_CLASS(tst_FormControls)
#include "tst_formcontrols.moc"
