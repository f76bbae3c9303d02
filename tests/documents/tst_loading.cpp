#include "model/gaugefile.h"
#include "support/dialogs.h"
#include "support/editor.h"
#include "support/files.h"
#include "support/records.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QJsonDocument>
#include <QJsonParseError>
#include <QTemporaryDir>
#include <QTest>

#include <functional>
#include <optional>

using namespace Qt::StringLiterals;

using Answer = std::function<void(QMessageBox &)>;

namespace {

/// Two layers, as loaded by most of the tests.
QList<gaugeLayer> twoLayers()
{
    return {{u"Marks"_s, sampleLayer(1)}, {u"Zones"_s, sampleLayer(2)}};
}

void addNewLayers(QMessageBox &box)
{
    box.buttons().at(0)->click();
}

} // namespace

/// Loading gauges: the layers that result, the question whether to append them, and files that are no gauges.
class tst_Loading : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void defaultLayerIsOverwritten();
    void allLayersAreAppendedWithoutACurrentRow();
    void savedGaugeIsLoadedUnchanged();
    void earlierFormatIsLoaded();
    void singleLayerIsNamedAfterItsFile_data();
    void singleLayerIsNamedAfterItsFile();
    void unnamedLayersAreNumbered();
    void loadedLayersCanBeEdited();
    void questionHasThreeButtons();
    void questionComesOnlyForAnEditedLayer();
    void layersAreAppended_data();
    void layersAreAppended();
    void currentLayerIsOverwritten();
    void cancelChangesNothing_data();
    void cancelChangesNothing();
    void unreadableFileIsReported_data();
    void unreadableFileIsReported();
    void fileNameIsShownAsPlainText();

private:
    /// Writes a gauge file and returns its path.
    [[nodiscard]] QString fileOf(const QList<gaugeLayer> &layers,
                                 const QString &fileName = u"Dial.gauge"_s) const;
    /// Loads these layers. @a answer handles the question, which is not expected without it.
    void load(const QList<gaugeLayer> &layers, const Answer &answer = {}) const;
    /// Loads three layers, makes the second one current and edits it. Returns the resulting gauge.
    QList<gaugeLayer> loadAndEdit() const;

    std::optional<QTemporaryDir> m_folder;
    std::optional<Editor> m_editor;
};

void tst_Loading::init()
{
    failOnUnexpectedWarnings();
    m_folder.emplace();
    m_editor.emplace();
}

QString tst_Loading::fileOf(const QList<gaugeLayer> &layers, const QString &fileName) const
{
    QString path = m_folder->filePath(fileName);
    writeFile(path, gaugeFile::write(layers));
    return path;
}

void tst_Loading::load(const QList<gaugeLayer> &layers, const Answer &answer) const
{
    DialogAnswers answers;
    m_editor->load(fileOf(layers), answers, [&] {
        if (answer)
            answers.expect<QMessageBox>(answer);
    });
    QCOMPARE(answers.problems(), QStringList());
}

QList<gaugeLayer> tst_Loading::loadAndEdit() const
{
    QList<gaugeLayer> layers{
        {u"One"_s, sampleLayer(3)}, {u"Two"_s, sampleLayer(4)}, {u"Three"_s, sampleLayer(5)}};
    load(layers);
    m_editor->layerList()->setCurrentRow(1);
    m_editor->control<QDoubleSpinBox>("gaugeStartAngleSpinBox"_L1)->setValue(77.5);
    layers[1].data.startAngle = 77.5;
    return layers;
}

void tst_Loading::defaultLayerIsOverwritten()
{
    load(twoLayers());
    QCOMPARE(m_editor->differencesFrom(twoLayers()), QStringList());
    const QListWidget &list = *m_editor->layerList();
    QCOMPARE(list.currentRow(), 0);
    for (int row : {0, 1}) {
        QCOMPARE(list.item(row)->data(Qt::UserRole).toString(), twoLayers().at(row).name);
        QVERIFY(list.item(row)->flags().testFlag(Qt::ItemIsEditable));
    }
}

void tst_Loading::allLayersAreAppendedWithoutACurrentRow()
{
    m_editor->layerList()->setCurrentRow(-1);
    load(twoLayers());
    QCOMPARE(m_editor->differencesFrom(QList<gaugeLayer>{{u"Layer 1"_s, {}}} + twoLayers()), QStringList());
    QCOMPARE(m_editor->layerList()->currentRow(), 1);
}

void tst_Loading::savedGaugeIsLoadedUnchanged()
{
    QList<gaugeLayer> layers = twoLayers();
    layers[0].name = u" not trimmed "_s;
    layers[1].name = layers[0].name; // not made unique
    // Values that the controls cannot show.
    layers[0].data.startAngle = 123456.789;
    layers[0].data.bias = -4;
    layers[0].data.divisionCount[2] = 100'000;
    layers[0].data.tickCountStart = 0.125;
    layers[0].data.tickCountDecimalPlaces = 0;
    load(layers);
    QCOMPARE(m_editor->differencesFrom(layers), QStringList());

    const QString copy = m_folder->filePath(u"Copy.gauge"_s);
    DialogAnswers answers;
    answers.expectFile(copy);
    m_editor->press(u"saveButton"_s);
    QCOMPARE(readFile(copy), gaugeFile::write(layers));
    m_editor.emplace();
    m_editor->load(copy, answers);
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(m_editor->differencesFrom(layers), QStringList());
}

void tst_Loading::earlierFormatIsLoaded()
{
    const QString path = m_folder->filePath(u"Old dial.gauge"_s);
    gaugeData layer;
    layer.startAngle = 30;
    writeFile(path, layer.toQString().toUtf8());
    DialogAnswers answers;
    m_editor->load(path, answers);
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(m_editor->differencesFrom({{u"Old dial"_s, layer}}), QStringList());
}

void tst_Loading::singleLayerIsNamedAfterItsFile_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<QString>("name");
    QTest::newRow("one suffix") << u"Zähler 1.gauge"_s << u"Zähler 1"_s;
    QTest::newRow("two suffixes") << u"Needle.v2.gauge"_s << u"Needle.v2"_s;
}

void tst_Loading::singleLayerIsNamedAfterItsFile()
{
    QFETCH(const QString, fileName);
    QFETCH(const QString, name);
    const QString path = fileOf({{{}, sampleLayer()}}, fileName);
    DialogAnswers answers;
    m_editor->load(path, answers); // overwrites
    m_editor->load(path, answers, [&] { answers.expect<QMessageBox>(addNewLayers); });
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(m_editor->differencesFrom({{name, sampleLayer()}, {name, sampleLayer()}}), QStringList());
}

void tst_Loading::unnamedLayersAreNumbered()
{
    const gaugeData sample = sampleLayer();
    load({{{}, sample}, {{}, sample}, {u"Layer 4"_s, sample}, {{}, sample}});
    load({{{}, sample}, {{}, sample}}, addNewLayers);
    // The first layer overwrites the current one, and gets the name of the file. Names may repeat.
    QCOMPARE(m_editor->differencesFrom({{u"Dial"_s, sample},
                                        {u"Layer 2"_s, sample},
                                        {u"Layer 4"_s, sample},
                                        {u"Layer 4"_s, sample},
                                        {u"Layer 5"_s, sample},
                                        {u"Layer 6"_s, sample}}),
             QStringList());
}

void tst_Loading::loadedLayersCanBeEdited()
{
    load(twoLayers());
    auto *start = m_editor->control<QDoubleSpinBox>("gaugeStartAngleSpinBox"_L1);
    QCOMPARE(start->value(), twoLayers().at(0).data.startAngle);
    m_editor->layerList()->setCurrentRow(1);
    QCOMPARE(start->value(), twoLayers().at(1).data.startAngle);
    start->setValue(50);
    QList<gaugeLayer> expected = twoLayers();
    expected[1].data.startAngle = 50;
    QCOMPARE(m_editor->differencesFrom(expected), QStringList());
}

void tst_Loading::questionHasThreeButtons()
{
    loadAndEdit();
    load(twoLayers(), [this](QMessageBox &box) {
        QCOMPARE(box.parentWidget(), &m_editor->window);
        QVERIFY(box.isModal());
        QCOMPARE(box.windowTitle(), u"Load Gauge"_s);
        QCOMPARE(box.icon(), QMessageBox::Question);
        QCOMPARE(box.text(), u"The current layer has been modified."_s);
        QCOMPARE(box.informativeText(),
                 u"Add the loaded gauge as new layers, or overwrite the current layer with it?"_s);
        const QList<QPushButton *> buttons = box.findChildren<QPushButton *>(); // in the order of adding
        QCOMPARE(buttons.size(), 3);
        QCOMPARE(buttons.at(0)->text(), u"Add As New Layers"_s);
        QCOMPARE(box.buttonRole(buttons.at(0)), QMessageBox::AcceptRole);
        QCOMPARE(buttons.at(1)->text(), u"Overwrite Current Layer"_s);
        QCOMPARE(box.buttonRole(buttons.at(1)), QMessageBox::DestructiveRole);
        QCOMPARE(box.standardButton(buttons.at(2)), QMessageBox::Cancel);
        QCOMPARE(box.defaultButton(), buttons.at(0));
        box.reject();
    });
}

void tst_Loading::questionComesOnlyForAnEditedLayer()
{
    auto *start = m_editor->control<QDoubleSpinBox>("gaugeStartAngleSpinBox"_L1);
    const double initial = start->value();
    start->setValue(initial + 10);
    load(twoLayers(), [](QMessageBox &box) { box.reject(); });
    start->setValue(initial);
    load(twoLayers());
    QCOMPARE(m_editor->differencesFrom(twoLayers()), QStringList());
}

void tst_Loading::layersAreAppended_data()
{
    QTest::addColumn<Answer>("answer");
    QTest::newRow("Add As New Layers") << Answer(addNewLayers);
    QTest::newRow("Enter") << Answer([](QMessageBox &box) { QTest::keyClick(&box, Qt::Key_Return); });
}

void tst_Loading::layersAreAppended()
{
    QFETCH(const Answer, answer);
    const QList<gaugeLayer> before = loadAndEdit();
    load(twoLayers(), answer);
    QCOMPARE(m_editor->differencesFrom(before + twoLayers()), QStringList());
    QCOMPARE(m_editor->layerList()->currentRow(), 3);
    QCOMPARE(differingFields(m_editor->preview()->workingLayer, sampleLayer(1)), QStringList());
}

void tst_Loading::currentLayerIsOverwritten()
{
    QList<gaugeLayer> expected = loadAndEdit();
    load(twoLayers(), [](QMessageBox &box) { box.findChildren<QPushButton *>().at(1)->click(); });
    expected[1] = twoLayers().at(0);
    expected.append(twoLayers().at(1));
    QCOMPARE(m_editor->differencesFrom(expected), QStringList());
    QCOMPARE(m_editor->layerList()->currentRow(), 1);
    QCOMPARE(m_editor->layerList()->item(1)->data(Qt::UserRole).toString(), u"Marks"_s);
    QCOMPARE(differingFields(m_editor->preview()->workingLayer, sampleLayer(1)), QStringList());
}

void tst_Loading::cancelChangesNothing_data()
{
    QTest::addColumn<Answer>("answer");
    QTest::newRow("Cancel") << Answer([](QMessageBox &box) { box.button(QMessageBox::Cancel)->click(); });
    QTest::newRow("Escape") << Answer([](QMessageBox &box) { QTest::keyClick(&box, Qt::Key_Escape); });
    QTest::newRow("title bar") << Answer([](QMessageBox &box) { box.close(); });
}

void tst_Loading::cancelChangesNothing()
{
    QFETCH(const Answer, answer);
    loadAndEdit();
    const QStringList before = m_editor->state();
    load(twoLayers(), answer);
    QCOMPARE(m_editor->state(), before);
}

void tst_Loading::unreadableFileIsReported_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("reason");
    QTest::newRow("empty") << QByteArray(" \n") << u"The file is empty."_s;
    QTest::newRow("no layers") << QByteArray("{}") << u"The file contains no layers."_s;
    QTest::newRow("text")
        << QByteArray("Dear diary")
        << u"It is not valid JSON, and does not look like a gauge file from an earlier version either."_s;
    QJsonParseError error;
    QJsonDocument::fromJson("{\"layers\": [{}],}", &error);
    QTest::newRow("invalid JSON") << QByteArray("{\"layers\": [{}],}") << error.errorString();
}

void tst_Loading::unreadableFileIsReported()
{
    QFETCH(const QByteArray, content);
    QFETCH(const QString, reason);
    const QString path = m_folder->filePath(u"my %1 %2.dial.gauge"_s);
    writeFile(path, content);
    loadAndEdit();
    const QStringList before = m_editor->state();
    DialogAnswers answers;
    m_editor->load(path, answers, [&] {
        answers.expectMessage(&m_editor->window, QMessageBox::Warning, u"Unable to load gauge"_s,
                              "my %1 %2.dial.gauge could not be read.\n\n"_L1 + reason);
    });
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(m_editor->state(), before);
}

void tst_Loading::fileNameIsShownAsPlainText()
{
    const QString path = m_folder->filePath(u"<b>Dial<br>.gauge"_s);
    writeFile(path, {});
    DialogAnswers answers;
    m_editor->load(path, answers, [&answers] {
        answers.expect<QMessageBox>([](QMessageBox &box) {
            QCOMPARE(box.textFormat(), Qt::PlainText);
            QCOMPARE(box.text(), u"<b>Dial<br>.gauge could not be read.\n\nThe file is empty."_s);
            box.accept();
        });
    });
    QCOMPARE(answers.problems(), QStringList());
}

ADD_TEST_CLASS(tst_Loading)
#include "tst_loading.moc"
