#include "documents.h"
#include "model/gaugefile.h"
#include "support/dialogs.h"
#include "support/network.h"
#include "support/testmain.h"
#include "support/warnings.h"
#include "window.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QDir>
#include <QDoubleSpinBox>
#include <QFile>
#include <QListWidget>
#include <QTest>

#include <filesystem>
#include <optional>

namespace {

QStringList entriesOf(const QComboBox &presets)
{
    QStringList entries;
    for (int i = 0; i < presets.count(); ++i)
        entries.append(presets.itemText(i));
    return entries;
}

/// Picks the entry that the box shows, as the user does in the list that opens.
void pickShownEntry(QComboBox &presets)
{
    presets.showPopup();
    QTest::keyClick(presets.view(), Qt::Key_Return);
}

} // namespace

/// The list of presets: what of the folder beside the program is in it, and what picking an entry does.
class tst_Presets : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { m_proxy.emplace(); }
    void init();
    void cleanupTestCase();

    void isEmptyWithoutAFolder();
    void isEmptyForAnEmptyFolder();
    void showsANameForEachFile_data();
    void showsANameForEachFile();
    void listsNoFoldersAndNothingInThem();
    void keepsTheOrderOfTheFolder();
    void holdsNamesOnly();
    void loadsNothingByItself();
    void loadsThePickedPreset();
    void loadsTheEntryThatIsAlreadyShown();
    void tellsWhenAnEntryHasNoFile_data();
    void tellsWhenAnEntryHasNoFile();
    void tellsWhenAPresetCannotBeRead();

private:
    std::optional<SilentProxy> m_proxy;
    std::optional<PresetsFolder> m_presets;
};

void tst_Presets::init()
{
    failOnUnexpectedWarnings();
    m_presets.reset();
    m_presets.emplace();
}

void tst_Presets::cleanupTestCase()
{
    m_presets.reset();
    m_proxy.reset();
}

void tst_Presets::isEmptyWithoutAFolder()
{
    m_presets.reset();
    QVERIFY(!QDir(PresetsFolder::path()).exists());
    const Window window;
    QCOMPARE(control<QComboBox>(window, "presetComboBox")->count(), 0);
    QVERIFY(!QDir(PresetsFolder::path()).exists()); // and none is made
}

void tst_Presets::isEmptyForAnEmptyFolder()
{
    const Window window;
    QCOMPARE(control<QComboBox>(window, "presetComboBox")->count(), 0);
}

void tst_Presets::showsANameForEachFile_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<QStringList>("entries");
    const auto row = [](const char *fileName, const QStringList &entries) {
        QTest::newRow(fileName) << QString::fromUtf8(fileName) << entries;
    };
    row("Dial.gauge", {QStringLiteral("Dial")});
    row("Zähler 2.gauge", {QStringLiteral("Zähler 2")});
    row("my.dial.gauge", {QStringLiteral("my")});
    row("backupgauge", {QStringLiteral("backupgauge")});
    row("gauge", {QStringLiteral("gauge")});
    row("Dial.xgauge", {QStringLiteral("Dial")});
    row("notes.txt", {});
    row("Dial.gauge.bak", {});
    row("Dial.GAUGE", {});
    row("Dial.Gauge", {});
    row(".gauge", {});
    row(".Dial.gauge", {});
}

void tst_Presets::showsANameForEachFile()
{
    QFETCH(const QString, fileName);
    QFETCH(const QStringList, entries);
    QVERIFY(writeFile(PresetsFolder::filePath(fileName), {}));
    const Window window;
    QCOMPARE(entriesOf(*control<QComboBox>(window, "presetComboBox")), entries);
}

void tst_Presets::listsNoFoldersAndNothingInThem()
{
    QVERIFY(QDir(PresetsFolder::path()).mkdir(QStringLiteral("more.gauge")));
    QVERIFY(writeFile(PresetsFolder::filePath(QStringLiteral("more.gauge/Dial.gauge")), {}));
    const Window window;
    QCOMPARE(control<QComboBox>(window, "presetComboBox")->count(), 0);
}

void tst_Presets::keepsTheOrderOfTheFolder()
{
    for (const char *name : {"Zones", "Arc", "dial", "Needle", "5", "Bias", "Clock", "arc", "Volt", "Ampere"})
        QVERIFY(writeFile(PresetsFolder::filePath(QLatin1String(name) + QLatin1String(".gauge")), {}));
    QStringList order;
    for (const auto &entry :
         std::filesystem::directory_iterator(std::filesystem::path(PresetsFolder::path().toStdU16String())))
        order.append(QString::fromStdU16String(entry.path().stem().u16string()));
    QCOMPARE(order.size(), 10);
    const Window window;
    const auto *presets = control<QComboBox>(window, "presetComboBox");
    QCOMPARE(entriesOf(*presets), order);
    QCOMPARE(presets->currentIndex(), 0);
}

void tst_Presets::holdsNamesOnly()
{
    QVERIFY(writeFile(PresetsFolder::filePath(QStringLiteral("Dial.gauge")), {}));
    const Window window;
    const auto *presets = control<QComboBox>(window, "presetComboBox");
    QVERIFY(presets->itemData(0).isNull());
    QVERIFY(presets->itemIcon(0).isNull());
}

void tst_Presets::loadsNothingByItself()
{
    QVERIFY(writeFile(PresetsFolder::filePath(QStringLiteral("Dial.gauge")),
                      gaugeFile::write({{QStringLiteral("Dial"), sampleLayer(1)}})));
    const DialogAnswers answers;
    const Window window;
    QCOMPARE(linesOf(gaugeOf(window)), linesOf({{QStringLiteral("Layer 1"), gaugeData()}}));
    control<QComboBox>(window, "presetComboBox")->setCurrentIndex(0); // from code, as a refill does
    QCOMPARE(linesOf(gaugeOf(window)), linesOf({{QStringLiteral("Layer 1"), gaugeData()}}));
    QCOMPARE(answers.problems(), QStringList());
}

void tst_Presets::loadsThePickedPreset()
{
    for (int i = 1; i <= 3; ++i) {
        const QString name = QStringLiteral("Dial %1").arg(i);
        QVERIFY(writeFile(PresetsFolder::filePath(name + QLatin1String(".gauge")),
                          gaugeFile::write({{QString(), sampleLayer(i)}})));
    }
    const DialogAnswers answers;
    const Window window;
    auto *presets = control<QComboBox>(window, "presetComboBox");
    QTest::keyClick(presets, Qt::Key_Down);
    const QString name = presets->itemText(1);
    QCOMPARE(presets->currentText(), name);
    const int number = name.last(1).toInt();
    QCOMPARE(linesOf(gaugeOf(window)), linesOf({{name, sampleLayer(number)}}));
    QCOMPARE(answers.problems(), QStringList());
}

void tst_Presets::loadsTheEntryThatIsAlreadyShown()
{
    QVERIFY(writeFile(PresetsFolder::filePath(QStringLiteral("Dial.gauge")),
                      gaugeFile::write({{QStringLiteral("Marks"), sampleLayer(1)}})));
    DialogAnswers answers;
    Window window;
    window.show();
    auto *presets = control<QComboBox>(window, "presetComboBox");
    QCOMPARE(presets->currentText(), QStringLiteral("Dial"));
    pickShownEntry(*presets);
    const gaugeLayer loaded{QStringLiteral("Marks"), sampleLayer(1)};
    QCOMPARE(linesOf(gaugeOf(window)), linesOf({loaded}));

    // Again, now over a layer that is no longer the default one.
    expectAndAppend(answers);
    pickShownEntry(*presets);
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(linesOf(gaugeOf(window)), linesOf({loaded, loaded}));
}

void tst_Presets::tellsWhenAnEntryHasNoFile_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<bool>("removed");
    QTest::newRow("a dot in the name") << QStringLiteral("my.dial.gauge") << false;
    QTest::newRow("no dot before the suffix") << QStringLiteral("backupgauge") << false;
    QTest::newRow("another suffix") << QStringLiteral("Dial.xgauge") << false;
    QTest::newRow("removed meanwhile") << QStringLiteral("Dial.gauge") << true;
}

void tst_Presets::tellsWhenAnEntryHasNoFile()
{
    QFETCH(const QString, fileName);
    QFETCH(const bool, removed);
    const QString path = PresetsFolder::filePath(fileName);
    QVERIFY(writeFile(path, gaugeFile::write({{QStringLiteral("Dial"), sampleLayer(1)}})));
    DialogAnswers answers;
    Window window;
    window.show();
    control<QDoubleSpinBox>(window, "gaugeStartAngleSpinBox")->setValue(12.5);
    if (removed)
        QVERIFY(QFile::remove(path));
    const QStringList before = stateOf(window);
    answers.expectMessage(&window, QMessageBox::Information, QStringLiteral("Unable to open file"),
                          QStringLiteral("No such file or directory"));
    pickShownEntry(*control<QComboBox>(window, "presetComboBox"));
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(stateOf(window), before);
}

void tst_Presets::tellsWhenAPresetCannotBeRead()
{
    QVERIFY(writeFile(PresetsFolder::filePath(QStringLiteral("Dial.gauge")), "\n"));
    DialogAnswers answers;
    Window window;
    window.show();
    const QStringList before = stateOf(window);
    answers.expectMessage(&window, QMessageBox::Warning, QStringLiteral("Unable to load gauge"),
                          QStringLiteral("Dial.gauge could not be read.\n\nThe file is empty."));
    pickShownEntry(*control<QComboBox>(window, "presetComboBox"));
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(stateOf(window), before);
}

ADD_TEST_CLASS(tst_Presets)
#include "tst_presets.moc"
