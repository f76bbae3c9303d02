// The part of the session that is done by keyboard alone, in the order of the tab key: each value is one of
// its own, so that the saved file tells whether it reached the control that it was meant for.

#include "tst_endtoend.h"

#include "desktop.h"

#include <QColor>
#include <QImage>

using desktop::press;
using desktop::type;
using desktop::waitForActive;

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
