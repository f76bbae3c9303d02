#include "desktop.h"
#include "formmap.h"
#include "model/gaugefile.h"
#include "support/files.h"
#include "support/records.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;
using desktop::press;
using desktop::type;
using desktop::waitForActive;

namespace {

const QString title = u"Corvalence 2.2.0"_s;

/// Per cent by which letters on the opaque screen may differ from letters in a transparent picture. A missing
/// or misplaced line differs by more.
constexpr int toleranceOfLetters = 30;

// QVERIFY only leaves the function that it is in. This also leaves the caller of a failed function.
#define STEP(step)                                                                                           \
    do {                                                                                                     \
        step;                                                                                                \
        if (QTest::currentTestFailed())                                                                      \
            return;                                                                                          \
    } while (false)

/// The layer that is typed: all values differ, so that the saved file shows which control each one reached.
gaugeData typedLayer()
{
    gaugeData layer = sampleLayer();
    layer.startAngle = -135.25;
    layer.angleLength = 270.5;
    layer.divisionCount = {8, 4, 3};
    layer.arcStartAngle = {-135.0, -35.0, 55.0, 160.0};
    layer.arcAngleLength = {100.125, 90.25, 80.375, 40.5};
    layer.arcColor[3] = Qt::black; // of a cancelled dialog
    layer.tickCountEnabled = true;
    layer.tickCountStart = -20.0; // typed before the decimal places
    return layer;
}

QList<gaugeLayer> layersOf(const QString &path)
{
    QList<gaugeLayer> layers;
    gaugeFile::read(readFile(path), &layers, nullptr);
    return layers;
}

} // namespace

/// A session with the built program. A gauge is made by keyboard alone in the tab order, saved in every
/// format, loaded after a restart and saved again. Then it is edited with the mouse.
///
/// Each function continues where the previous one ended.
class tst_EndToEnd : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup() { m_failed = m_failed || QTest::currentTestFailed(); }
    void cleanupTestCase();

    void keysEditTheLayer();
    void keysExport();
    void keysShowAndClearTheReference();
    void keysEditTheLayerList();
    void keysLoadAndSave();
    void savesWhatWasTyped();
    void exportsWhatItShows();
    void endsWhenItsWindowIsClosed();
    void savesAndShowsTheSameAfterARestart();
    void mouseEdits();
    void refusesBrokenFile();
    void printsOnlyThatAnImageCannotBeRead();

private:
    void start();
    [[nodiscard]] QString file(const QString &name) const { return m_folder.filePath(name); }
    /// Types a value into the control that has the focus and goes to the next one.
    static void enter(const QString &value);
    /// Presses the button that has the focus and picks a colour, or cancels if it is black.
    static void pickColor(const QColor &color);
    /// Waits for a dialog, types a path into it and accepts it.
    static void answerFileDialog(const QString &dialog, const QString &path);
    void clickAndAnswer(const QString &button, const QString &dialog, const QString &path);
    /// Saves the gauge in every format and waits until the files are complete.
    void saveEverything(const QString &name);
    void saveScreenshot(const QString &name) const
    {
        desktop::saveScreenshot(m_window, m_map->blackPreview(), file(name));
    }

    QTemporaryDir m_folder;
    QProcess m_program;
    QString m_window;
    std::unique_ptr<FormMap> m_map;
    bool m_failed = false;
};

void tst_EndToEnd::initTestCase()
{
    QVERIFY(m_folder.isValid());
    // The presets folder is beside the program.
    QVERIFY(QDir(m_folder.path()).mkpath(u"editor/Presets"_s));
    QVERIFY(QFile::copy(qEnvironmentVariable("CORVALENCE_PROGRAM"), file(u"editor/corvalence"_s)));
    QImage reference(512, 512, QImage::Format_RGB32);
    reference.fill(QColor(200, 0, 200));
    QVERIFY(reference.save(file(u"reference.png"_s)));
    start();
}

void tst_EndToEnd::init()
{
    if (m_failed)
        QSKIP("An earlier step has failed.");
}

void tst_EndToEnd::cleanupTestCase()
{
    m_program.kill();
    m_program.waitForFinished();
    if (m_failed) {
        m_folder.setAutoRemove(false);
        qInfo("The files of the session are in %s.", qPrintable(m_folder.path()));
    }
}

void tst_EndToEnd::start()
{
    m_program.setStandardErrorFile(file(u"printed"_s));
    m_program.setWorkingDirectory(file(u"editor"_s));
    m_program.start(file(u"editor/corvalence"_s), {});
    QVERIFY(waitForActive(title));
    m_window = desktop::activeWindow();
    m_map = std::make_unique<FormMap>(desktop::size(m_window));
}

void tst_EndToEnd::enter(const QString &value)
{
    press({u"ctrl+a"_s});
    type(value);
    press({u"Tab"_s});
}

void tst_EndToEnd::pickColor(const QColor &color)
{
    press({u"space"_s});
    QVERIFY(waitForActive(u"Choose a Color"_s));
    if (color == Qt::black) {
        press({u"Escape"_s});
    } else {
        press({u"alt+h"_s});
        type(color.name());
        press({u"Return"_s});
    }
    QVERIFY(waitForActive(title));
    press({u"Tab"_s});
}

void tst_EndToEnd::answerFileDialog(const QString &dialog, const QString &path)
{
    QVERIFY2(waitForActive(dialog), qPrintable(desktop::activeTitle()));
    type(path);
    press({u"Return"_s});
}

void tst_EndToEnd::clickAndAnswer(const QString &button, const QString &dialog, const QString &path)
{
    desktop::click(m_window, m_map->target(button));
    STEP(answerFileDialog(dialog, path));
    QVERIFY(waitForActive(title));
}

void tst_EndToEnd::saveEverything(const QString &name)
{
    desktop::click(m_window, m_map->target(u"pngSizeSpinBox"_s));
    enter(u"512"_s);
    const QString path = file(name);
    STEP(clickAndAnswer(u"saveButton"_s, u"Save Gauge"_s, path));
    STEP(clickAndAnswer(u"savePNGButton"_s, u"Save PNG"_s, path));
    STEP(clickAndAnswer(u"saveSVGButton"_s, u"Save SVG"_s, path));
    STEP(clickAndAnswer(u"saveKeyFrameButton"_s, u"Save Keyframes CSV"_s, path));
    QTRY_COMPARE_WITH_TIMEOUT(layersOf(path + u".gauge"_s).size(), 2, desktop::timeout);
    QTRY_COMPARE_WITH_TIMEOUT(QImage(path + u".png"_s).size(), QSize(512, 512), desktop::timeout);
    QTRY_VERIFY_WITH_TIMEOUT(readFile(path + u".svg"_s).trimmed().endsWith("</svg>"), desktop::timeout);
    const QByteArray table = keyframeTable(layersOf(path + u".gauge"_s)).toUtf8();
    QTRY_COMPARE_WITH_TIMEOUT(readFile(path + u".csv"_s), table, desktop::timeout);
}

void tst_EndToEnd::keysEditTheLayer()
{
    const gaugeData layer = typedLayer();
    QMap<QString, const GaugeField *> fields;
    for (const GaugeField &field : gaugeFields())
        fields.insert(field.control, &field);
    desktop::click(m_window, m_map->target(u"gaugeStartAngleSpinBox"_s));
    const QWidget *control = m_map->editor().control<QWidget>("gaugeStartAngleSpinBox"_L1);
    for (; control->objectName() != "tickCountFontButton"_L1; control = control->nextInFocusChain()) {
        const GaugeField *field = fields.value(control->objectName());
        if (field == nullptr)
            continue; // a part of another control
        const QVariant value = field->get(layer);
        if (field->kind == GaugeField::Color)
            STEP(pickColor(value.value<QColor>()));
        else if (field->kind != GaugeField::Flag)
            enter(value.toString());
        else if (value == field->initial)
            press({u"Tab"_s});
        else
            press({qobject_cast<const QComboBox *>(control) == nullptr ? u"space"_s : u"Down"_s, u"Tab"_s});
    }
    press({u"space"_s});
    QVERIFY2(waitForActive(u"Select Font"_s), qPrintable(desktop::activeTitle()));
    press({u"alt+s"_s, u"ctrl+a"_s});
    type(u"14"_s);
    press({u"Return"_s});
    QVERIFY(waitForActive(title));
    press({u"Tab"_s});
}

void tst_EndToEnd::keysExport()
{
    press({u"space"_s});
    STEP(answerFileDialog(u"Save SVG"_s, file(u"first.svg"_s)));
    QVERIFY(waitForActive(title));
    press({u"Tab"_s, u"space"_s});
    STEP(answerFileDialog(u"Save PNG"_s, file(u"first"_s)));
    QVERIFY(waitForActive(title));
    press({u"Tab"_s});
    enter(u"300"_s);
    press({u"space"_s});
    STEP(answerFileDialog(u"Save Keyframes CSV"_s, file(u"first.csv"_s)));
    QVERIFY(waitForActive(title));
    press({u"Tab"_s});
    QTRY_VERIFY_WITH_TIMEOUT(readFile(file(u"first.svg"_s)).trimmed().endsWith("</svg>"), desktop::timeout);
    QTRY_COMPARE_WITH_TIMEOUT(QImage(file(u"first.png"_s)).size(), QSize(512, 512), desktop::timeout);
    const QByteArray table = keyframeTable({{u"Layer 1"_s, typedLayer()}}).toUtf8();
    QTRY_COMPARE_WITH_TIMEOUT(readFile(file(u"first.csv"_s)), table, desktop::timeout);
}

void tst_EndToEnd::keysShowAndClearTheReference()
{
    const auto shownColor = [this] {
        saveScreenshot(u"screen.png"_s);
        return QImage(file(u"screen.png"_s)).pixelColor(10, 500); // a corner that the gauge does not reach
    };
    press({u"space"_s});
    STEP(answerFileDialog(u"Load Reference Image (512x512)"_s, file(u"reference.png"_s)));
    QVERIFY(waitForActive(title));
    QTRY_COMPARE_WITH_TIMEOUT(shownColor(), QColor(200, 0, 200), desktop::timeout);
    press({u"Tab"_s, u"space"_s});
    QTRY_COMPARE_WITH_TIMEOUT(shownColor(), QColor(Qt::black), desktop::timeout);
    press({u"Tab"_s});
}

void tst_EndToEnd::keysEditTheLayerList()
{
    press({u"F2"_s, u"ctrl+a"_s});
    type(u" Front, \"left\" "_s);
    press({u"Return"_s, u"Tab"_s, u"space"_s});
    QVERIFY2(waitForActive(u"New Layer"_s), qPrintable(desktop::activeTitle()));
    type(u"Not wanted"_s);
    press({u"Return"_s});
    QVERIFY(waitForActive(title));
    // Back to the list, down to the new layer, and to "Remove Layer".
    press({u"shift+Tab"_s, u"Down"_s, u"Tab"_s, u"Tab"_s, u"space"_s, u"Tab"_s, u"space"_s});
    STEP(answerFileDialog(u"Save Layer As Preset"_s, u"Dial"_s));
    QVERIFY(waitForActive(title));
    QTRY_COMPARE_WITH_TIMEOUT(layersOf(file(u"editor/Presets/Dial.gauge"_s)).value(0).name,
                              u"Front, \"left\""_s, desktop::timeout);
    press({u"Tab"_s});
}

void tst_EndToEnd::keysLoadAndSave()
{
    press({u"space"_s, u"Return"_s}); // the preset that was saved
    QVERIFY2(waitForActive(u"Load Gauge"_s), qPrintable(desktop::activeTitle()));
    press({u"Return"_s}); // as a new layer
    QVERIFY(waitForActive(title));
    press({u"Tab"_s, u"space"_s});
    STEP(answerFileDialog(u"Save Gauge"_s, file(u"first.gauge"_s)));
    QVERIFY(waitForActive(title));
    press({u"Tab"_s, u"space"_s});
    QVERIFY2(waitForActive(u"Load Gauge"_s), qPrintable(desktop::activeTitle()));
    press({u"Escape"_s});
    QVERIFY(waitForActive(title));
    QTRY_COMPARE_WITH_TIMEOUT(layersOf(file(u"first.gauge"_s)).size(), 2, desktop::timeout);
}

void tst_EndToEnd::savesWhatWasTyped()
{
    const QList<gaugeLayer> saved = layersOf(file(u"first.gauge"_s));
    gaugeData typed = typedLayer();
    // The family of the application's font, which the font button has at first.
    typed.tickCountFont = QFont(saved.first().data.tickCountFont.family(), 14);
    for (const gaugeLayer &layer : saved) {
        QCOMPARE(layer.name, u"Front, \"left\""_s);
        QCOMPARE(differingFields(layer.data, typed), QStringList());
    }
}

void tst_EndToEnd::exportsWhatItShows()
{
    STEP(saveEverything(u"before"_s));
    saveScreenshot(u"before-screen.png"_s);
    QImage onBlack(512, 512, QImage::Format_RGB32);
    onBlack.fill(Qt::black);
    QPainter(&onBlack).drawImage(0, 0, QImage(file(u"before.png"_s)));
    const QPoint corner = m_map->rect(*m_map->editor().preview()).topLeft();
    QVERIFY(onBlack.copy(m_map->blackPreview().translated(-corner)).save(file(u"before-black.png"_s)));
    QCOMPARE(desktop::differingPixels(file(u"before-screen.png"_s), file(u"before-black.png"_s),
                                      toleranceOfLetters),
             0);
}

void tst_EndToEnd::endsWhenItsWindowIsClosed()
{
    press({u"alt+F4"_s});
    QVERIFY(m_program.waitForFinished(desktop::timeout));
    QCOMPARE(m_program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(m_program.exitCode(), 0);
    QCOMPARE(readFile(file(u"printed"_s)), QByteArray());
}

void tst_EndToEnd::savesAndShowsTheSameAfterARestart()
{
    STEP(start());
    STEP(clickAndAnswer(u"loadButton"_s, u"Load Gauge"_s, file(u"before.gauge"_s)));
    STEP(saveEverything(u"after"_s));
    for (const auto &suffix : {u".gauge"_s, u".png"_s, u".svg"_s, u".csv"_s})
        QCOMPARE(readFile(file(u"after"_s + suffix)), readFile(file(u"before"_s + suffix)));
    // This also clears the text behind the preview.
    desktop::click(m_window, m_map->target(u"clearReferenceButton"_s));
    const auto difference = [this] {
        saveScreenshot(u"after-screen.png"_s);
        return desktop::differingPixels(file(u"before-screen.png"_s), file(u"after-screen.png"_s), 0);
    };
    QTRY_COMPARE_WITH_TIMEOUT(difference(), 0, desktop::timeout);
}

void tst_EndToEnd::mouseEdits()
{
    QList<gaugeLayer> expected = layersOf(file(u"before.gauge"_s));
    desktop::click(m_window, m_map->upArrow(u"gaugeStartAngleSpinBox"_s));
    expected[0].data.startAngle += 1.0;
    desktop::click(m_window, m_map->target(u"roundedTickCapsCheckBox"_s));
    expected[0].data.roundedTickCaps = false;
    desktop::click(m_window, m_map->layerRow(1), 2);
    type(u"Back"_s);
    press({u"Return"_s});
    expected[1].name = u"Back"_s;
    desktop::click(m_window, m_map->target(u"tickCountCheckBox"_s));
    expected[1].data.tickCountEnabled = false;
    STEP(clickAndAnswer(u"saveButton"_s, u"Save Gauge"_s, file(u"mouse.gauge"_s)));
    QTRY_COMPARE_WITH_TIMEOUT(readFile(file(u"mouse.gauge"_s)), gaugeFile::write(expected), desktop::timeout);
}

void tst_EndToEnd::refusesBrokenFile()
{
    writeFile(file(u"broken.gauge"_s), "Round the face, the ticks, the ticks");
    desktop::click(m_window, m_map->target(u"loadButton"_s));
    STEP(answerFileDialog(u"Load Gauge"_s, file(u"broken.gauge"_s)));
    QVERIFY2(waitForActive(u"Unable to load gauge"_s), qPrintable(desktop::activeTitle()));
    press({u"Return"_s});
    QVERIFY(waitForActive(title));
    STEP(clickAndAnswer(u"saveButton"_s, u"Save Gauge"_s, file(u"unchanged.gauge"_s)));
    QTRY_COMPARE_WITH_TIMEOUT(readFile(file(u"unchanged.gauge"_s)), readFile(file(u"mouse.gauge"_s)),
                              desktop::timeout);
}

void tst_EndToEnd::printsOnlyThatAnImageCannotBeRead()
{
    STEP(clickAndAnswer(u"loadReferenceButton"_s, u"Load Reference Image (512x512)"_s,
                        file(u"broken.gauge"_s)));
    QTRY_COMPARE_WITH_TIMEOUT(readFile(file(u"printed"_s)), QByteArray("Failed to load image.\n"),
                              desktop::timeout);
}

QTEST_MAIN(tst_EndToEnd)
#include "tst_endtoend.moc"
