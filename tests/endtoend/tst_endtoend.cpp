#include "desktop.h"
#include "formmap.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPainter>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>
#include <memory>

using desktop::press;
using desktop::type;
using desktop::waitForActive;

namespace {

constexpr int patience = 20000; // milliseconds

/// Letters are blended onto the opaque screen otherwise than into a transparent picture, by less than this. A
/// line that is missing or out of place is worth more. Per cent.
constexpr int lettersOnScreen = 30;

const QString title = QStringLiteral("Corvalence 2.2.0");
const QString returnKey = QStringLiteral("Return");
const QString tab = QStringLiteral("Tab");
const QString space = QStringLiteral("space");

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

/// One person's session with the built program: a gauge made by keyboard alone, in the order of the tab key,
/// saved in every form, loaded again after a restart and saved again; then the mouse.
///
/// The functions follow one another: each goes on where the one before has stopped.
class tst_EndToEnd : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

    void tabbingReachesTheSweep();
    void tabbingReachesTheRings();
    void tabbingReachesTheArcs();
    void tabbingReachesTheLabels();
    void tabbingReachesTheExports();
    void tabbingReachesTheReference();
    void tabbingReachesTheLayers();
    void tabbingReachesThePresetsAndFiles();
    void savedWhatWasTyped();
    void tabulatedWhatWasTyped();
    void exportsWhatItShows();
    void closingEndsTheProgram();
    void savesTheSameAfterARestart();
    void showsTheSameAfterARestart();
    void takesTheMouse();
    void refusesABrokenFile();

private:
    void start();
    [[nodiscard]] QString file(const QString &name) const { return m_folder.filePath(name); }
    /// Types a value into the control that has the focus, and goes on to the next.
    static void enter(const QString &value);
    /// Presses the colour button that has the focus, picks a colour (none: cancels), and goes on.
    void pickColor(const QString &color);
    /// Presses the button that has the focus and answers its file dialog.
    void answerFileDialog(const QString &dialog, const QString &path);
    /// Clicks a button and answers its file dialog.
    void clickAndAnswer(const char *button, const QString &dialog, const QString &path);
    /// Saves the gauge in every form, as NAME.gauge and so on, and waits until all files are there and whole.
    void saveEverything(const QString &name);
    [[nodiscard]] QJsonObject savedLayer(const QString &path, int index) const;
    /// The preview as far as it has its black backdrop, from which it may be off by a pixel, within the
    /// window.
    [[nodiscard]] QRect blackPreview() const
    {
        return m_map->rect("preview") & m_map->rect("referenceLabel");
    }
    void photographPreview(const QString &path) const;

    QTemporaryDir m_folder;
    QProcess m_program;
    QString m_window;
    std::unique_ptr<FormMap> m_map;
    bool m_goesOn = true; ///< Whether all has gone well so far; what comes after a failure says nothing.
};

// QVERIFY returns from the function that it stands in; this also does when a helper has failed.
#define STEP(step)                                                                                           \
    do {                                                                                                     \
        step;                                                                                                \
        if (QTest::currentTestFailed())                                                                      \
            return;                                                                                          \
    } while (false)

void tst_EndToEnd::initTestCase()
{
    QVERIFY(m_folder.isValid());
    // The program keeps its presets beside itself, so it gets a folder of its own.
    QVERIFY(QDir(m_folder.path()).mkpath(QStringLiteral("editor/Presets")));
    QVERIFY(
        QFile::copy(qEnvironmentVariable("CORVALENCE_PROGRAM"), file(QStringLiteral("editor/corvalence"))));
    QImage reference(512, 512, QImage::Format_RGB32);
    reference.fill(QColor(200, 0, 200));
    QVERIFY(reference.save(file(QStringLiteral("reference.png"))));
    start();
}

void tst_EndToEnd::init()
{
    if (!m_goesOn)
        QSKIP("the session has failed before");
}

void tst_EndToEnd::cleanup()
{
    m_goesOn = m_goesOn && !QTest::currentTestFailed();
}

void tst_EndToEnd::cleanupTestCase()
{
    m_program.kill();
    m_program.waitForFinished();
    if (!m_goesOn) {
        m_folder.setAutoRemove(false);
        qInfo("The session's files are kept in %s.", qPrintable(m_folder.path()));
    }
}

void tst_EndToEnd::start()
{
    m_program.setWorkingDirectory(file(QStringLiteral("editor")));
    m_program.start(file(QStringLiteral("editor/corvalence")), {});
    QVERIFY(waitForActive(title));
    m_window = desktop::activeWindow();
    m_map = std::make_unique<FormMap>(desktop::size(m_window));
}

void tst_EndToEnd::enter(const QString &value)
{
    press({QStringLiteral("ctrl+a")});
    type(value);
    press({tab});
}

void tst_EndToEnd::pickColor(const QString &color)
{
    press({space});
    QVERIFY(waitForActive(QStringLiteral("Choose a Color")));
    if (color.isEmpty()) {
        press({QStringLiteral("Escape")});
    } else {
        press({QStringLiteral("alt+h")});
        type(color);
        press({returnKey});
    }
    QVERIFY(waitForActive(title));
    press({tab});
}

void tst_EndToEnd::answerFileDialog(const QString &dialog, const QString &path)
{
    QVERIFY2(waitForActive(dialog), qPrintable(desktop::activeTitle()));
    type(path);
    press({returnKey});
}

void tst_EndToEnd::clickAndAnswer(const char *button, const QString &dialog, const QString &path)
{
    desktop::click(m_window, m_map->target(button));
    STEP(answerFileDialog(dialog, path));
    QVERIFY(waitForActive(title));
}

void tst_EndToEnd::saveEverything(const QString &name)
{
    desktop::click(m_window, m_map->target("pngSizeSpinBox"));
    press({QStringLiteral("ctrl+a")});
    type(QStringLiteral("512"));
    const QString path = file(name);
    STEP(clickAndAnswer("saveButton", QStringLiteral("Save Gauge"), path));
    STEP(clickAndAnswer("savePNGButton", QStringLiteral("Save PNG"), path));
    STEP(clickAndAnswer("saveSVGButton", QStringLiteral("Save SVG"), path));
    STEP(clickAndAnswer("saveKeyFrameButton", QStringLiteral("Save Keyframes CSV"), path));
    // Twice the nine ticks of a layer, a header, and nothing after the last carriage return.
    QTRY_COMPARE_WITH_TIMEOUT(contents(path + QLatin1String(".csv")).split('\r').size(), 20, patience);
    QTRY_VERIFY_WITH_TIMEOUT(contents(path + QLatin1String(".svg")).trimmed().endsWith("</svg>"), patience);
    QTRY_COMPARE_WITH_TIMEOUT(QImage(path + QLatin1String(".png")).size(), QSize(512, 512), patience);
    QTRY_VERIFY_WITH_TIMEOUT(!savedLayer(path + QLatin1String(".gauge"), 1).isEmpty(), patience);
}

QJsonObject tst_EndToEnd::savedLayer(const QString &path, int index) const
{
    return QJsonDocument::fromJson(contents(path))
        .object()
        .value(QLatin1String("layers"))
        .toArray()
        .at(index)
        .toObject();
}

void tst_EndToEnd::photographPreview(const QString &path) const
{
    desktop::photograph(m_window, blackPreview(), path);
}

void tst_EndToEnd::tabbingReachesTheSweep()
{
    desktop::click(m_window, m_map->target("gaugeStartAngleSpinBox"));
    enter(QStringLiteral("-135.25"));
    enter(QStringLiteral("270.5"));
    enter(QStringLiteral("0.35"));
    press({QStringLiteral("Down"), tab}); // from "Exponential" to "Midpoint"
}

void tst_EndToEnd::tabbingReachesTheRings()
{
    const QList<QStringList> rings{{QStringLiteral("8"), QStringLiteral("3.5"), QStringLiteral("0.811"),
                                    QStringLiteral("0.971"), QStringLiteral("#ff8001")},
                                   {QStringLiteral("4"), QStringLiteral("2.25"), QStringLiteral("0.862"),
                                    QStringLiteral("0.972"), QStringLiteral("#80ff02")},
                                   {QStringLiteral("3"), QStringLiteral("0.75"), QStringLiteral("0.913"),
                                    QStringLiteral("0.973"), QStringLiteral("#8003ff")}};
    for (const QStringList &ring : rings) {
        for (int control = 0; control < 4; ++control)
            enter(ring.at(control));
        STEP(pickColor(ring.at(4)));
    }
    press({space, tab}); // rounded ends of the ticks
}

void tst_EndToEnd::tabbingReachesTheArcs()
{
    const QList<QStringList> arcs{{QStringLiteral("-135"), QStringLiteral("100.125"), QStringLiteral("0.991"),
                                   QStringLiteral("4.5"), QStringLiteral("#11aa11")},
                                  {QStringLiteral("-35"), QStringLiteral("90.25"), QStringLiteral("0.992"),
                                   QStringLiteral("5.5"), QStringLiteral("#aaaa22")},
                                  {QStringLiteral("55"), QStringLiteral("80.375"), QStringLiteral("0.993"),
                                   QStringLiteral("6.5"), QStringLiteral("#aa3333")},
                                  {QStringLiteral("160"), QStringLiteral("40.5"), QStringLiteral("0.444"),
                                   QStringLiteral("7.5"), QString()}};
    for (const QStringList &arc : arcs) {
        for (int control = 0; control < 4; ++control)
            enter(arc.at(control));
        STEP(pickColor(arc.at(4)));
    }
    press({space, tab}); // rounded ends of the arcs
}

void tst_EndToEnd::tabbingReachesTheLabels()
{
    enter(QStringLiteral("0.655"));
    enter(QStringLiteral("-20"));
    enter(QStringLiteral("1"));
    enter(QStringLiteral("2.5")); // only now does the increment take a decimal
    STEP(pickColor(QStringLiteral("#abcdef")));
    press({tab}); // "Show Tick Counts" stays
    press({space, tab, space, tab});
    press({space});
    QVERIFY2(waitForActive(QStringLiteral("Select Font")), qPrintable(desktop::activeTitle()));
    press({QStringLiteral("alt+s"), QStringLiteral("ctrl+a")});
    type(QStringLiteral("14"));
    press({returnKey});
    QVERIFY(waitForActive(title));
    press({tab});
}

void tst_EndToEnd::tabbingReachesTheExports()
{
    press({space});
    STEP(answerFileDialog(QStringLiteral("Save SVG"), file(QStringLiteral("first.svg"))));
    QVERIFY(waitForActive(title));
    press({tab, space});
    STEP(answerFileDialog(QStringLiteral("Save PNG"), file(QStringLiteral("first"))));
    QVERIFY(waitForActive(title));
    press({tab});
    enter(QStringLiteral("300"));
    press({space});
    STEP(answerFileDialog(QStringLiteral("Save Keyframes CSV"), file(QStringLiteral("first.csv"))));
    QVERIFY(waitForActive(title));
    press({tab});
    QTRY_VERIFY_WITH_TIMEOUT(contents(file(QStringLiteral("first.svg"))).trimmed().endsWith("</svg>"),
                             patience);
    QTRY_COMPARE_WITH_TIMEOUT(QImage(file(QStringLiteral("first.png"))).size(), QSize(512, 512), patience);
}

void tst_EndToEnd::tabbingReachesTheReference()
{
    const auto middleOfTheFace = [this] {
        const QString path = file(QStringLiteral("seen.png"));
        photographPreview(path);
        return QImage(path).pixelColor(200, 256);
    };
    press({space});
    STEP(answerFileDialog(QStringLiteral("Load Reference Image (512x512)"),
                          file(QStringLiteral("reference.png"))));
    QVERIFY(waitForActive(title));
    QTRY_COMPARE_WITH_TIMEOUT(middleOfTheFace(), QColor(200, 0, 200), patience);
    press({tab, space});
    QTRY_COMPARE_WITH_TIMEOUT(middleOfTheFace(), QColor(Qt::black), patience);
    press({tab});
}

void tst_EndToEnd::tabbingReachesTheLayers()
{
    press({QStringLiteral("F2"), QStringLiteral("ctrl+a")});
    type(QStringLiteral(" Front, \"left\" "));
    press({returnKey, tab, space});
    QVERIFY2(waitForActive(QStringLiteral("New Layer")), qPrintable(desktop::activeTitle()));
    type(QStringLiteral("Not wanted"));
    press({returnKey});
    QVERIFY(waitForActive(title));
    // Back to the list, down to the new layer, and remove it.
    press({QStringLiteral("shift+Tab"), QStringLiteral("Down"), tab, tab, space, tab, space});
    STEP(answerFileDialog(QStringLiteral("Save Layer As Preset"), QStringLiteral("Dial")));
    QVERIFY(waitForActive(title));
    QTRY_COMPARE_WITH_TIMEOUT(savedLayer(file(QStringLiteral("editor/Presets/Dial.gauge")), 0)
                                  .value(QLatin1String("name"))
                                  .toString(),
                              QStringLiteral("Front, \"left\""), patience);
    press({tab});
}

void tst_EndToEnd::tabbingReachesThePresetsAndFiles()
{
    // The only preset is the one just saved.
    press({space, returnKey});
    QVERIFY2(waitForActive(QStringLiteral("Load Gauge")), qPrintable(desktop::activeTitle()));
    press({returnKey}); // add as new layers
    QVERIFY(waitForActive(title));
    press({tab, space});
    STEP(answerFileDialog(QStringLiteral("Save Gauge"), file(QStringLiteral("first.gauge"))));
    QVERIFY(waitForActive(title));
    press({tab, space});
    QVERIFY2(waitForActive(QStringLiteral("Load Gauge")), qPrintable(desktop::activeTitle()));
    press({QStringLiteral("Escape")});
    QVERIFY(waitForActive(title));
    QTRY_VERIFY_WITH_TIMEOUT(!savedLayer(file(QStringLiteral("first.gauge")), 1).isEmpty(), patience);
}

void tst_EndToEnd::savedWhatWasTyped()
{
    const QString path = file(QStringLiteral("first.gauge"));
    QJsonObject layer = savedLayer(path, 0);
    QCOMPARE(savedLayer(path, 1), layer); // the preset
    QVERIFY(savedLayer(path, 2).isEmpty());

    // The family is that of the application's own font, which the font button starts with.
    QJsonObject ticks = layer.value(QLatin1String("ticks")).toObject();
    QJsonObject font = ticks.value(QLatin1String("font")).toObject();
    QVERIFY(!font.take(QLatin1String("family")).toString().isEmpty());
    ticks.insert(QLatin1String("font"), font);
    layer.insert(QLatin1String("ticks"), ticks);
    const QByteArray expected = R"({
        "name": "Front, \"left\"",
        "gauge": {"startAngle": -135.25, "angleLength": 270.5, "bias": 0.35, "midpointBias": true,
                  "roundedTickCaps": true, "roundedArcCaps": true},
        "divisions": [
            {"count": 8, "innerRadius": 0.811, "outerRadius": 0.971, "width": 3.5, "color": "#ff8001"},
            {"count": 4, "innerRadius": 0.862, "outerRadius": 0.972, "width": 2.25, "color": "#80ff02"},
            {"count": 3, "innerRadius": 0.913, "outerRadius": 0.973, "width": 0.75, "color": "#8003ff"}],
        "arcs": [
            {"startAngle": -135, "angleLength": 100.125, "radius": 0.991, "width": 4.5, "color": "#11aa11"},
            {"startAngle": -35, "angleLength": 90.25, "radius": 0.992, "width": 5.5, "color": "#aaaa22"},
            {"startAngle": 55, "angleLength": 80.375, "radius": 0.993, "width": 6.5, "color": "#aa3333"},
            {"startAngle": 160, "angleLength": 40.5, "radius": 0.444, "width": 7.5, "color": "#000000"}],
        "ticks": {"enabled": true, "start": -20, "increment": 2.5, "decimalPlaces": 1, "radius": 0.655,
                  "rotate": true, "skipFirst": true, "color": "#abcdef",
                  "font": {"pointSize": 14, "bold": false, "italic": false}}})";
    QCOMPARE(layer, QJsonDocument::fromJson(expected).object());
}

void tst_EndToEnd::tabulatedWhatWasTyped()
{
    // Nine ticks at t = i / 8: the curve is 2 (1 - t) t k + t t with k = 2 x 0.35 - 0.5 = 0.2.
    const QList<QByteArray> lines = contents(file(QStringLiteral("first.csv"))).split('\r');
    QCOMPARE(lines.size(), 11);
    QCOMPARE(lines.first(), QByteArray("Layer,Tick,Angle"));
    QCOMPARE(lines.last(), QByteArray());
    for (int i = 0; i <= 8; ++i) {
        const QByteArray line = lines.at(i + 1);
        const double t = i / 8.0;
        const double angle = -135.25 + 270.5 * (0.4 * (1.0 - t) * t + t * t);
        QCOMPARE(line.split(',').first(), QByteArray("Layer 1")); // not yet renamed
        QCOMPARE(line.split(',').at(1).toDouble(), -20.0 + 2.5 * i);
        QVERIFY2(std::abs(line.split(',').at(2).toDouble() - angle) < 1e-9, line.constData());
    }
}

void tst_EndToEnd::exportsWhatItShows()
{
    STEP(saveEverything(QStringLiteral("before")));
    photographPreview(file(QStringLiteral("before-seen.png")));
    // The picture's background is transparent; that of the preview is black.
    QImage onBlack(512, 512, QImage::Format_RGB32);
    onBlack.fill(Qt::black);
    QPainter(&onBlack).drawImage(0, 0, QImage(file(QStringLiteral("before.png"))));
    const QPoint corner = m_map->rect("preview").topLeft();
    QVERIFY(
        onBlack.copy(blackPreview().translated(-corner)).save(file(QStringLiteral("before-onblack.png"))));
    QCOMPARE(desktop::differingPixels(file(QStringLiteral("before-seen.png")),
                                      file(QStringLiteral("before-onblack.png")), lettersOnScreen),
             0);
}

void tst_EndToEnd::closingEndsTheProgram()
{
    press({QStringLiteral("alt+F4")});
    QVERIFY(m_program.waitForFinished(patience));
    QCOMPARE(m_program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(m_program.exitCode(), 0);
}

void tst_EndToEnd::savesTheSameAfterARestart()
{
    STEP(start());
    // The first layer is as it comes, so it is overwritten without a question.
    STEP(clickAndAnswer("loadButton", QStringLiteral("Load Gauge"), file(QStringLiteral("before.gauge"))));
    STEP(saveEverything(QStringLiteral("after")));
    for (const char *suffix : {".gauge", ".png", ".svg", ".csv"}) {
        QCOMPARE(contents(file(QLatin1String("after") + QLatin1String(suffix))),
                 contents(file(QLatin1String("before") + QLatin1String(suffix))));
    }
}

void tst_EndToEnd::showsTheSameAfterARestart()
{
    desktop::click(m_window,
                   m_map->target("clearReferenceButton")); // with it goes the text behind the preview
    const auto difference = [this] {
        photographPreview(file(QStringLiteral("after-seen.png")));
        return desktop::differingPixels(file(QStringLiteral("before-seen.png")),
                                        file(QStringLiteral("after-seen.png")), 0);
    };
    QTRY_COMPARE_WITH_TIMEOUT(difference(), 0, patience);
}

void tst_EndToEnd::takesTheMouse()
{
    desktop::click(m_window, m_map->upArrow("gaugeStartAngleSpinBox"));
    desktop::click(m_window, m_map->target("roundedTickCapsCheckBox"));
    desktop::click(m_window, m_map->row(1), 2);
    type(QStringLiteral("Back"));
    press({returnKey});
    desktop::click(m_window, m_map->target("tickCountCheckBox"));
    STEP(clickAndAnswer("saveButton", QStringLiteral("Save Gauge"), file(QStringLiteral("mouse.gauge"))));

    // One step further, without round ends; and the other layer renamed, without labels.
    const auto changed = [](QJsonObject layer, const char *part, const char *key, const QJsonValue &value) {
        QJsonObject object = layer.value(QLatin1String(part)).toObject();
        object.insert(QLatin1String(key), value);
        layer.insert(QLatin1String(part), object);
        return layer;
    };
    const QJsonObject before = savedLayer(file(QStringLiteral("before.gauge")), 0);
    const QJsonObject first =
        changed(changed(before, "gauge", "startAngle", -134.25), "gauge", "roundedTickCaps", false);
    QJsonObject second = changed(before, "ticks", "enabled", false);
    second.insert(QLatin1String("name"), QStringLiteral("Back"));
    QTRY_COMPARE_WITH_TIMEOUT(savedLayer(file(QStringLiteral("mouse.gauge")), 0), first, patience);
    QCOMPARE(savedLayer(file(QStringLiteral("mouse.gauge")), 1), second);
}

void tst_EndToEnd::refusesABrokenFile()
{
    QFile broken(file(QStringLiteral("broken.gauge")));
    QVERIFY(broken.open(QIODevice::WriteOnly));
    broken.write("Round the face, the ticks, the ticks");
    broken.close();
    desktop::click(m_window, m_map->target("loadButton"));
    STEP(answerFileDialog(QStringLiteral("Load Gauge"), broken.fileName()));
    QVERIFY2(waitForActive(QStringLiteral("Unable to load gauge")), qPrintable(desktop::activeTitle()));
    press({returnKey});
    QVERIFY(waitForActive(title));
    STEP(clickAndAnswer("saveButton", QStringLiteral("Save Gauge"), file(QStringLiteral("unchanged.gauge"))));
    QTRY_COMPARE_WITH_TIMEOUT(contents(file(QStringLiteral("unchanged.gauge"))),
                              contents(file(QStringLiteral("mouse.gauge"))), patience);
}

QTEST_MAIN(tst_EndToEnd)
#include "tst_endtoend.moc"
