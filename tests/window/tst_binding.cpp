#include "support/editor.h"
#include "support/paintcounter.h"
#include "support/records.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QTest>

using namespace Qt::StringLiterals;

/// What an edit does beyond its own field: the preview, the other layers, the group it belongs to.
class tst_Binding : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void editRepaintsThePreview();
    void typedNumberReachesTheLayer();
    void editWithoutActiveLayerStaysInTheWorkingCopy();
    void handlerPushesItsWholeGroup_data();
    void handlerPushesItsWholeGroup();
    void midpointIsAnyTypeButTheFirst();
    void backToExponential();
    void decimalPlacesAreShownByStartAndIncrement();
    void decimalPlacesRoundWhatIsShown();
    void firstLabelEditTakesTheButtonsFont_data();
    void firstLabelEditTakesTheButtonsFont();
    void otherEditLeavesTheLabelFont();
    void colorIsReadFromTheButtonOfANeverShownWindow_data();
    void colorIsReadFromTheButtonOfANeverShownWindow();
    void restyledButtonGivesItsNewColor();
};

void tst_Binding::editRepaintsThePreview()
{
    Editor editor;
    editor.show();
    const PaintCounter paints(editor.preview());
    editor.control<QDoubleSpinBox>("gaugeStartAngleSpinBox"_L1)->setValue(30.0);
    QCoreApplication::processEvents();
    QVERIFY(paints.count() > 0);
}

void tst_Binding::typedNumberReachesTheLayer()
{
    const Editor editor;
    auto *box = editor.control<QDoubleSpinBox>("gaugeAngleLengthSpinBox"_L1);
    box->selectAll();
    QTest::keyClicks(box, u"270"_s);
    QCOMPARE(editor.preview()->layers.first().angleLength, 270.0);
    QTest::keyClick(box, Qt::Key_Up);
    QCOMPARE(editor.preview()->layers.first().angleLength, 271.0);
}

void tst_Binding::editWithoutActiveLayerStaysInTheWorkingCopy()
{
    const Editor editor;
    editor.layerList()->setCurrentRow(-1);
    editor.control<QDoubleSpinBox>("gaugeStartAngleSpinBox"_L1)->setValue(30.0);
    QCOMPARE(editor.preview()->workingLayer.startAngle, 30.0);
    QCOMPARE(differingFields(editor.preview()->layers.first(), gaugeData()), QStringList());
}

void tst_Binding::handlerPushesItsWholeGroup_data()
{
    QTest::addColumn<QStringList>("fields");
    QTest::newRow("angleChanged") << QStringList{u"startAngle"_s, u"angleLength"_s, u"bias"_s,
                                                 u"midpointBias"_s};
    QTest::newRow("capsChanged") << QStringList{u"roundedTickCaps"_s, u"roundedArcCaps"_s};
    for (int ring = 0; ring < 3; ++ring) {
        QStringList fields;
        for (const auto field : {"divisionCount"_L1, "divisionInnerRadius"_L1, "divisionOuterRadius"_L1,
                                 "divisionLineWidth"_L1, "divisionColor"_L1})
            fields.append(u"%1[%2]"_s.arg(field).arg(ring));
        QTest::addRow("divisions%dChanged", ring + 1) << fields;
    }
    for (int arc = 0; arc < 4; ++arc) {
        QStringList fields;
        for (const auto field :
             {"arcStartAngle"_L1, "arcAngleLength"_L1, "arcRadius"_L1, "arcWidth"_L1, "arcColor"_L1})
            fields.append(u"%1[%2]"_s.arg(field).arg(arc));
        QTest::addRow("arc%dChanged", arc + 1) << fields;
    }
    QStringList labels;
    for (const GaugeField &field : gaugeFields()) {
        if (field.name.startsWith("tickCount"))
            labels.append(QString::fromLatin1(field.name));
    }
    QTest::newRow("tickSettingsChanged") << labels;
    QTest::newRow("tickDecimalsChanged") << labels;
}

void tst_Binding::handlerPushesItsWholeGroup()
{
    QFETCH(QStringList, fields);
    Editor editor;
    editor.preview()->workingLayer = sampleLayer();
    editor.call("setActiveGauge");
    // The controls show one layer, the working copy and the row hold another: what the handler pushes is
    // what it reads from its group, and nothing else.
    editor.preview()->workingLayer = gaugeData();
    editor.call(QTest::currentDataTag());
    QCOMPARE(differingFields(editor.preview()->workingLayer, gaugeData()), fields);
    QCOMPARE(differingFields(editor.preview()->layers.first(), gaugeData()), fields);
    const auto pushed = valuesOf(editor.preview()->workingLayer);
    const auto expected = valuesOf(sampleLayer());
    for (const QString &field : fields)
        QCOMPARE(pushed.value(field.toLatin1()), expected.value(field.toLatin1()));
}

void tst_Binding::midpointIsAnyTypeButTheFirst()
{
    Editor editor;
    auto &types = *editor.control<QComboBox>("biasTypeComboBox"_L1);
    for (const int index : {0, 1, -1}) {
        types.setCurrentIndex(index);
        editor.call("angleChanged");
        QCOMPARE(editor.preview()->layers.first().midpointBias, index != 0);
    }
}

void tst_Binding::backToExponential()
{
    const Editor editor;
    auto *types = editor.control<QComboBox>("biasTypeComboBox"_L1);
    QTest::keyClick(types, Qt::Key_Down);
    QVERIFY(editor.preview()->layers.first().midpointBias);
    QTest::keyClick(types, Qt::Key_Up);
    QVERIFY(!editor.preview()->layers.first().midpointBias);
}

void tst_Binding::decimalPlacesAreShownByStartAndIncrement()
{
    const Editor editor;
    editor.control<QSpinBox>("tickCountDecimalPlacesSpinBox"_L1)->setValue(2);
    for (const auto name : {"tickCountStartSpinBox"_L1, "tickCountIncrementSpinBox"_L1}) {
        const auto &box = *editor.control<QDoubleSpinBox>(name);
        QCOMPARE(box.decimals(), 2);
        QCOMPARE(box.text(), box.locale().toString(box.value(), 'f', 2));
    }
    QCOMPARE(editor.preview()->layers.first().tickCountDecimalPlaces, 2);
}

void tst_Binding::decimalPlacesRoundWhatIsShown()
{
    const Editor editor;
    auto &decimals = *editor.control<QSpinBox>("tickCountDecimalPlacesSpinBox"_L1);
    decimals.setValue(3);
    editor.control<QDoubleSpinBox>("tickCountStartSpinBox"_L1)->setValue(1.25);
    editor.control<QDoubleSpinBox>("tickCountIncrementSpinBox"_L1)->setValue(0.75);
    QCOMPARE(editor.preview()->layers.first().tickCountStart, 1.25);
    decimals.setValue(0);
    QCOMPARE(editor.preview()->layers.first().tickCountStart, 1.0);
    QCOMPARE(editor.preview()->layers.first().tickCountIncrement, 1.0);
    QCOMPARE(editor.preview()->layers.first().tickCountDecimalPlaces, 0);
}

void tst_Binding::firstLabelEditTakesTheButtonsFont_data()
{
    QTest::addColumn<QString>("control");
    QTest::newRow("radius") << u"tickCountRadiusSpinBox"_s;
    QTest::newRow("start") << u"tickCountStartSpinBox"_s;
    QTest::newRow("increment") << u"tickCountIncrementSpinBox"_s;
    QTest::newRow("decimal places") << u"tickCountDecimalPlacesSpinBox"_s;
    QTest::newRow("show") << u"tickCountCheckBox"_s;
    QTest::newRow("rotate") << u"tickCountRotateCheckBox"_s;
    QTest::newRow("skip first") << u"skipFirstTickCheckBox"_s;
}

void tst_Binding::firstLabelEditTakesTheButtonsFont()
{
    QFETCH(QString, control);
    const QFont before = QApplication::font();
    QApplication::setFont(QFont(u"Monospace"_s, 19));
    {
        const Editor editor;
        QCOMPARE(editor.preview()->workingLayer.tickCountFont, QFont(u"Sans Serif"_s, 10));
        if (auto *box = editor.window.findChild<QCheckBox *>(control))
            box->click();
        else
            editor.control<QAbstractSpinBox>(control)->stepUp();
        QCOMPARE(editor.preview()->workingLayer.tickCountFont.family(), u"Monospace"_s);
        QCOMPARE(editor.preview()->layers.first().tickCountFont.pointSize(), 19);
    }
    QApplication::setFont(before);
}

void tst_Binding::otherEditLeavesTheLabelFont()
{
    const Editor editor;
    editor.control<QDoubleSpinBox>("gaugeStartAngleSpinBox"_L1)->setValue(1.0);
    editor.control<QDoubleSpinBox>("arc1WidthSpinBox"_L1)->setValue(1.0);
    editor.control<QDoubleSpinBox>("gaugeDivisions1WidthSpinBox"_L1)->setValue(1.0);
    editor.control<QCheckBox>("roundedArcCapsCheckBox"_L1)->click();
    QCOMPARE(editor.preview()->workingLayer.tickCountFont, QFont(u"Sans Serif"_s, 10));
}

void tst_Binding::colorIsReadFromTheButtonOfANeverShownWindow_data()
{
    QTest::addColumn<QString>("edited");
    QTest::addColumn<QString>("field");
    QTest::addColumn<QColor>("color");
    for (int ring = 1; ring <= 3; ++ring) {
        QTest::addRow("ring %d", ring) << u"gaugeDivisions%1WidthSpinBox"_s.arg(ring)
                                       << u"divisionColor[%1]"_s.arg(ring - 1) << QColor(Qt::white);
    }
    const QList<QColor> arcs{Qt::green, Qt::yellow, Qt::red, Qt::white};
    for (int arc = 1; arc <= 4; ++arc) {
        QTest::addRow("arc %d", arc) << u"arc%1WidthSpinBox"_s.arg(arc) << u"arcColor[%1]"_s.arg(arc - 1)
                                     << arcs.at(arc - 1);
    }
    QTest::newRow("labels") << u"tickCountRadiusSpinBox"_s << u"tickCountColor"_s << QColor(Qt::white);
}

void tst_Binding::colorIsReadFromTheButtonOfANeverShownWindow()
{
    QFETCH(QString, edited);
    QFETCH(QString, field);
    QFETCH(QColor, color);
    const Editor editor;
    editor.control<QDoubleSpinBox>(edited)->setValue(0.5);
    QCOMPARE(valuesOf(editor.preview()->layers.first()).value(field.toLatin1()).value<QColor>().rgb(),
             color.rgb());
}

void tst_Binding::restyledButtonGivesItsNewColor()
{
    // The button is the one source of its element's colour.
    Editor editor;
    auto *button = editor.control<QToolButton>("arc2ColorButton"_L1);
    for (const bool shown : {false, true}) {
        if (shown)
            editor.show();
        const QColor color = shown ? QColor(1, 35, 69) : QColor(171, 205, 239);
        button->setStyleSheet(u"background-color: %1}"_s.arg(color.name()));
        editor.call("arc2Changed");
        QCOMPARE(editor.preview()->layers.first().arcColor[1], color);
    }
}

ADD_TEST_CLASS(tst_Binding)
#include "tst_binding.moc"
