#include "model/gaugefile.h"
#include "presetsfolder.h"
#include "support/dialogs.h"
#include "support/editor.h"
#include "support/files.h"
#include "support/records.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QTemporaryDir>
#include <QTest>

#include <filesystem>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

QComboBox &presetList(const Editor &editor)
{
    return *editor.control<QComboBox>("presetComboBox"_L1);
}

QStringList presetNames(const Editor &editor)
{
    QStringList names;
    for (int i = 0; i < presetList(editor).count(); ++i)
        names.append(presetList(editor).itemText(i));
    return names;
}

/// Picks the current entry in the open list, as a user does.
void pickCurrentPreset(const Editor &editor)
{
    presetList(editor).showPopup();
    QTest::keyClick(presetList(editor).view(), Qt::Key_Return);
}

} // namespace

/// The list of presets, and loading one of them.
class tst_Presets : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanupTestCase() { m_folder.reset(); }

    void listIsEmptyWithoutAFolder();
    void gaugeFilesAreListed_data();
    void gaugeFilesAreListed();
    void subfoldersAreNotListed();
    void orderIsThatOfTheFolder();
    void listIsFilledAgainAfterSaving_data();
    void listIsFilledAgainAfterSaving();
    void pickedPresetIsLoaded();
    void currentPresetCanBePickedAgain();
    void missingFileIsReported_data();
    void missingFileIsReported();

private:
    static QString path(const QString &fileName) { return PresetsFolder::filePath(fileName); }

    std::optional<PresetsFolder> m_folder;
};

void tst_Presets::init()
{
    failOnUnexpectedWarnings();
    m_folder.reset();
    m_folder.emplace();
}

void tst_Presets::listIsEmptyWithoutAFolder()
{
    m_folder.reset();
    const Editor editor;
    QCOMPARE(presetNames(editor), QStringList());
    QVERIFY(!QDir(PresetsFolder::path()).exists());
}

void tst_Presets::gaugeFilesAreListed_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<QStringList>("names");
    const auto row = [](const QString &fileName, const QStringList &names) {
        QTest::newRow(qPrintable(fileName)) << fileName << names;
    };
    row(u"Zähler 2.gauge"_s, {u"Zähler 2"_s});
    row(u"my.dial.gauge"_s, {u"my"_s});
    row(u"backupgauge"_s, {u"backupgauge"_s});
    row(u"notes.txt"_s, {});
    row(u"Dial.gauge.bak"_s, {});
    row(u"Dial.Gauge"_s, {});
    row(u".Dial.gauge"_s, {});
}

void tst_Presets::gaugeFilesAreListed()
{
    QFETCH(const QString, fileName);
    QFETCH(const QStringList, names);
    writeFile(path(fileName), {});
    const Editor editor;
    QCOMPARE(presetNames(editor), names);
    QVERIFY(presetList(editor).itemData(0).isNull());
    QVERIFY(presetList(editor).itemIcon(0).isNull());
}

void tst_Presets::subfoldersAreNotListed()
{
    QVERIFY(QDir(PresetsFolder::path()).mkdir(u"more.gauge"_s));
    writeFile(path(u"more.gauge/Dial.gauge"_s), {});
    QCOMPARE(presetNames(Editor()), QStringList());
}

void tst_Presets::orderIsThatOfTheFolder()
{
    for (const char *name : {"Zones", "Arc", "dial", "Needle", "5", "Bias", "Clock", "arc", "Volt", "Ampere"})
        writeFile(path(QLatin1StringView(name) + u".gauge"_s), {});
    QStringList names;
    for (const auto &entry : std::filesystem::directory_iterator(PresetsFolder::path().toStdString()))
        names.append(QString::fromStdString(entry.path().stem().string()));
    QCOMPARE(names.size(), 10);
    const Editor editor;
    QCOMPARE(presetNames(editor), names);
    QCOMPARE(presetList(editor).currentIndex(), 0);
}

void tst_Presets::listIsFilledAgainAfterSaving_data()
{
    QTest::addColumn<QString>("button");
    QTest::newRow("gauge") << u"saveButton"_s;
    QTest::newRow("layer") << u"SaveLayerButton"_s;
}

void tst_Presets::listIsFilledAgainAfterSaving()
{
    QFETCH(const QString, button);
    const QTemporaryDir elsewhere;
    const Editor editor;
    DialogAnswers answers;
    answers.expectFile(path(u"Dial.gauge"_s));
    editor.press(button);
    QCOMPARE(presetNames(editor), QStringList(u"Dial"_s));
    // The list is also filled again when the file is saved elsewhere.
    QVERIFY(QFile::remove(path(u"Dial.gauge"_s)));
    answers.expectFile(elsewhere.filePath(u"Dial.gauge"_s));
    editor.press(button);
    QCOMPARE(presetNames(editor), QStringList());
    QCOMPARE(answers.problems(), QStringList());
}

void tst_Presets::pickedPresetIsLoaded()
{
    for (int i = 1; i <= 3; ++i)
        writeFile(path(u"Dial %1.gauge"_s.arg(i)), gaugeFile::write({{{}, sampleLayer(i)}}));
    const DialogAnswers answers;
    const Editor editor;
    QCOMPARE(editor.differencesFrom({{u"Layer 1"_s, {}}}), QStringList());
    QTest::keyClick(&presetList(editor), Qt::Key_Down);
    const QString name = presetNames(editor).at(1);
    QCOMPARE(editor.differencesFrom({{name, sampleLayer(name.last(1).toInt())}}), QStringList());
    QCOMPARE(answers.problems(), QStringList());
}

void tst_Presets::currentPresetCanBePickedAgain()
{
    writeFile(path(u"Dial.gauge"_s), gaugeFile::write({{u"Marks"_s, sampleLayer()}}));
    DialogAnswers answers;
    Editor editor;
    editor.show();
    pickCurrentPreset(editor);
    const gaugeLayer loaded{u"Marks"_s, sampleLayer()};
    QCOMPARE(editor.differencesFrom({loaded}), QStringList());

    answers.expect<QMessageBox>([](QMessageBox &box) { box.buttons().first()->click(); });
    pickCurrentPreset(editor);
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(editor.differencesFrom({loaded, loaded}), QStringList());
}

void tst_Presets::missingFileIsReported_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::newRow("two dots") << u"my.dial.gauge"_s;
    QTest::newRow("no dot") << u"backupgauge"_s;
    QTest::newRow("removed") << u"Dial.gauge"_s;
}

void tst_Presets::missingFileIsReported()
{
    QFETCH(const QString, fileName);
    writeFile(path(fileName), gaugeFile::write({{u"Dial"_s, sampleLayer()}}));
    Editor editor;
    editor.show();
    QFile::remove(path(u"Dial.gauge"_s));
    const QStringList before = editor.state();
    DialogAnswers answers;
    answers.expectMessage(&editor.window, QMessageBox::Information, u"Unable to open file"_s,
                          u"No such file or directory"_s);
    pickCurrentPreset(editor);
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(editor.state(), before);
}

ADD_TEST_CLASS(tst_Presets)
#include "tst_presets.moc"
