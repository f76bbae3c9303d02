#include "support/dialogs.h"
#include "support/editor.h"
#include "support/paintcounter.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

QList<double> startAngles(const Editor &editor)
{
    QList<double> angles;
    for (const gaugeData &layer : std::as_const(editor.preview()->layers))
        angles.append(layer.startAngle);
    return angles;
}

double shownStartAngle(const Editor &editor)
{
    return editor.control<QDoubleSpinBox>("gaugeStartAngleSpinBox"_L1)->value();
}

/// Layers that start at 10, 20 and 30 degrees, the last of them active.
class EditorOfThreeLayers : public Editor
{
public:
    EditorOfThreeLayers()
    {
        addLayer(u"second"_s);
        addLayer(u"third"_s);
        for (int row = 0; row < 3; ++row) {
            layerList()->setCurrentRow(row);
            edit(gaugeField("startAngle"), 10.0 * (row + 1));
        }
    }
};

} // namespace

/// Adding, selecting and removing layers. The list and the stack of layers always match.
class tst_Layers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void addingAsksForTheName();
    void addingAppendsDefaultLayer();
    void addingRepaints();
    void typedNameIsTrimmed_data();
    void typedNameIsTrimmed();
    void nothingIsAdded_data();
    void nothingIsAdded();

    void selectingStoresTheWorkingCopy_data();
    void selectingStoresTheWorkingCopy();
    void selectingAfterNoSelectionStoresNothing();

    void removingSelectsAnotherLayer_data();
    void removingSelectsAnotherLayer();
    void selectingAndRemovingRepaint();
    void removingUnblocksTheListsSignals();
    void removingTheOnlyLayerIsRefused_data();
    void removingTheOnlyLayerIsRefused();
    void removingWithoutSelectionDoesNothing();
};

void tst_Layers::addingAsksForTheName()
{
    const Editor editor;
    DialogAnswers answers;
    bool asked = false;
    answers.expect<QInputDialog>([&editor, &asked](QInputDialog &dialog) {
        asked = true;
        dialog.reject(); // first, since a failed comparison leaves the function
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

void tst_Layers::addingAppendsDefaultLayer()
{
    const Editor editor;
    editor.preview()->layers[0] = sampleLayer(1);
    editor.preview()->workingLayer = sampleLayer(2);
    const gaugeData shown = editor.shownLayer();
    editor.addLayer(u"Layer 1"_s); // a name may be used twice
    QCOMPARE(editor.layerNames(), (QStringList{u"Layer 1"_s, u"Layer 1"_s}));
    QCOMPARE(editor.layerList()->item(1)->flags(), editor.layerList()->item(0)->flags());
    QVERIFY(editor.layerList()->item(1)->flags().testFlag(Qt::ItemIsEditable));
    QCOMPARE(editor.preview()->layers.size(), 2);
    QCOMPARE(differingFields(editor.preview()->layers.at(1), gaugeData()), QStringList());
    // The active layer and the controls stay as they were.
    QCOMPARE(editor.layerList()->currentRow(), 0);
    QCOMPARE(differingFields(editor.preview()->layers.at(0), sampleLayer(1)), QStringList());
    QCOMPARE(differingFields(editor.preview()->workingLayer, sampleLayer(2)), QStringList());
    QCOMPARE(differingFields(editor.shownLayer(), shown), QStringList());
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
        // Closing the dialog may repaint what was below it. That does not count.
        QCoreApplication::processEvents();
        paints = std::make_unique<PaintCounter>(editor.preview());
    });
    editor.control<QPushButton>("AddLayerButton"_L1)->click();
    QCOMPARE(answers.problems(), QStringList());
    QCoreApplication::processEvents();
    QVERIFY(paints->count() > 0);
}

void tst_Layers::typedNameIsTrimmed_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("name");
    QTest::newRow("blanks around") << u"  Needle "_s << u"Needle"_s;
    QTest::newRow("blanks within") << u" big  needle"_s << u"big  needle"_s;
    QTest::newRow("blanks only") << u"   "_s << u"   "_s;
    QTest::newRow("any characters") << u"%1 <b>\"&\\"_s << u"%1 <b>\"&\\"_s;
}

void tst_Layers::typedNameIsTrimmed()
{
    QFETCH(QString, typed);
    QFETCH(QString, name);
    const Editor editor;
    editor.addLayer(typed);
    QCOMPARE(editor.layerList()->count(), 2);
    QCOMPARE(editor.layerList()->item(1)->data(Qt::DisplayRole).toString(), name);
    QCOMPARE(editor.layerList()->item(1)->data(Qt::UserRole).toString(), name);
}

void tst_Layers::nothingIsAdded_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("empty") << QString() << Qt::Key_Return;
    QTest::newRow("cancelled") << u"Needle"_s << Qt::Key_Escape;
}

void tst_Layers::nothingIsAdded()
{
    QFETCH(QString, typed);
    QFETCH(Qt::Key, key);
    const Editor editor;
    DialogAnswers answers;
    answers.expect<QInputDialog>([&](QInputDialog &dialog) {
        QTest::keyClicks(dialog.findChild<QLineEdit *>(), typed);
        QTest::keyClick(&dialog, key);
    });
    editor.control<QPushButton>("AddLayerButton"_L1)->click();
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(editor.layerNames(), QStringList(u"Layer 1"_s));
    QCOMPARE(editor.preview()->layers.size(), 1);
}

void tst_Layers::selectingStoresTheWorkingCopy_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<double>("shown");
    QTest::newRow("another layer") << 0 << 10.0;
    QTest::newRow("none: the working copy stays") << -1 << 99.0;
}

void tst_Layers::selectingStoresTheWorkingCopy()
{
    QFETCH(int, row);
    QFETCH(double, shown);
    const EditorOfThreeLayers editor;
    editor.preview()->workingLayer.startAngle = 99.0;
    editor.layerList()->setCurrentRow(row);
    QCOMPARE(startAngles(editor), (QList{10.0, 20.0, 99.0}));
    QCOMPARE(editor.preview()->workingLayer.startAngle, shown);
    QCOMPARE(shownStartAngle(editor), shown);
}

void tst_Layers::selectingAfterNoSelectionStoresNothing()
{
    const EditorOfThreeLayers editor;
    editor.layerList()->setCurrentRow(-1);
    editor.preview()->workingLayer.startAngle = 77.0;
    editor.layerList()->setCurrentRow(1);
    QCOMPARE(startAngles(editor), (QList{10.0, 20.0, 30.0}));
    QCOMPARE(shownStartAngle(editor), 20.0);
}

void tst_Layers::removingSelectsAnotherLayer_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("newRow");
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QList<double>>("angles");
    QTest::newRow("first") << 0 << 0 << QStringList{u"second"_s, u"third"_s} << QList{20.0, 30.0};
    QTest::newRow("middle") << 1 << 1 << QStringList{u"Layer 1"_s, u"third"_s} << QList{10.0, 30.0};
    QTest::newRow("last") << 2 << 1 << QStringList{u"Layer 1"_s, u"second"_s} << QList{10.0, 20.0};
}

void tst_Layers::removingSelectsAnotherLayer()
{
    QFETCH(int, row);
    QFETCH(int, newRow);
    QFETCH(QStringList, names);
    QFETCH(QList<double>, angles);
    const EditorOfThreeLayers editor;
    editor.layerList()->setCurrentRow(row);
    // The working copy of the removed layer must not reach another one.
    editor.preview()->workingLayer.startAngle = 99.0;
    const QSignalSpy selected(editor.layerList(), &QListWidget::currentItemChanged);
    editor.control<QPushButton>("RemoveLayerButton"_L1)->click();
    QCOMPARE(selected.count(), 0);
    QCOMPARE(editor.layerNames(), names);
    QCOMPARE(startAngles(editor), angles);
    QCOMPARE(editor.layerList()->currentRow(), newRow);
    QCOMPARE(editor.preview()->workingLayer.startAngle, angles.at(newRow));
    QCOMPARE(shownStartAngle(editor), angles.at(newRow));
}

void tst_Layers::selectingAndRemovingRepaint()
{
    EditorOfThreeLayers editor;
    editor.show();
    const PaintCounter paints(editor.preview());
    editor.layerList()->setCurrentRow(0);
    QCoreApplication::processEvents();
    const int paintsOfSelecting = paints.count();
    QVERIFY(paintsOfSelecting > 0);
    editor.control<QPushButton>("RemoveLayerButton"_L1)->click();
    QCoreApplication::processEvents();
    QVERIFY(paints.count() > paintsOfSelecting);
}

void tst_Layers::removingUnblocksTheListsSignals()
{
    const EditorOfThreeLayers editor;
    editor.layerList()->blockSignals(true);
    editor.control<QPushButton>("RemoveLayerButton"_L1)->click();
    QVERIFY(!editor.layerList()->signalsBlocked());
}

void tst_Layers::removingTheOnlyLayerIsRefused_data()
{
    QTest::addColumn<int>("row");
    QTest::newRow("selected") << 0;
    QTest::newRow("not selected") << -1;
}

void tst_Layers::removingTheOnlyLayerIsRefused()
{
    QFETCH(int, row);
    const Editor editor;
    editor.edit(gaugeField("startAngle"), 33.0);
    editor.layerList()->setCurrentRow(row);
    DialogAnswers answers;
    answers.expectMessage(&editor.window, QMessageBox::Information, u"Remove Layer"_s,
                          u"A gauge must have at least one layer."_s);
    editor.control<QPushButton>("RemoveLayerButton"_L1)->click();
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(editor.layerNames(), QStringList(u"Layer 1"_s));
    QCOMPARE(startAngles(editor), QList{33.0});
    QCOMPARE(shownStartAngle(editor), 33.0);
}

void tst_Layers::removingWithoutSelectionDoesNothing()
{
    const EditorOfThreeLayers editor;
    editor.layerList()->setCurrentRow(-1);
    const DialogAnswers answers; // expects no dialog
    editor.control<QPushButton>("RemoveLayerButton"_L1)->click();
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(editor.layerList()->count(), 3);
    QCOMPARE(startAngles(editor), (QList{10.0, 20.0, 30.0}));
}

ADD_TEST_CLASS(tst_Layers)
#include "tst_layers.moc"
