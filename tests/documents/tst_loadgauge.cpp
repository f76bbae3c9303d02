#include "documents.h"
#include "model/gaugefile.h"
#include "render/renderarea.h"
#include "support/dialogs.h"
#include "support/network.h"
#include "support/testmain.h"
#include "support/warnings.h"
#include "window.h"

#include <QDoubleSpinBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QTemporaryDir>
#include <QTest>

#include <array>
#include <optional>

/// "Load": where it asks, and what a file's layers become in a gauge whose active layer holds the defaults.
class tst_LoadGauge : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { m_proxy.emplace(); }
    void init();
    void cleanupTestCase();

    void asksForTheFile();
    void doesNothingWhenCancelled();
    void overwritesADefaultLayerWithoutAsking();
    void appendsEveryLayerWhenNoRowIsCurrent();
    void bringsASavedGaugeBack();
    void readsAnEarlierVersion();
    void namesASingleLayerAfterItsFile_data();
    void namesASingleLayerAfterItsFile();
    void numbersSeveralLayersWithoutNames();
    void keepsNamesAsTheyAre();
    void keepsValuesThatNoControlCanShow();
    void showsTheLoadedLayerInTheControls();
    void goesOnWithTheListAsBefore();

private:
    /// Writes a file of these layers and tells where.
    [[nodiscard]] QString fileOf(const QString &fileName, const QList<gaugeLayer> &layers) const;

    std::optional<SilentProxy> m_proxy;
    std::optional<PresetsFolder> m_presets;
    std::optional<QTemporaryDir> m_folder;
};

void tst_LoadGauge::init()
{
    failOnUnexpectedWarnings();
    m_presets.reset();
    m_presets.emplace();
    m_folder.emplace();
}

void tst_LoadGauge::cleanupTestCase()
{
    m_folder.reset();
    m_presets.reset();
    m_proxy.reset();
}

QString tst_LoadGauge::fileOf(const QString &fileName, const QList<gaugeLayer> &layers) const
{
    QString path = m_folder->filePath(fileName);
    if (!writeFile(path, gaugeFile::write(layers)))
        qFatal("The file cannot be written.");
    return path;
}

void tst_LoadGauge::asksForTheFile()
{
    const Window window;
    DialogAnswers answers;
    answers.expect<QFileDialog>([&window](QFileDialog &dialog) {
        QCOMPARE(dialog.parentWidget(), &window);
        QVERIFY(dialog.isModal());
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Load Gauge"));
        QCOMPARE(dialog.nameFilters(), QStringList(QStringLiteral("Gauge files (*.gauge)")));
        QCOMPARE(dialog.acceptMode(), QFileDialog::AcceptOpen);
        QCOMPARE(dialog.fileMode(), QFileDialog::ExistingFile);
        QCOMPARE(dialog.directory().absolutePath(), PresetsFolder::path());
        dialog.reject();
    });
    press(window, "loadButton");
    QCOMPARE(answers.problems(), QStringList());
}

void tst_LoadGauge::doesNothingWhenCancelled()
{
    const QString path = fileOf(QStringLiteral("Dial.gauge"), {{QStringLiteral("Dial"), sampleLayer(1)}});
    const Window window;
    const QStringList before = stateOf(window);
    DialogAnswers answers;
    answers.expect<QFileDialog>([path](QFileDialog &dialog) {
        dialog.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(path);
        dialog.reject();
    });
    press(window, "loadButton");
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(stateOf(window), before);
}

void tst_LoadGauge::overwritesADefaultLayerWithoutAsking()
{
    const QList<gaugeLayer> layers{{QStringLiteral("Marks"), sampleLayer(1)},
                                   {QStringLiteral("Zones"), sampleLayer(2)}};
    const Window window;
    DialogAnswers answers;
    load(window, answers, fileOf(QStringLiteral("Two.gauge"), layers));
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(linesOf(gaugeOf(window)), linesOf(layers));
    const auto *list = control<QListWidget>(window, "layerList");
    QCOMPARE(list->currentRow(), 0);
    QCOMPARE(list->item(0)->data(Qt::UserRole).toString(), QStringLiteral("Marks"));
    QCOMPARE(list->item(1)->data(Qt::UserRole).toString(), QStringLiteral("Zones"));
    QVERIFY(list->item(1)->flags().testFlag(Qt::ItemIsEditable));
}

void tst_LoadGauge::appendsEveryLayerWhenNoRowIsCurrent()
{
    const Window window;
    auto *list = control<QListWidget>(window, "layerList");
    list->setCurrentRow(-1);
    DialogAnswers answers;
    load(window, answers,
         fileOf(QStringLiteral("Two.gauge"),
                {{QStringLiteral("Marks"), sampleLayer(1)}, {QString(), sampleLayer(2)}}));
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(linesOf(gaugeOf(window)), linesOf({{QStringLiteral("Layer 1"), gaugeData()},
                                                {QStringLiteral("Marks"), sampleLayer(1)},
                                                {QStringLiteral("Layer 3"), sampleLayer(2)}}));
    QCOMPARE(list->currentRow(), 1);
}

void tst_LoadGauge::bringsASavedGaugeBack()
{
    QList<gaugeLayer> layers;
    for (int i = 0; i < 12; ++i)
        layers.append({QStringLiteral("Layer \"%1\"").arg(i), sampleLayer(i)});
    const QString copy = m_folder->filePath(QStringLiteral("Copy.gauge"));
    const Window first;
    DialogAnswers answers;
    load(first, answers, fileOf(QStringLiteral("Dial.gauge"), layers));
    answers.expectFile(copy);
    press(first, "saveButton");

    const Window second;
    load(second, answers, copy);
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(linesOf(gaugeOf(second)), linesOf(layers));
    QCOMPARE(second.findChild<RenderArea *>()->grab().toImage(),
             first.findChild<RenderArea *>()->grab().toImage());
}

void tst_LoadGauge::readsAnEarlierVersion()
{
    const QString path = m_folder->filePath(QStringLiteral("Old dial.gauge"));
    QVERIFY(writeFile(path, sampleLayer(3).toQString().toUtf8()));
    const Window window;
    DialogAnswers answers;
    load(window, answers, path);
    QCOMPARE(answers.problems(), QStringList());
    gaugeData expected;
    QVERIFY(expected.fromQString(sampleLayer(3).toQString()));
    QCOMPARE(linesOf(gaugeOf(window)), linesOf({{QStringLiteral("Old dial"), expected}}));
}

void tst_LoadGauge::namesASingleLayerAfterItsFile_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<QString>("name");
    const auto row = [](const char *fileName, const char *name) {
        QTest::newRow(fileName) << QString::fromUtf8(fileName) << QString::fromUtf8(name);
    };
    row("Needle.gauge", "Needle");
    row("Needle.v2.gauge", "Needle.v2");
    row("Needle", "Needle");
    row("Zähler 1.gauge", "Zähler 1");
}

void tst_LoadGauge::namesASingleLayerAfterItsFile()
{
    QFETCH(const QString, fileName);
    QFETCH(const QString, name);
    const QString path = fileOf(fileName, {{QString(), sampleLayer(1)}});
    const Window window;
    DialogAnswers answers;
    load(window, answers, path);
    QCOMPARE(linesOf(gaugeOf(window)), linesOf({{name, sampleLayer(1)}}));

    // The same when it is appended.
    load(window, answers, path, [&answers] { expectAndAppend(answers); });
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(linesOf(gaugeOf(window)), linesOf({{name, sampleLayer(1)}, {name, sampleLayer(1)}}));
}

void tst_LoadGauge::numbersSeveralLayersWithoutNames()
{
    const QString path =
        fileOf(QStringLiteral("Three.gauge"),
               {{QString(), sampleLayer(1)}, {QString(), sampleLayer(2)}, {QString(), sampleLayer(3)}});
    const Window window;
    DialogAnswers answers;
    // The one that overwrites takes the name of the file, the others their place.
    load(window, answers, path);
    QCOMPARE(linesOf(gaugeOf(window)), linesOf({{QStringLiteral("Three"), sampleLayer(1)},
                                                {QStringLiteral("Layer 2"), sampleLayer(2)},
                                                {QStringLiteral("Layer 3"), sampleLayer(3)}}));
    load(window, answers, path, [&answers] { expectAndAppend(answers); });
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(linesOf(gaugeOf(window)).sliced(3), linesOf({{QStringLiteral("Layer 4"), sampleLayer(1)},
                                                          {QStringLiteral("Layer 5"), sampleLayer(2)},
                                                          {QStringLiteral("Layer 6"), sampleLayer(3)}}));
}

void tst_LoadGauge::keepsNamesAsTheyAre()
{
    // Neither made unique nor trimmed, as names that the user types are.
    const QList<gaugeLayer> layers{{QStringLiteral(" Layer 4 "), sampleLayer(1)},
                                   {QStringLiteral("Layer 4"), sampleLayer(2)},
                                   {QStringLiteral("\tMarks "), sampleLayer(3)},
                                   {QString(), sampleLayer(4)},
                                   {QStringLiteral("  "), sampleLayer(5)}};
    const Window window;
    DialogAnswers answers;
    load(window, answers, fileOf(QStringLiteral("Dial.gauge"), layers));
    QCOMPARE(answers.problems(), QStringList());
    QList<gaugeLayer> expected = layers;
    expected[3].name = QStringLiteral("Layer 4");
    QCOMPARE(linesOf(gaugeOf(window)), linesOf(expected));
}

void tst_LoadGauge::keepsValuesThatNoControlCanShow()
{
    gaugeData wide = sampleLayer(1);
    wide.startAngle = 123456.789;
    wide.bias = -4;
    wide.divisionCount.back() = 100000;
    wide.tickCountStart = 0.125; // with no decimals
    wide.tickCountDecimalPlaces = 0;
    const QList<gaugeLayer> layers{{QStringLiteral("Wide"), wide}};
    const QString copy = m_folder->filePath(QStringLiteral("Copy.gauge"));
    const Window window;
    DialogAnswers answers;
    load(window, answers, fileOf(QStringLiteral("Wide.gauge"), layers));
    QCOMPARE(linesOf(gaugeOf(window)), linesOf(layers));
    answers.expectFile(copy);
    press(window, "saveButton");
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(contentOf(copy), gaugeFile::write(layers));
}

void tst_LoadGauge::showsTheLoadedLayerInTheControls()
{
    const Window window;
    DialogAnswers answers;
    load(window, answers,
         fileOf(QStringLiteral("Dial.gauge"),
                {{QStringLiteral("Marks"), sampleLayer(16)}, {QStringLiteral("Zones"), sampleLayer(32)}}));
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(control<QDoubleSpinBox>(window, "gaugeStartAngleSpinBox")->value(), 30.16);
    QCOMPARE(control<QDoubleSpinBox>(window, "arc4WidthSpinBox")->value(), 3.16);
    QCOMPARE(control<QDoubleSpinBox>(window, "tickCountStartSpinBox")->value(), 26.0);
    const auto *preview = window.findChild<RenderArea *>();
    QCOMPARE(preview->workingLayer.toJson(), sampleLayer(16).toJson());
}

void tst_LoadGauge::goesOnWithTheListAsBefore()
{
    const Window window;
    DialogAnswers answers;
    load(window, answers,
         fileOf(QStringLiteral("Dial.gauge"),
                {{QStringLiteral("Marks"), sampleLayer(16)}, {QStringLiteral("Zones"), sampleLayer(32)}}));
    // Selecting and editing a loaded row reaches that row alone.
    control<QListWidget>(window, "layerList")->setCurrentRow(1);
    auto *start = control<QDoubleSpinBox>(window, "gaugeStartAngleSpinBox");
    QCOMPARE(start->value(), 30.32);
    start->setValue(50);
    gaugeData edited = sampleLayer(32);
    edited.startAngle = 50;
    QCOMPARE(linesOf(gaugeOf(window)),
             linesOf({{QStringLiteral("Marks"), sampleLayer(16)}, {QStringLiteral("Zones"), edited}}));
    QCOMPARE(answers.problems(), QStringList());
}

ADD_TEST_CLASS(tst_LoadGauge)
#include "tst_loadgauge.moc"
