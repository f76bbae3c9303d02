#include "model/gaugefile.h"
#include "support/dialogs.h"
#include "support/editor.h"
#include "support/records.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QAccessible>
#include <QColorDialog>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QAccessibleInterface *accessible(QObject *object)
{
    return QAccessible::queryAccessibleInterface(object);
}

/// What a screen reader calls a combo box: its label, since its own name is its current text on Unix. Of any
/// other control the name that it has itself; the title of a group is a label to everything in the group.
QString spokenName(const QAccessibleInterface &control)
{
    if (control.role() != QAccessible::ComboBox)
        return control.text(QAccessible::Name);
    const auto labels = control.relations(QAccessible::Label);
    const QString name = labels.isEmpty() ? QString() : labels.first().first->text(QAccessible::Name);
    return name.endsWith(u':') ? name.chopped(1) : name;
}

/// Adds all that can be focused at or below @a top, as far as it shows.
void collectFocusable(QAccessibleInterface *top, QList<QAccessibleInterface *> &found)
{
    if (top == nullptr || top->state().invisible)
        return;
    if (top->state().focusable && top->role() != QAccessible::ListItem)
        found.append(top);
    for (int index = 0; index < top->childCount(); ++index)
        collectFocusable(top->child(index), found);
}

QList<QAccessibleInterface *> focusableControls(Editor &editor)
{
    QList<QAccessibleInterface *> found;
    collectFocusable(accessible(&editor.window), found);
    return found;
}

} // namespace

/// What the window tells assistive tools, and that keys alone get everywhere.
class tst_Accessibility : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void controlHasItsRoleAndName_data();
    void controlHasItsRoleAndName();
    void noTwoControlsShareAName();
    void previewIsAPicture();
    void layersAreListed();
    void spinBoxTellsItsValue();
    void valueSetByAToolReachesTheLayer();
    void checkBoxTellsItsState();
    void colorButtonTellsTheColorOfTheLayer();
    void colorButtonTellsThePickedColor();
    void buttonIsPressedByATool();

    void tabKeyReachesEveryControlOnceAndBack();
    void biasTypeIsChosenByItsLetter();
    void overwritingIsChosenByKeys();

private:
    static QStringList controlsAlongTheKey(Editor &editor, Qt::Key key);
};

void tst_Accessibility::controlHasItsRoleAndName_data()
{
    QTest::addColumn<QAccessible::Role>("role");
    QTest::addColumn<QString>("name");

    const auto row = [](const QString &control, QAccessible::Role role, const QString &name) {
        QTest::newRow(qPrintable(control)) << role << name;
    };
    row(u"gaugeStartAngleSpinBox"_s, QAccessible::SpinBox, u"Start Angle"_s);
    row(u"gaugeAngleLengthSpinBox"_s, QAccessible::SpinBox, u"Angle Length"_s);
    row(u"gaugeBiasSpinBox"_s, QAccessible::SpinBox, u"Bias"_s);
    row(u"biasTypeComboBox"_s, QAccessible::ComboBox, u"Bias Type"_s);
    row(u"presetComboBox"_s, QAccessible::ComboBox, u"Preset"_s);

    const QStringList rings{u"Primary"_s, u"Secondary"_s, u"Tertiary"_s};
    for (int ring = 1; ring <= 3; ++ring) {
        const QString control = u"gaugeDivisions%1"_s.arg(ring);
        const QString &name = rings.at(ring - 1);
        row(control + u"SpinBox"_s, QAccessible::SpinBox, name + u" Divisions"_s);
        row(control + u"WidthSpinBox"_s, QAccessible::SpinBox, name + u" Division Line Width"_s);
        row(control + u"InnerRadiusSpinBox"_s, QAccessible::SpinBox, name + u" Division Inner Radius"_s);
        row(control + u"OuterRadiusSpinBox"_s, QAccessible::SpinBox, name + u" Division Outer Radius"_s);
        row(control + u"ColorButton"_s, QAccessible::Button, name + u" Division Color"_s);
    }
    row(u"roundedTickCapsCheckBox"_s, QAccessible::CheckBox, u"Division Rounded End Caps"_s);

    for (int arc = 1; arc <= 4; ++arc) {
        const QString control = u"arc%1"_s.arg(arc);
        const QString name = u"Arc %1"_s.arg(arc);
        row(control + u"StartAngleSpinBox"_s, QAccessible::SpinBox, name + u" Start"_s);
        row(control + u"AngleLengthSpinBox"_s, QAccessible::SpinBox, name + u" Length"_s);
        row(control + u"RadiusSpinBox"_s, QAccessible::SpinBox, name + u" Radius"_s);
        row(control + u"WidthSpinBox"_s, QAccessible::SpinBox, name + u" Line Width"_s);
        row(control + u"ColorButton"_s, QAccessible::Button, name + u" Color"_s);
    }
    row(u"roundedArcCapsCheckBox"_s, QAccessible::CheckBox, u"Arc Rounded End Caps"_s);

    row(u"tickCountRadiusSpinBox"_s, QAccessible::SpinBox, u"Tick Count Radius"_s);
    row(u"tickCountStartSpinBox"_s, QAccessible::SpinBox, u"Tick Count Start"_s);
    row(u"tickCountDecimalPlacesSpinBox"_s, QAccessible::SpinBox, u"Tick Count Decimal Places"_s);
    row(u"tickCountIncrementSpinBox"_s, QAccessible::SpinBox, u"Tick Count Increment"_s);
    row(u"tickColorButton"_s, QAccessible::Button, u"Tick Count Color"_s);
    row(u"tickCountCheckBox"_s, QAccessible::CheckBox, u"Show Tick Counts"_s);
    row(u"tickCountRotateCheckBox"_s, QAccessible::CheckBox, u"Rotate Tick Counts"_s);
    row(u"skipFirstTickCheckBox"_s, QAccessible::CheckBox, u"Skip First Tick"_s);
    row(u"tickCountFontButton"_s, QAccessible::Button, u"Tick Count Font"_s);

    row(u"saveSVGButton"_s, QAccessible::Button, u"Save SVG"_s);
    row(u"savePNGButton"_s, QAccessible::Button, u"Save PNG"_s);
    row(u"pngSizeSpinBox"_s, QAccessible::SpinBox, u"Export Size"_s);
    row(u"saveKeyFrameButton"_s, QAccessible::Button, u"Save Keyframes CSV"_s);
    row(u"loadReferenceButton"_s, QAccessible::Button, u"Load Reference"_s);
    row(u"clearReferenceButton"_s, QAccessible::Button, u"Clear Reference"_s);
    row(u"checkUpdatesButton"_s, QAccessible::Button, u"Check For Updates"_s);
    row(u"layerList"_s, QAccessible::List, u"Layers"_s);
    row(u"AddLayerButton"_s, QAccessible::Button, u"Add Layer"_s);
    row(u"RemoveLayerButton"_s, QAccessible::Button, u"Remove Layer"_s);
    row(u"SaveLayerButton"_s, QAccessible::Button, u"Save Layer..."_s);
    row(u"saveButton"_s, QAccessible::Button, u"Save"_s);
    row(u"loadButton"_s, QAccessible::Button, u"Load"_s);
}

void tst_Accessibility::controlHasItsRoleAndName()
{
    QFETCH(QAccessible::Role, role);
    QFETCH(QString, name);
    const Editor editor;
    const auto *control = accessible(editor.control<QWidget>(QString::fromLatin1(QTest::currentDataTag())));
    QVERIFY(control != nullptr);
    QCOMPARE(control->role(), role);
    QCOMPARE(spokenName(*control), name);
}

void tst_Accessibility::noTwoControlsShareAName()
{
    Editor editor;
    editor.show();
    QStringList names;
    const auto controls = focusableControls(editor);
    for (const QAccessibleInterface *control : controls) {
        const QString name = spokenName(*control);
        QVERIFY2(!name.trimmed().isEmpty(), qPrintable(control->object()->objectName()));
        QVERIFY2(!names.contains(name), qPrintable(name));
        names.append(name);
    }
    // The fifty controls of a layer, and those of the files, the exports and the layer list.
    QCOMPARE(names.size(), 50 + 14);
}

void tst_Accessibility::previewIsAPicture()
{
    const Editor editor;
    const auto *preview = accessible(editor.preview());
    QCOMPARE(preview->role(), QAccessible::Graphic);
    QCOMPARE(preview->text(QAccessible::Name), u"Gauge Preview"_s);
}

void tst_Accessibility::layersAreListed()
{
    const Editor editor;
    editor.addLayer(u"Needle"_s);
    const auto *list = accessible(editor.layerList());
    QCOMPARE(list->childCount(), 2);
    QCOMPARE(list->child(0)->text(QAccessible::Name), u"Layer 1"_s);
    QCOMPARE(list->child(1)->text(QAccessible::Name), u"Needle"_s);
    QVERIFY(list->child(0)->state().selected);
    QVERIFY(!list->child(1)->state().selected);
}

void tst_Accessibility::spinBoxTellsItsValue()
{
    const Editor editor;
    auto *radius = accessible(editor.control<QWidget>("arc2RadiusSpinBox"_L1));
    editor.control<QDoubleSpinBox>("arc2RadiusSpinBox"_L1)->setValue(0.625);
    QCOMPARE(radius->text(QAccessible::Value), u"0.625"_s);
    QCOMPARE(radius->valueInterface()->currentValue().toDouble(), 0.625);
}

void tst_Accessibility::valueSetByAToolReachesTheLayer()
{
    const Editor editor;
    accessible(editor.control<QWidget>("arc2RadiusSpinBox"_L1))->valueInterface()->setCurrentValue(0.375);
    QCOMPARE(editor.preview()->layers.first().arcRadius[1], 0.375);
}

void tst_Accessibility::checkBoxTellsItsState()
{
    const Editor editor;
    const auto *shown = accessible(editor.control<QWidget>("tickCountCheckBox"_L1));
    QVERIFY(shown->state().checkable);
    QVERIFY(shown->state().checked);
    editor.control<QCheckBox>("tickCountCheckBox"_L1)->click();
    QVERIFY(!shown->state().checked);
}

void tst_Accessibility::colorButtonTellsTheColorOfTheLayer()
{
    const Editor editor;
    const auto *color = accessible(editor.control<QWidget>("arc3ColorButton"_L1));
    QCOMPARE(color->text(QAccessible::Description), u"#ff0000"_s);
    editor.addLayer(u"Other"_s);
    editor.preview()->layers[1].arcColor[2] = QColor(1, 2, 3);
    editor.layerList()->setCurrentRow(1);
    QCOMPARE(color->text(QAccessible::Description), u"#010203"_s);
}

void tst_Accessibility::colorButtonTellsThePickedColor()
{
    const Editor editor;
    auto *button = editor.control<QToolButton>("tickColorButton"_L1);
    DialogAnswers answers;
    answers.expect<QColorDialog>([](QColorDialog &dialog) {
        dialog.setCurrentColor(QColor(170, 187, 204));
        dialog.accept();
    });
    button->click();
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(accessible(button)->text(QAccessible::Description), u"#aabbcc"_s);
}

void tst_Accessibility::buttonIsPressedByATool()
{
    const Editor editor;
    editor.addLayer(u"Other"_s);
    accessible(editor.control<QWidget>("RemoveLayerButton"_L1))
        ->actionInterface()
        ->doAction(QAccessibleActionInterface::pressAction());
    QTRY_COMPARE(editor.layerList()->count(), 1);
}

/// The controls that have the focus in turn when @a key is pressed, from the first one until it has it again.
QStringList tst_Accessibility::controlsAlongTheKey(Editor &editor, Qt::Key key)
{
    QWidget *const first = editor.control<QWidget>("gaugeStartAngleSpinBox"_L1);
    first->setFocus();
    QStringList visited;
    do {
        visited.append(QApplication::focusWidget()->objectName());
        QTest::keyClick(QApplication::focusWidget(), key);
    } while (QApplication::focusWidget() != first && visited.size() < 1000);
    return visited;
}

void tst_Accessibility::tabKeyReachesEveryControlOnceAndBack()
{
    Editor editor;
    editor.show();
    editor.window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&editor.window));

    QStringList controls;
    const auto focusable = focusableControls(editor);
    for (const QAccessibleInterface *control : focusable)
        controls.append(control->object()->objectName());
    controls.sort();

    const QStringList forward = controlsAlongTheKey(editor, Qt::Key_Tab);
    QStringList sorted = forward;
    sorted.sort();
    QCOMPARE(sorted, controls);

    QStringList back = controlsAlongTheKey(editor, Qt::Key_Backtab);
    // Both begin at the same control.
    std::reverse(back.begin() + 1, back.end());
    QCOMPARE(back, forward);
}

void tst_Accessibility::biasTypeIsChosenByItsLetter()
{
    const Editor editor;
    QTest::keyClick(editor.control<QComboBox>("biasTypeComboBox"_L1), Qt::Key_M);
    QVERIFY(editor.preview()->layers.first().midpointBias);
}

void tst_Accessibility::overwritingIsChosenByKeys()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"Loaded.gauge"_s);
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(file.write(gaugeFile::write({{u"Loaded"_s, sampleLayer()}})) > 0);
    file.close();

    const Editor editor;
    editor.control<QDoubleSpinBox>("gaugeStartAngleSpinBox"_L1)->setValue(10.0); // or nothing is asked
    DialogAnswers answers;
    answers.expectFile(path);
    answers.expect<QMessageBox>([](QMessageBox &box) {
        if (!QTest::qWaitForWindowActive(&box))
            qFatal("The question does not come up.");
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    });
    QTest::keyClick(editor.control<QPushButton>("loadButton"_L1), Qt::Key_Space);
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(editor.layerList()->count(), 1);
    QCOMPARE(differingFields(editor.preview()->layers.first(), sampleLayer()), QStringList());
}

ADD_TEST_CLASS(tst_Accessibility)
#include "tst_accessibility.moc"
