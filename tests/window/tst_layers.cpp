#include "support/dialogs.h"
#include "support/editor.h"
#include "support/paintcounter.h"
#include "support/records.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

/// Adding, selecting and removing layers: the list and the stack stay in step.
class tst_Layers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void nameDialogIsEmptyAtFirst();
    void addedLayerIsDefaultAtTheEnd();
    void addingLeavesActiveLayerAndControls();
    void addingRepaints();
    void addedRowCanBeRenamed();
    void typedNameIsTrimmed_data();
    void typedNameIsTrimmed();
    void cancelledNameAddsNothing();
    void emptyNameAddsNothing();
    void sameNameIsTakenTwice();

    void clickSelectsLayer();
    void arrowKeySelectsLayer();
    void selectingKeepsTheEditsOfThePreviousLayer();
    void selectingRepaints();
    void selectingNothingSavesTheLayer();
    void selectedWithoutPreviousLoads();

    void removingTheMiddleSelectsTheNext();
    void removingTheLastSelectsTheNewLast();
    void removingTheFirstSelectsTheNext();
    void removedLayerIsNotWrittenOverItsNeighbour();
    void removingIsNotSelecting();
    void removingRepaints();
    void removingSwitchesSignalsOn();
    void onlyLayerStays();
    void onlyLayerStaysAlsoWhenNotSelected();
    void removingWithoutSelectionDoesNothing();

private:
    /// Presses "Add Layer", types @a name and presses OK.
    static void typeNewLayer(const Editor &editor, const QString &name);
    /// A window with the rows "Layer 1", "second" and "third", whose layers start at 10, 20 and 30 degrees.
    static void makeThreeLayers(Editor &editor);
    static QStringList names(const Editor &editor);
    static QList<double> startAngles(const Editor &editor);
    static double shownStartAngle(const Editor &editor);
};

void tst_Layers::typeNewLayer(const Editor &editor, const QString &name)
{
    DialogAnswers answers;
    answers.expect<QInputDialog>([&name](QInputDialog &dialog) {
        QTest::keyClicks(dialog.findChild<QLineEdit *>(), name);
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    editor.control<QPushButton>("AddLayerButton"_L1)->click();
    QCOMPARE(answers.problems(), QStringList());
}

void tst_Layers::makeThreeLayers(Editor &editor)
{
    editor.addLayer(u"second"_s);
    editor.addLayer(u"third"_s);
    for (int row = 0; row < 3; ++row) {
        editor.layerList()->setCurrentRow(row);
        editor.control<QDoubleSpinBox>("gaugeStartAngleSpinBox"_L1)->setValue(10.0 * (row + 1));
    }
    QCOMPARE(startAngles(editor), (QList{10.0, 20.0, 30.0}));
}

QStringList tst_Layers::names(const Editor &editor)
{
    QStringList names;
    for (int row = 0; row < editor.layerList()->count(); ++row)
        names.append(editor.layerList()->item(row)->text());
    return names;
}

QList<double> tst_Layers::startAngles(const Editor &editor)
{
    QList<double> angles;
    for (const gaugeData &layer : std::as_const(editor.preview()->layers))
        angles.append(layer.startAngle);
    return angles;
}

double tst_Layers::shownStartAngle(const Editor &editor)
{
    return editor.control<QDoubleSpinBox>("gaugeStartAngleSpinBox"_L1)->value();
}

void tst_Layers::nameDialogIsEmptyAtFirst()
{
    const Editor editor;
    DialogAnswers answers;
    bool asked = false;
    answers.expect<QInputDialog>([&editor, &asked](QInputDialog &dialog) {
        asked = true;
        dialog.reject(); // first, since a failing comparison goes no further
        QCOMPARE(dialog.windowTitle(), u"New Layer"_s);
        QCOMPARE(dialog.labelText(), u"Layer name:"_s);
        QCOMPARE(dialog.textValue(), QString());
        QCOMPARE(dialog.textEchoMode(), QLineEdit::Normal);
        QCOMPARE(dialog.parentWidget(), &editor.window);
    });
    editor.control<QPushButton>("AddLayerButton"_L1)->click();
    QVERIFY(asked);
    QCOMPARE(answers.problems(), QStringList());
}

void tst_Layers::addedLayerIsDefaultAtTheEnd()
{
    const Editor editor;
    editor.preview()->layers[0] = sampleLayer();
    editor.preview()->workingLayer = sampleLayer();
    typeNewLayer(editor, u"Needle"_s);
    QCOMPARE(names(editor), (QStringList{u"Layer 1"_s, u"Needle"_s}));
    QCOMPARE(editor.layerList()->item(1)->data(Qt::UserRole).toString(), u"Needle"_s);
    QCOMPARE(editor.preview()->layers.size(), 2);
    QCOMPARE(differingFields(editor.preview()->layers.at(1), gaugeData()), QStringList());
    QCOMPARE(differingFields(editor.preview()->layers.at(0), sampleLayer()), QStringList());
}

void tst_Layers::addingLeavesActiveLayerAndControls()
{
    const Editor editor;
    editor.control<QDoubleSpinBox>("gaugeStartAngleSpinBox"_L1)->setValue(33.0);
    const gaugeData before = editor.preview()->workingLayer;
    typeNewLayer(editor, u"Needle"_s);
    QCOMPARE(editor.layerList()->currentRow(), 0);
    QCOMPARE(shownStartAngle(editor), 33.0);
    QCOMPARE(differingFields(editor.preview()->workingLayer, before), QStringList());
}

void tst_Layers::addingRepaints()
{
    Editor editor;
    editor.show();
    std::unique_ptr<PaintCounter> paints;
    DialogAnswers answers;
    answers.expect<QInputDialog>([&editor, &paints](QInputDialog &dialog) {
        dialog.setTextValue(u"Needle"_s);
        dialog.accept();
        // What the dialog itself uncovers is painted before the counting begins.
        QCoreApplication::processEvents();
        paints = std::make_unique<PaintCounter>(editor.preview());
    });
    editor.control<QPushButton>("AddLayerButton"_L1)->click();
    QCOMPARE(answers.problems(), QStringList());
    QCoreApplication::processEvents();
    QVERIFY(paints->count() > 0);
}

void tst_Layers::addedRowCanBeRenamed()
{
    const Editor editor;
    typeNewLayer(editor, u"Needle"_s);
    QVERIFY(editor.layerList()->item(1)->flags().testFlag(Qt::ItemIsEditable));
    QVERIFY(editor.layerList()->item(1)->flags().testFlag(Qt::ItemIsSelectable));
}

void tst_Layers::typedNameIsTrimmed_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("name");
    QTest::newRow("blanks around") << u"  Needle "_s << u"Needle"_s;
    QTest::newRow("blanks within") << u" big  needle "_s << u"big  needle"_s;
    QTest::newRow("blanks only") << u"   "_s << u"   "_s;
    QTest::newRow("one blank") << u" "_s << u" "_s;
    QTest::newRow("no blanks") << u"Needle"_s << u"Needle"_s;
    QTest::newRow("any characters") << u"%1 <b>\"&\\"_s << u"%1 <b>\"&\\"_s;
}

void tst_Layers::typedNameIsTrimmed()
{
    QFETCH(QString, typed);
    QFETCH(QString, name);
    const Editor editor;
    typeNewLayer(editor, typed);
    QCOMPARE(editor.layerList()->count(), 2);
    QCOMPARE(editor.layerList()->item(1)->data(Qt::DisplayRole).toString(), name);
    QCOMPARE(editor.layerList()->item(1)->data(Qt::UserRole).toString(), name);
}

void tst_Layers::cancelledNameAddsNothing()
{
    const Editor editor;
    DialogAnswers answers;
    answers.expect<QInputDialog>([](QInputDialog &dialog) {
        QTest::keyClicks(dialog.findChild<QLineEdit *>(), u"Needle"_s);
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    editor.control<QPushButton>("AddLayerButton"_L1)->click();
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(names(editor), QStringList(u"Layer 1"_s));
    QCOMPARE(editor.preview()->layers.size(), 1);
}

void tst_Layers::emptyNameAddsNothing()
{
    const Editor editor;
    typeNewLayer(editor, QString());
    QCOMPARE(names(editor), QStringList(u"Layer 1"_s));
    QCOMPARE(editor.preview()->layers.size(), 1);
}

void tst_Layers::sameNameIsTakenTwice()
{
    const Editor editor;
    typeNewLayer(editor, u"Layer 1"_s);
    QCOMPARE(names(editor), (QStringList{u"Layer 1"_s, u"Layer 1"_s}));
    QCOMPARE(editor.preview()->layers.size(), 2);
}

void tst_Layers::clickSelectsLayer()
{
    Editor editor;
    makeThreeLayers(editor);
    editor.show();
    QListWidget &list = *editor.layerList();
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.visualItemRect(list.item(1)).center());
    QCOMPARE(list.currentRow(), 1);
    QCOMPARE(shownStartAngle(editor), 20.0);
    QCOMPARE(editor.preview()->workingLayer.startAngle, 20.0);
}

void tst_Layers::arrowKeySelectsLayer()
{
    Editor editor;
    makeThreeLayers(editor);
    QTest::keyClick(editor.layerList(), Qt::Key_Up);
    QCOMPARE(shownStartAngle(editor), 20.0);
    QTest::keyClick(editor.layerList(), Qt::Key_Up);
    QCOMPARE(shownStartAngle(editor), 10.0);
}

void tst_Layers::selectingKeepsTheEditsOfThePreviousLayer()
{
    Editor editor;
    makeThreeLayers(editor);
    // A change of the working copy that is not in the stack yet.
    editor.preview()->workingLayer.startAngle = 99.0;
    editor.layerList()->setCurrentRow(0);
    QCOMPARE(startAngles(editor), (QList{10.0, 20.0, 99.0}));
    QCOMPARE(shownStartAngle(editor), 10.0);
}

void tst_Layers::selectingRepaints()
{
    Editor editor;
    makeThreeLayers(editor);
    editor.show();
    const PaintCounter paints(editor.preview());
    editor.layerList()->setCurrentRow(0);
    QCoreApplication::processEvents();
    QVERIFY(paints.count() > 0);
}

void tst_Layers::selectingNothingSavesTheLayer()
{
    Editor editor;
    makeThreeLayers(editor);
    editor.preview()->workingLayer.startAngle = 99.0;
    editor.layerList()->setCurrentRow(-1);
    QCOMPARE(startAngles(editor), (QList{10.0, 20.0, 99.0}));
    // There is no layer to load; the working copy stays and is shown.
    QCOMPARE(editor.preview()->workingLayer.startAngle, 99.0);
    QCOMPARE(shownStartAngle(editor), 99.0);
}

void tst_Layers::selectedWithoutPreviousLoads()
{
    Editor editor;
    makeThreeLayers(editor);
    editor.layerList()->setCurrentRow(-1);
    editor.preview()->workingLayer.startAngle = 77.0;
    editor.layerList()->setCurrentRow(1);
    QCOMPARE(startAngles(editor), (QList{10.0, 20.0, 30.0}));
    QCOMPARE(shownStartAngle(editor), 20.0);
}

void tst_Layers::removingTheMiddleSelectsTheNext()
{
    Editor editor;
    makeThreeLayers(editor);
    editor.layerList()->setCurrentRow(1);
    editor.control<QPushButton>("RemoveLayerButton"_L1)->click();
    QCOMPARE(names(editor), (QStringList{u"Layer 1"_s, u"third"_s}));
    QCOMPARE(startAngles(editor), (QList{10.0, 30.0}));
    QCOMPARE(editor.layerList()->currentRow(), 1);
    QCOMPARE(editor.preview()->workingLayer.startAngle, 30.0);
    QCOMPARE(shownStartAngle(editor), 30.0);
}

void tst_Layers::removingTheLastSelectsTheNewLast()
{
    Editor editor;
    makeThreeLayers(editor);
    editor.layerList()->setCurrentRow(2);
    editor.control<QPushButton>("RemoveLayerButton"_L1)->click();
    QCOMPARE(names(editor), (QStringList{u"Layer 1"_s, u"second"_s}));
    QCOMPARE(startAngles(editor), (QList{10.0, 20.0}));
    QCOMPARE(editor.layerList()->currentRow(), 1);
    QCOMPARE(shownStartAngle(editor), 20.0);
}

void tst_Layers::removingTheFirstSelectsTheNext()
{
    Editor editor;
    makeThreeLayers(editor);
    editor.layerList()->setCurrentRow(0);
    editor.control<QPushButton>("RemoveLayerButton"_L1)->click();
    QCOMPARE(names(editor), (QStringList{u"second"_s, u"third"_s}));
    QCOMPARE(startAngles(editor), (QList{20.0, 30.0}));
    QCOMPARE(editor.layerList()->currentRow(), 0);
    QCOMPARE(shownStartAngle(editor), 20.0);
}

void tst_Layers::removedLayerIsNotWrittenOverItsNeighbour()
{
    Editor editor;
    makeThreeLayers(editor);
    editor.layerList()->setCurrentRow(1);
    editor.preview()->workingLayer.startAngle = 99.0;
    editor.control<QPushButton>("RemoveLayerButton"_L1)->click();
    QCOMPARE(startAngles(editor), (QList{10.0, 30.0}));
}

void tst_Layers::removingIsNotSelecting()
{
    Editor editor;
    makeThreeLayers(editor);
    const QSignalSpy selected(editor.layerList(), &QListWidget::currentItemChanged);
    editor.control<QPushButton>("RemoveLayerButton"_L1)->click();
    QCOMPARE(selected.count(), 0);
}

void tst_Layers::removingRepaints()
{
    Editor editor;
    makeThreeLayers(editor);
    editor.show();
    const PaintCounter paints(editor.preview());
    editor.control<QPushButton>("RemoveLayerButton"_L1)->click();
    QCoreApplication::processEvents();
    QVERIFY(paints.count() > 0);
}

void tst_Layers::removingSwitchesSignalsOn()
{
    Editor editor;
    makeThreeLayers(editor);
    editor.layerList()->blockSignals(true);
    editor.control<QPushButton>("RemoveLayerButton"_L1)->click();
    QVERIFY(!editor.layerList()->signalsBlocked());
}

void tst_Layers::onlyLayerStays()
{
    const Editor editor;
    editor.control<QDoubleSpinBox>("gaugeStartAngleSpinBox"_L1)->setValue(33.0);
    const gaugeData before = editor.preview()->workingLayer;
    DialogAnswers answers;
    bool told = false;
    answers.expect<QMessageBox>([&editor, &told](QMessageBox &box) {
        told = true;
        box.button(QMessageBox::Ok)->click(); // first, since a failing comparison goes no further
        QCOMPARE(box.windowTitle(), u"Remove Layer"_s);
        QCOMPARE(box.text(), u"A gauge must have at least one layer."_s);
        QCOMPARE(box.icon(), QMessageBox::Information);
        QCOMPARE(box.standardButtons(), QMessageBox::Ok);
        QCOMPARE(box.parentWidget(), &editor.window);
    });
    editor.control<QPushButton>("RemoveLayerButton"_L1)->click();
    QVERIFY(told);
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(names(editor), QStringList(u"Layer 1"_s));
    QCOMPARE(editor.preview()->layers.size(), 1);
    QCOMPARE(differingFields(editor.preview()->layers.first(), before), QStringList());
    QCOMPARE(shownStartAngle(editor), 33.0);
}

void tst_Layers::onlyLayerStaysAlsoWhenNotSelected()
{
    const Editor editor;
    editor.layerList()->setCurrentRow(-1);
    DialogAnswers answers;
    answers.expectAndCancel<QMessageBox>();
    editor.control<QPushButton>("RemoveLayerButton"_L1)->click();
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(editor.layerList()->count(), 1);
}

void tst_Layers::removingWithoutSelectionDoesNothing()
{
    Editor editor;
    makeThreeLayers(editor);
    editor.layerList()->setCurrentRow(-1);
    const DialogAnswers answers; // none is expected
    editor.control<QPushButton>("RemoveLayerButton"_L1)->click();
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(editor.layerList()->count(), 3);
    QCOMPARE(startAngles(editor), (QList{10.0, 20.0, 30.0}));
}

ADD_TEST_CLASS(tst_Layers)
#include "tst_layers.moc"
