#include "model/gaugefile.h"
#include "support/dialogs.h"
#include "support/editor.h"
#include "support/records.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QFile>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

/// Renaming layers in place, and the named layers as they are saved.
class tst_LayerNames : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void doubleClickEditsTheName();
    void editKeyEditsTheName();
    void typingAloneDoesNotEdit();
    void acceptedName_data();
    void acceptedName();
    void secondUndoFallsBackToTheLastAcceptedName();
    void escapeKeepsTheName();
    void trimmingIsNotAnotherChange();
    void renamingLeavesTheStackAlone();
    void renamingNothingDoesNothing();
    void renamingRestoresBlockedSignals();

    void sameNamesAreSavedUnchanged();
    void layersAreSavedInTheirOrder();
    void latestEditIsSaved();
    void savingStopsAtTheShorter_data();
    void savingStopsAtTheShorter();
    void savedNameIsTheShownOne();

private:
    /// The editor of a name in the list, once one is open.
    static QLineEdit *nameEditor(const Editor &editor);
    /// Opens the editor of a row, types @a text over the name and presses Return.
    static void rename(Editor &editor, int row, const QString &text);
    /// Saves the gauge through its button and dialog and reads the file again.
    static QList<gaugeLayer> saved(const Editor &editor);
};

QLineEdit *tst_LayerNames::nameEditor(const Editor &editor)
{
    return editor.layerList()->viewport()->findChild<QLineEdit *>();
}

void tst_LayerNames::rename(Editor &editor, int row, const QString &text)
{
    editor.layerList()->setCurrentRow(row);
    QTest::keyClick(editor.layerList(), Qt::Key_F2);
    QLineEdit *line = nameEditor(editor);
    QVERIFY(line != nullptr);
    line->selectAll();
    QTest::keyClick(line, Qt::Key_Delete);
    QTest::keyClicks(line, text);
    QTest::keyClick(line, Qt::Key_Return);
    // The editor goes by itself, later.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QTRY_VERIFY(nameEditor(editor) == nullptr);
}

QList<gaugeLayer> tst_LayerNames::saved(const Editor &editor)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"saved.gauge"_s);
    DialogAnswers answers;
    answers.expectFile(path);
    editor.control<QPushButton>("saveButton"_L1)->click();
    if (!answers.problems().isEmpty())
        qFatal("The gauge was not saved: %s", qPrintable(answers.problems().join(u"; "_s)));
    QFile file(path);
    QList<gaugeLayer> layers;
    QString error;
    if (!file.open(QIODevice::ReadOnly) || !gaugeFile::read(file.readAll(), &layers, &error))
        qFatal("The saved gauge cannot be read: %s", qPrintable(error));
    return layers;
}

void tst_LayerNames::doubleClickEditsTheName()
{
    Editor editor;
    editor.show();
    QListWidget &list = *editor.layerList();
    const QPoint middle = list.visualItemRect(list.item(0)).center();
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, middle);
    QVERIFY(nameEditor(editor) == nullptr);
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, middle);
    QLineEdit *line = nameEditor(editor);
    QVERIFY(line != nullptr);
    QCOMPARE(line->text(), u"Layer 1"_s);
    QTest::keyClicks(line, u"Needle"_s);
    QTest::keyClick(line, Qt::Key_Return);
    QTRY_COMPARE(list.item(0)->text(), u"Needle"_s);
}

void tst_LayerNames::editKeyEditsTheName()
{
    Editor editor;
    editor.show();
    rename(editor, 0, u"Needle"_s);
    QCOMPARE(editor.layerList()->item(0)->text(), u"Needle"_s);
    QCOMPARE(editor.layerList()->item(0)->data(Qt::UserRole).toString(), u"Needle"_s);
}

void tst_LayerNames::typingAloneDoesNotEdit()
{
    Editor editor;
    editor.show();
    QTest::keyClicks(editor.layerList(), u"Needle"_s);
    QVERIFY(nameEditor(editor) == nullptr);
    QCOMPARE(editor.layerList()->item(0)->text(), u"Layer 1"_s);
}

void tst_LayerNames::acceptedName_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("name");
    QTest::newRow("plain") << u"Needle"_s << u"Needle"_s;
    QTest::newRow("blanks around") << u"   Needle  "_s << u"Needle"_s;
    QTest::newRow("blanks within") << u"big  needle"_s << u"big  needle"_s;
    QTest::newRow("blanks only: undone") << u"   "_s << u"Layer 1"_s;
    QTest::newRow("nothing: undone") << QString() << u"Layer 1"_s;
    QTest::newRow("a taken name") << u"second"_s << u"second"_s;
}

void tst_LayerNames::acceptedName()
{
    QFETCH(QString, typed);
    QFETCH(QString, name);
    Editor editor;
    editor.addLayer(u"second"_s);
    editor.show();
    rename(editor, 0, typed);
    QCOMPARE(editor.layerList()->item(0)->data(Qt::DisplayRole).toString(), name);
    QCOMPARE(editor.layerList()->item(0)->data(Qt::UserRole).toString(), name);
    QCOMPARE(editor.layerList()->item(1)->text(), u"second"_s);
}

void tst_LayerNames::secondUndoFallsBackToTheLastAcceptedName()
{
    Editor editor;
    editor.show();
    rename(editor, 0, u"Needle"_s);
    rename(editor, 0, u"  "_s);
    rename(editor, 0, QString());
    QCOMPARE(editor.layerList()->item(0)->text(), u"Needle"_s);
}

void tst_LayerNames::escapeKeepsTheName()
{
    Editor editor;
    editor.show();
    QTest::keyClick(editor.layerList(), Qt::Key_F2);
    QLineEdit *line = nameEditor(editor);
    QVERIFY(line != nullptr);
    QTest::keyClicks(line, u"Needle"_s);
    QTest::keyClick(line, Qt::Key_Escape);
    QCOMPARE(editor.layerList()->item(0)->text(), u"Layer 1"_s);
}

void tst_LayerNames::trimmingIsNotAnotherChange()
{
    Editor editor;
    editor.show();
    const QSignalSpy changed(editor.layerList(), &QListWidget::itemChanged);
    rename(editor, 0, u"  Needle "_s);
    QCOMPARE(changed.count(), 1);
}

void tst_LayerNames::renamingLeavesTheStackAlone()
{
    Editor editor;
    editor.show();
    editor.preview()->layers[0] = sampleLayer(1);
    editor.preview()->workingLayer = sampleLayer(2);
    rename(editor, 0, u"Needle"_s);
    QCOMPARE(editor.preview()->layers.size(), 1);
    QCOMPARE(differingFields(editor.preview()->layers.first(), sampleLayer(1)), QStringList());
    QCOMPARE(differingFields(editor.preview()->workingLayer, sampleLayer(2)), QStringList());
}

void tst_LayerNames::renamingNothingDoesNothing()
{
    Editor editor;
    QListWidgetItem *nothing = nullptr;
    QVERIFY(QMetaObject::invokeMethod(&editor.window, "layerRenamed", Q_ARG(QListWidgetItem *, nothing)));
    QCOMPARE(editor.layerList()->item(0)->text(), u"Layer 1"_s);
}

void tst_LayerNames::renamingRestoresBlockedSignals()
{
    Editor editor;
    QListWidgetItem *item = editor.layerList()->item(0);
    for (const bool blocked : {true, false}) {
        editor.layerList()->blockSignals(blocked);
        QVERIFY(QMetaObject::invokeMethod(&editor.window, "layerRenamed", Q_ARG(QListWidgetItem *, item)));
        QCOMPARE(editor.layerList()->signalsBlocked(), blocked);
    }
}

void tst_LayerNames::sameNamesAreSavedUnchanged()
{
    Editor editor;
    editor.addLayer(u"second"_s);
    editor.show();
    rename(editor, 1, u"Layer 1"_s);
    const QList<gaugeLayer> layers = saved(editor);
    QCOMPARE(layers.size(), 2);
    QCOMPARE(layers.at(0).name, u"Layer 1"_s);
    QCOMPARE(layers.at(1).name, u"Layer 1"_s);
}

void tst_LayerNames::layersAreSavedInTheirOrder()
{
    Editor editor;
    editor.addLayer(u"second"_s);
    editor.addLayer(u"third"_s);
    editor.layerList()->setCurrentRow(1);
    editor.preview()->layers[2].startAngle = 30.0;
    editor.preview()->layers[0].startAngle = 10.0;
    editor.control<QDoubleSpinBox>("gaugeStartAngleSpinBox"_L1)->setValue(20.0);
    const QList<gaugeLayer> layers = saved(editor);
    QCOMPARE(layers.size(), 3);
    QCOMPARE(layers.at(0).name, u"Layer 1"_s);
    QCOMPARE(layers.at(0).data.startAngle, 10.0);
    QCOMPARE(layers.at(1).name, u"second"_s);
    QCOMPARE(layers.at(1).data.startAngle, 20.0);
    QCOMPARE(layers.at(2).name, u"third"_s);
    QCOMPARE(layers.at(2).data.startAngle, 30.0);
}

void tst_LayerNames::latestEditIsSaved()
{
    const Editor editor;
    // Only the working copy has it yet.
    editor.preview()->workingLayer.startAngle = 55.0;
    QCOMPARE(saved(editor).first().data.startAngle, 55.0);
    QCOMPARE(editor.preview()->layers.first().startAngle, 55.0);
}

void tst_LayerNames::savingStopsAtTheShorter_data()
{
    QTest::addColumn<int>("stackSize");
    QTest::addColumn<int>("saved");
    QTest::newRow("stack longer than the list") << 5 << 3;
    QTest::newRow("stack shorter than the list") << 2 << 2;
    QTest::newRow("equal") << 3 << 3;
}

void tst_LayerNames::savingStopsAtTheShorter()
{
    QFETCH(int, stackSize);
    QFETCH(int, saved);
    Editor editor;
    editor.addLayer(u"second"_s);
    editor.addLayer(u"third"_s);
    editor.preview()->layers.resize(stackSize);
    const QList<gaugeLayer> layers = tst_LayerNames::saved(editor);
    QCOMPARE(layers.size(), saved);
    QCOMPARE(layers.at(1).name, u"second"_s);
}

void tst_LayerNames::savedNameIsTheShownOne()
{
    Editor editor;
    editor.layerList()->blockSignals(true);
    editor.layerList()->item(0)->setData(Qt::UserRole, u"accepted before"_s);
    editor.layerList()->item(0)->setText(u" shown "_s);
    QCOMPARE(saved(editor).first().name, u" shown "_s);
}

ADD_TEST_CLASS(tst_LayerNames)
#include "tst_layernames.moc"
