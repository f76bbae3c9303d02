#include "model/gaugefile.h"
#include "support/dialogs.h"
#include "support/editor.h"
#include "support/files.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QLineEdit>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

/// Renaming layers in the list, and the named layers that are saved.
class tst_LayerNames : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void doubleClickEditsTheName();
    void typingAloneDoesNotEdit();
    void typedName_data();
    void typedName();
    void escapeKeepsTheName();
    void trimmingEmitsNoSecondChange();
    void renamingKeepsTheLayers();
    void renamingNullDoesNothing();
    void renamingRestoresBlockedSignals();

    void workingCopyAndAllLayersAreSaved();
    void savedLayersAreThoseOfTheListAndTheStack_data();
    void savedLayersAreThoseOfTheListAndTheStack();

private:
    /// The line edit of a name that is being edited, or null.
    static QLineEdit *nameEditor(const Editor &editor);
    /// Types a name over that of the current row, and presses a key.
    static void rename(const Editor &editor, const QString &text, Qt::Key end = Qt::Key_Return);
    /// The layers of the file that the "Save" button writes.
    static QList<gaugeLayer> savedLayers(const Editor &editor);
};

QLineEdit *tst_LayerNames::nameEditor(const Editor &editor)
{
    return editor.layerList()->viewport()->findChild<QLineEdit *>();
}

void tst_LayerNames::rename(const Editor &editor, const QString &text, Qt::Key end)
{
    QTest::keyClick(editor.layerList(), Qt::Key_F2);
    QLineEdit *line = nameEditor(editor);
    QVERIFY(line != nullptr);
    line->selectAll();
    QTest::keyClick(line, Qt::Key_Delete);
    QTest::keyClicks(line, text);
    QTest::keyClick(line, end);
    // The list deletes the line edit later.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QTRY_VERIFY(nameEditor(editor) == nullptr);
}

QList<gaugeLayer> tst_LayerNames::savedLayers(const Editor &editor)
{
    const QTemporaryDir folder;
    DialogAnswers answers;
    answers.expectFile(folder.filePath(u"saved.gauge"_s));
    editor.control<QPushButton>("saveButton"_L1)->click();
    QList<gaugeLayer> layers;
    QString error;
    if (!answers.problems().isEmpty() ||
        !gaugeFile::read(readFile(folder.filePath(u"saved.gauge"_s)), &layers, &error))
        qFatal("The gauge was not saved: %s%s", qPrintable(answers.problems().join(u"; "_s)),
               qPrintable(error));
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

void tst_LayerNames::typingAloneDoesNotEdit()
{
    Editor editor;
    editor.show();
    QTest::keyClicks(editor.layerList(), u"Needle"_s);
    QVERIFY(nameEditor(editor) == nullptr);
    QCOMPARE(editor.layerNames(), QStringList(u"Layer 1"_s));
}

void tst_LayerNames::typedName_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("name");
    QTest::newRow("plain") << u"Pointer"_s << u"Pointer"_s;
    QTest::newRow("blanks around") << u"   Pointer  "_s << u"Pointer"_s;
    QTest::newRow("blanks within") << u"big  pointer"_s << u"big  pointer"_s;
    QTest::newRow("blanks only: the previous name") << u"   "_s << u"Needle"_s;
    QTest::newRow("empty: the previous name") << QString() << u"Needle"_s;
    QTest::newRow("name of another layer") << u"second"_s << u"second"_s;
}

void tst_LayerNames::typedName()
{
    QFETCH(QString, typed);
    QFETCH(QString, name);
    Editor editor;
    editor.addLayer(u"second"_s);
    editor.show();
    rename(editor, u"Needle"_s);
    rename(editor, typed);
    QCOMPARE(editor.layerNames(), (QStringList{name, u"second"_s}));
    QCOMPARE(editor.layerList()->item(0)->data(Qt::UserRole).toString(), name);
}

void tst_LayerNames::escapeKeepsTheName()
{
    Editor editor;
    editor.show();
    rename(editor, u"Needle"_s, Qt::Key_Escape);
    QCOMPARE(editor.layerNames(), QStringList(u"Layer 1"_s));
}

void tst_LayerNames::trimmingEmitsNoSecondChange()
{
    Editor editor;
    editor.show();
    const QSignalSpy changed(editor.layerList(), &QListWidget::itemChanged);
    rename(editor, u"  Needle "_s);
    QCOMPARE(changed.count(), 1);
}

void tst_LayerNames::renamingKeepsTheLayers()
{
    Editor editor;
    editor.show();
    editor.preview()->layers[0] = sampleLayer(1);
    editor.preview()->workingLayer = sampleLayer(2);
    rename(editor, u"Needle"_s);
    QCOMPARE(editor.preview()->layers.size(), 1);
    QCOMPARE(differingFields(editor.preview()->layers.first(), sampleLayer(1)), QStringList());
    QCOMPARE(differingFields(editor.preview()->workingLayer, sampleLayer(2)), QStringList());
}

void tst_LayerNames::renamingNullDoesNothing()
{
    Editor editor;
    QListWidgetItem *null = nullptr;
    QVERIFY(QMetaObject::invokeMethod(&editor.window, "layerRenamed", Q_ARG(QListWidgetItem *, null)));
    QCOMPARE(editor.layerNames(), QStringList(u"Layer 1"_s));
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

void tst_LayerNames::workingCopyAndAllLayersAreSaved()
{
    const Editor editor;
    editor.addLayer(u"second"_s);
    editor.addLayer(u"second"_s);
    editor.preview()->layers[1] = sampleLayer(1);
    editor.preview()->layers[2] = sampleLayer(2);
    editor.preview()->workingLayer = sampleLayer();
    // The shown name is saved, not the last accepted one.
    editor.layerList()->blockSignals(true);
    editor.layerList()->item(0)->setText(u" shown "_s);
    const QList<gaugeLayer> layers = savedLayers(editor);
    const QStringList names{u" shown "_s, u"second"_s, u"second"_s};
    QCOMPARE(layers.size(), names.size());
    for (int row = 0; row < names.size(); ++row) {
        QCOMPARE(layers.at(row).name, names.at(row));
        QCOMPARE(differingFields(layers.at(row).data, sampleLayer(row)), QStringList());
    }
    QCOMPARE(differingFields(editor.preview()->layers.first(), sampleLayer()), QStringList());
}

void tst_LayerNames::savedLayersAreThoseOfTheListAndTheStack_data()
{
    QTest::addColumn<int>("stackSize");
    QTest::addColumn<int>("savedSize");
    QTest::newRow("stack longer than the list") << 5 << 3;
    QTest::newRow("stack shorter than the list") << 2 << 2;
}

void tst_LayerNames::savedLayersAreThoseOfTheListAndTheStack()
{
    QFETCH(int, stackSize);
    QFETCH(int, savedSize);
    const Editor editor;
    editor.addLayer(u"second"_s);
    editor.addLayer(u"third"_s);
    editor.preview()->layers.resize(stackSize);
    const QList<gaugeLayer> layers = savedLayers(editor);
    QCOMPARE(layers.size(), savedSize);
    QCOMPARE(layers.at(1).name, u"second"_s);
}

ADD_TEST_CLASS(tst_LayerNames)
#include "tst_layernames.moc"
