#include "presetsfolder.h"
#include "support/dialogs.h"
#include "support/editor.h"
#include "support/files.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;

namespace {

void typeFileName(const QFileDialog &dialog, const QString &path)
{
    dialog.findChild<QLineEdit *>(u"fileNameEdit"_s)->setText(path);
}

} // namespace

/// What the file dialogs of gauges, keyframes and the reference picture have in common.
class tst_FileDialogs : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanupTestCase() { m_presets.reset(); }

    void dialogAsksForTheFile_data();
    void dialogAsksForTheFile();
    void cancelDoesNothing_data() { addButtons(); }
    void cancelDoesNothing();
    void suffixIsAddedToANameWithoutOne_data() { addSaveButtons(); }
    void suffixIsAddedToANameWithoutOne();
    void existingFileIsReplaced_data() { addSaveButtons(); }
    void existingFileIsReplaced();
    void fileThatCannotBeWrittenIsReported_data() { addSaveButtons(); }
    void fileThatCannotBeWrittenIsReported();
    void fullDiskIsNotReported_data() { addSaveButtons(); }
    void fullDiskIsNotReported();
    void fileThatCannotBeLoadedIsReported();

private:
    static void addButtons();
    static void addSaveButtons();
    [[nodiscard]] QStringList fileNames() const { return QDir(m_folder->path()).entryList(QDir::Files); }

    std::optional<PresetsFolder> m_presets;
    std::optional<QTemporaryDir> m_folder;
};

void tst_FileDialogs::init()
{
    failOnUnexpectedWarnings();
    m_presets.reset();
    m_presets.emplace();
    m_folder.emplace();
}

void tst_FileDialogs::addSaveButtons()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("suffix");
    QTest::newRow("gauge") << u"saveButton"_s << u"gauge"_s;
    QTest::newRow("layer") << u"SaveLayerButton"_s << u"gauge"_s;
    QTest::newRow("keyframes") << u"saveKeyFrameButton"_s << u"csv"_s;
}

void tst_FileDialogs::addButtons()
{
    addSaveButtons();
    QTest::newRow("load") << u"loadButton"_s << QString();
    QTest::newRow("reference") << u"loadReferenceButton"_s << QString();
}

void tst_FileDialogs::dialogAsksForTheFile_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("suffix");
    QTest::addColumn<QString>("caption");
    QTest::addColumn<QString>("filter");
    QTest::addColumn<QString>("folder");
    const QString programFolder = QCoreApplication::applicationDirPath();
    const QString presetsFolder = PresetsFolder::path();
    QTest::newRow("gauge") << u"saveButton"_s << u"gauge"_s << u"Save Gauge"_s << u"Gauge file (*.gauge)"_s
                           << programFolder;
    QTest::newRow("layer") << u"SaveLayerButton"_s << u"gauge"_s << u"Save Layer As Preset"_s
                           << u"Gauge file (*.gauge)"_s << presetsFolder;
    QTest::newRow("keyframes") << u"saveKeyFrameButton"_s << u"csv"_s << u"Save Keyframes CSV"_s
                               << u"CSV file (*.csv)"_s << programFolder;
    QTest::newRow("load") << u"loadButton"_s << QString() << u"Load Gauge"_s << u"Gauge files (*.gauge)"_s
                          << presetsFolder;
    QTest::newRow("reference") << u"loadReferenceButton"_s << QString() << u"Load Reference Image (512x512)"_s
                               << u"png Files (*.png)"_s << programFolder;
}

void tst_FileDialogs::dialogAsksForTheFile()
{
    QFETCH(const QString, button);
    QFETCH(const QString, suffix);
    QFETCH(const QString, caption);
    QFETCH(const QString, filter);
    QFETCH(const QString, folder);
    const Editor editor;
    DialogAnswers answers;
    answers.expect<QFileDialog>([&](QFileDialog &dialog) {
        QCOMPARE(dialog.parentWidget(), &editor.window);
        QVERIFY(dialog.isModal());
        QCOMPARE(dialog.windowTitle(), caption);
        QCOMPARE(dialog.nameFilters(), QStringList(filter));
        QCOMPARE(dialog.defaultSuffix(), suffix);
        QCOMPARE(dialog.acceptMode(), suffix.isEmpty() ? QFileDialog::AcceptOpen : QFileDialog::AcceptSave);
        QCOMPARE(dialog.fileMode(), suffix.isEmpty() ? QFileDialog::ExistingFile : QFileDialog::AnyFile);
        QCOMPARE(dialog.directory().absolutePath(), folder);
        QCOMPARE(dialog.findChild<QLineEdit *>(u"fileNameEdit"_s)->text(), QString());
        QVERIFY(!dialog.testOption(QFileDialog::DontConfirmOverwrite));
        dialog.reject();
    });
    editor.press(button);
    QCOMPARE(answers.problems(), QStringList());
}

void tst_FileDialogs::cancelDoesNothing()
{
    QFETCH(const QString, button);
    const Editor editor;
    const QStringList before = editor.state();
    writeFile(PresetsFolder::filePath(u"New.gauge"_s), {}); // not listed, as nothing is saved
    DialogAnswers answers;
    answers.expect<QFileDialog>([this](QFileDialog &dialog) {
        typeFileName(dialog, m_folder->filePath(u"Dial"_s));
        dialog.reject();
    });
    editor.press(button);
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(fileNames(), QStringList());
    QCOMPARE(editor.state(), before);
}

void tst_FileDialogs::suffixIsAddedToANameWithoutOne()
{
    QFETCH(const QString, button);
    QFETCH(const QString, suffix);
    const Editor editor;
    DialogAnswers answers;
    for (const QString &name : {u"Dial"_s, u"Other.txt"_s}) {
        answers.expectFile(m_folder->filePath(name));
        editor.press(button);
    }
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(fileNames(), (QStringList{u"Dial."_s + suffix, u"Other.txt"_s}));
}

void tst_FileDialogs::existingFileIsReplaced()
{
    QFETCH(const QString, button);
    const QString newFile = m_folder->filePath(u"New.txt"_s);
    const QString existingFile = m_folder->filePath(u"Existing.txt"_s);
    writeFile(existingFile, QByteArray(1'000'000, 'x'));
    const Editor editor;
    DialogAnswers answers;
    for (const QString &path : {newFile, existingFile}) {
        answers.expectFile(path);
        editor.press(button);
    }
    QCOMPARE(answers.problems(), QStringList());
    QVERIFY(!readFile(newFile).isEmpty());
    QCOMPARE(readFile(existingFile), readFile(newFile));
}

void tst_FileDialogs::fileThatCannotBeWrittenIsReported()
{
    QFETCH(const QString, button);
    const QString file = m_folder->filePath(u"file"_s);
    writeFile(file, "content");
    const Editor editor;
    const QStringList before = editor.state();
    writeFile(PresetsFolder::filePath(u"New.gauge"_s), {}); // not listed, as nothing is saved
    DialogAnswers answers;
    answers.expectFile(file + u"/Dial.txt"_s);
    answers.expectMessage(&editor.window, QMessageBox::Information, u"Unable to open file"_s,
                          u"Not a directory"_s);
    editor.press(button);
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(readFile(file), QByteArray("content"));
    QCOMPARE(editor.state(), before);
}

void tst_FileDialogs::fullDiskIsNotReported()
{
    QFETCH(const QString, button);
    const QString path = m_folder->filePath(u"Full.txt"_s);
    QVERIFY(QFile::link(u"/dev/full"_s, path));
    const Editor editor;
    const QStringList before = editor.state();
    DialogAnswers answers;
    answers.expectFile(path);
    editor.press(button);
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(editor.state(), before);
}

void tst_FileDialogs::fileThatCannotBeLoadedIsReported()
{
    const QString path = m_folder->filePath(u"Dial.gauge"_s);
    writeFile(path, "{\"layers\": [{}]}");
    const Editor editor;
    const QStringList before = editor.state();
    DialogAnswers answers;
    answers.expect<QFileDialog>([&](QFileDialog &dialog) {
        typeFileName(dialog, path);
        static_cast<QDialog &>(dialog).accept(); // the dialog accepts only existing files
        QVERIFY(QFile::remove(path));
    });
    answers.expectMessage(&editor.window, QMessageBox::Information, u"Unable to open file"_s,
                          u"No such file or directory"_s);
    editor.press(u"loadButton"_s);
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(editor.state(), before);
}

ADD_TEST_CLASS(tst_FileDialogs)
#include "tst_filedialogs.moc"
