#include "tst_endtoend.h"

#include "desktop.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QPainter>

#include <cmath>

using desktop::press;
using desktop::type;
using desktop::waitForActive;

namespace {

/// Letters are blended onto the opaque screen otherwise than into a transparent picture, by less than this. A
/// line that is missing or out of place is worth more. Per cent.
constexpr int lettersOnScreen = 30;

} // namespace

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

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
    m_program.setStandardErrorFile(file(QStringLiteral("printed")));
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
        const QByteArray &line = lines.at(i + 1);
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
    QCOMPARE(contents(file(QStringLiteral("printed"))), QByteArray());
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

void tst_EndToEnd::printsOnlyThatAPictureCannotBeRead()
{
    STEP(clickAndAnswer("loadReferenceButton", QStringLiteral("Load Reference Image (512x512)"),
                        file(QStringLiteral("broken.gauge"))));
    QTRY_COMPARE_WITH_TIMEOUT(contents(file(QStringLiteral("printed"))),
                              QByteArray("Failed to load image.\n"), patience);
}

QTEST_MAIN(tst_EndToEnd)
