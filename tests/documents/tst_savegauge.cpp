#include "documents.h"
#include "model/gaugefile.h"
#include "support/dialogs.h"
#include "support/network.h"
#include "support/testmain.h"
#include "support/warnings.h"
#include "window.h"

#include <QComboBox>
#include <QDir>
#include <QDoubleSpinBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QTemporaryDir>
#include <QTest>

#include <optional>

/// "Save" and "Save Layer...": where they ask, what they write, and what becomes of failures.
class tst_SaveGauge : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanupTestCase();

    void asksForTheFile_data();
    void asksForTheFile();
    void writesEveryLayerWithTheLatestEdits();
    void writesTheActiveLayerAlone();
    void keepsEveryCharacterOfAName();
    void completesANameWithoutSuffix_data();
    void completesANameWithoutSuffix();
    void replacesAnExistingFile();
    void doesNothingWhenCancelled_data();
    void doesNothingWhenCancelled();
    void tellsWhenTheFileCannotBeOpened_data();
    void tellsWhenTheFileCannotBeOpened();
    void tellsWhenTheFolderVanished();
    void keepsTheGaugeWhenTheDiskIsFull();
    void listsThePresetsAnewAfterSaving_data();
    void listsThePresetsAnewAfterSaving();
    void savesNoLayerWithoutACurrentRow();

private:
    static void addBothButtons();

    std::optional<SilentProxy> m_proxy;
    std::optional<PresetsFolder> m_presets;
    std::optional<QTemporaryDir> m_folder;
};

void tst_SaveGauge::initTestCase()
{
    m_proxy.emplace();
}

void tst_SaveGauge::init()
{
    failOnUnexpectedWarnings();
    m_presets.reset();
    m_presets.emplace();
    m_folder.emplace();
}

void tst_SaveGauge::cleanupTestCase()
{
    m_folder.reset();
    m_presets.reset();
    m_proxy.reset();
}

void tst_SaveGauge::addBothButtons()
{
    QTest::addColumn<QByteArray>("button");
    QTest::newRow("Save") << QByteArray("saveButton");
    QTest::newRow("Save Layer...") << QByteArray("SaveLayerButton");
}

void tst_SaveGauge::asksForTheFile_data()
{
    QTest::addColumn<QByteArray>("button");
    QTest::addColumn<QString>("caption");
    QTest::addColumn<QString>("folder");
    QTest::newRow("Save") << QByteArray("saveButton") << QStringLiteral("Save Gauge")
                          << QCoreApplication::applicationDirPath();
    QTest::newRow("Save Layer...") << QByteArray("SaveLayerButton") << QStringLiteral("Save Layer As Preset")
                                   << PresetsFolder::path();
}

void tst_SaveGauge::asksForTheFile()
{
    QFETCH(const QByteArray, button);
    QFETCH(const QString, caption);
    QFETCH(const QString, folder);
    const Window window;
    DialogAnswers answers;
    answers.expect<QFileDialog>([&](QFileDialog &dialog) {
        QCOMPARE(dialog.parentWidget(), &window);
        QVERIFY(dialog.isModal());
        QCOMPARE(dialog.windowTitle(), caption);
        QCOMPARE(dialog.nameFilters(), QStringList(QStringLiteral("Gauge file (*.gauge)")));
        QCOMPARE(dialog.defaultSuffix(), QStringLiteral("gauge"));
        QCOMPARE(dialog.acceptMode(), QFileDialog::AcceptSave);
        QCOMPARE(dialog.directory().absolutePath(), folder);
        QCOMPARE(dialog.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->text(), QString());
        QVERIFY(!dialog.testOption(QFileDialog::DontConfirmOverwrite));
        dialog.reject();
    });
    press(window, button);
    QCOMPARE(answers.problems(), QStringList());
}

void tst_SaveGauge::writesEveryLayerWithTheLatestEdits()
{
    const Window window;
    DialogAnswers answers;
    addLayer(window, answers, QStringLiteral("Marks"));
    addLayer(window, answers, QStringLiteral("Zones"));
    control<QListWidget>(window, "layerList")->setCurrentRow(1);
    control<QDoubleSpinBox>(window, "gaugeStartAngleSpinBox")->setValue(45);
    control<QDoubleSpinBox>(window, "arc1WidthSpinBox")->setValue(7.5);
    control<QListWidget>(window, "layerList")->setCurrentRow(2);
    control<QDoubleSpinBox>(window, "gaugeStartAngleSpinBox")->setValue(90);

    gaugeData marks;
    marks.startAngle = 45;
    marks.arcWidth.front() = 7.5;
    gaugeData zones;
    zones.startAngle = 90;
    const QString path = m_folder->filePath(QStringLiteral("Three.gauge"));
    const QStringList before = stateOf(window);
    answers.expectFile(path);
    press(window, "saveButton");

    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(contentOf(path), gaugeFile::write({{QStringLiteral("Layer 1"), gaugeData()},
                                                {QStringLiteral("Marks"), marks},
                                                {QStringLiteral("Zones"), zones}}));
    QCOMPARE(stateOf(window), before);
}

void tst_SaveGauge::writesTheActiveLayerAlone()
{
    const Window window;
    DialogAnswers answers;
    addLayer(window, answers, QStringLiteral("Marks"));
    addLayer(window, answers, QStringLiteral("Zones"));
    control<QListWidget>(window, "layerList")->setCurrentRow(1);
    control<QDoubleSpinBox>(window, "gaugeStartAngleSpinBox")->setValue(45);

    gaugeData marks;
    marks.startAngle = 45;
    const QString path = m_folder->filePath(QStringLiteral("Preset.gauge"));
    const QStringList before = stateOf(window);
    answers.expectFile(path);
    press(window, "SaveLayerButton");

    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(contentOf(path), gaugeFile::write({{QStringLiteral("Marks"), marks}}));
    QCOMPARE(stateOf(window), before);
}

void tst_SaveGauge::keepsEveryCharacterOfAName()
{
    const Window window;
    DialogAnswers answers;
    const QStringList names{QStringLiteral("Layer 1"),     QStringLiteral("Zähler \"a\", <b>"),
                            QStringLiteral("時計 🕰"), QStringLiteral("back\\slash {}[]:"),
                            QStringLiteral("same"),        QStringLiteral("same")};
    for (const QString &name : names.sliced(1))
        addLayer(window, answers, name);
    const QString path = m_folder->filePath(QStringLiteral("Names.gauge"));
    answers.expectFile(path);
    press(window, "saveButton");

    QList<gaugeLayer> read;
    QVERIFY(gaugeFile::read(contentOf(path), &read, nullptr));
    QStringList readNames;
    for (const gaugeLayer &layer : read)
        readNames.append(layer.name);
    QCOMPARE(readNames, names);
    QCOMPARE(answers.problems(), QStringList());
}

void tst_SaveGauge::completesANameWithoutSuffix_data()
{
    QTest::addColumn<QByteArray>("button");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("written");
    for (const char *button : {"saveButton", "SaveLayerButton"}) {
        const auto row = [button](const char *typed, const char *written) {
            QTest::addRow("%s, %s", button, typed)
                << QByteArray(button) << QString::fromLatin1(typed) << QString::fromLatin1(written);
        };
        row("Dial", "Dial.gauge");
        row("Dial.gauge", "Dial.gauge");
        row("Dial.txt", "Dial.txt");
    }
}

void tst_SaveGauge::completesANameWithoutSuffix()
{
    QFETCH(const QByteArray, button);
    QFETCH(const QString, typed);
    QFETCH(const QString, written);
    const Window window;
    DialogAnswers answers;
    answers.expectFile(m_folder->filePath(typed));
    press(window, button);
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files), QStringList(written));
}

void tst_SaveGauge::replacesAnExistingFile()
{
    const QString path = m_folder->filePath(QStringLiteral("Dial.gauge"));
    QVERIFY(writeFile(path, QByteArray(1'000'000, 'x')));
    const Window window;
    DialogAnswers answers;
    answers.expectFile(path);
    press(window, "saveButton");
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(contentOf(path), gaugeFile::write({{QStringLiteral("Layer 1"), gaugeData()}}));
}

void tst_SaveGauge::doesNothingWhenCancelled_data()
{
    addBothButtons();
}

void tst_SaveGauge::doesNothingWhenCancelled()
{
    QFETCH(const QByteArray, button);
    const Window window;
    DialogAnswers answers;
    QVERIFY(writeFile(PresetsFolder::filePath(QStringLiteral("Later.gauge")), {}));
    const QStringList before = stateOf(window); // the preset that came meanwhile is not listed
    answers.expect<QFileDialog>([this](QFileDialog &dialog) {
        dialog.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))
            ->setText(m_folder->filePath(QStringLiteral("Dial.gauge")));
        dialog.reject();
    });
    press(window, button);
    QCOMPARE(answers.problems(), QStringList());
    QVERIFY(QDir(m_folder->path()).isEmpty());
    QCOMPARE(stateOf(window), before);
}

void tst_SaveGauge::tellsWhenTheFileCannotBeOpened_data()
{
    addBothButtons();
}

void tst_SaveGauge::tellsWhenTheFileCannotBeOpened()
{
    QFETCH(const QByteArray, button);
    const QString parent = m_folder->filePath(QStringLiteral("file"));
    QVERIFY(writeFile(parent, "content"));
    const Window window;
    QVERIFY(writeFile(PresetsFolder::filePath(QStringLiteral("Later.gauge")), {}));
    const QStringList before = stateOf(window);
    DialogAnswers answers;
    answers.expectFile(parent + QLatin1String("/Dial.gauge"));
    answers.expectMessage(&window, QMessageBox::Information, QStringLiteral("Unable to open file"),
                          QStringLiteral("Not a directory"));
    press(window, button);
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(contentOf(parent), QByteArray("content"));
    QCOMPARE(stateOf(window), before);
}

void tst_SaveGauge::tellsWhenTheFolderVanished()
{
    const Window window;
    const QStringList before = stateOf(window);
    DialogAnswers answers;
    answers.expect<QFileDialog>([this](QFileDialog &dialog) {
        dialog.setOption(QFileDialog::DontConfirmOverwrite);
        dialog.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))
            ->setText(m_folder->filePath(QStringLiteral("Dial.gauge")));
        QVERIFY(m_folder->remove());
        static_cast<QDialog &>(dialog).accept();
    });
    answers.expectMessage(&window, QMessageBox::Information, QStringLiteral("Unable to open file"),
                          QStringLiteral("No such file or directory"));
    press(window, "saveButton");
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(stateOf(window), before);
}

void tst_SaveGauge::keepsTheGaugeWhenTheDiskIsFull()
{
    const QString path = m_folder->filePath(QStringLiteral("Full.gauge"));
    QVERIFY(QFile::link(QStringLiteral("/dev/full"), path));
    const Window window;
    const QStringList before = stateOf(window);
    DialogAnswers answers;
    answers.expectFile(path);
    press(window, "saveButton");
    QCOMPARE(answers.problems(), QStringList()); // not a word of it
    QCOMPARE(stateOf(window), before);
}

void tst_SaveGauge::listsThePresetsAnewAfterSaving_data()
{
    QTest::addColumn<QByteArray>("button");
    QTest::addColumn<bool>("asPreset");
    QTest::newRow("a layer as a preset") << QByteArray("SaveLayerButton") << true;
    QTest::newRow("a gauge as a preset") << QByteArray("saveButton") << true;
    QTest::newRow("a layer elsewhere") << QByteArray("SaveLayerButton") << false;
    QTest::newRow("a gauge elsewhere") << QByteArray("saveButton") << false;
}

void tst_SaveGauge::listsThePresetsAnewAfterSaving()
{
    QFETCH(const QByteArray, button);
    QFETCH(const bool, asPreset);
    const Window window;
    const auto *presets = control<QComboBox>(window, "presetComboBox");
    QCOMPARE(presets->count(), 0);
    const QString dial = QStringLiteral("Dial.gauge");
    if (!asPreset)
        QVERIFY(writeFile(PresetsFolder::filePath(dial), {}));
    DialogAnswers answers;
    answers.expectFile(asPreset ? PresetsFolder::filePath(dial) : m_folder->filePath(dial));
    press(window, button);
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(presets->count(), 1);
    QCOMPARE(presets->currentText(), QStringLiteral("Dial"));
    QCOMPARE(linesOf(gaugeOf(window)), linesOf({{QStringLiteral("Layer 1"), gaugeData()}}));
}

void tst_SaveGauge::savesNoLayerWithoutACurrentRow()
{
    const Window window;
    control<QListWidget>(window, "layerList")->setCurrentRow(-1);
    const QStringList before = stateOf(window);
    const DialogAnswers answers;
    press(window, "SaveLayerButton");
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(stateOf(window), before);
}

ADD_TEST_CLASS(tst_SaveGauge)
#include "tst_savegauge.moc"
