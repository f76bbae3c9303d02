#include "render/gaugepainter.h"
#include "render/renderarea.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QPainter>
#include <QTest>

#include <functional>

namespace {

using Action = std::function<void(RenderArea &)>;

gaugeData layerStartingAt(double angle)
{
    gaugeData layer;
    layer.startAngle = angle;
    layer.angleLength = 200.0;
    layer.divisionCount = {5, 2, 2};
    layer.divisionLineWidth = {3.0, 1.5, 0.0};
    layer.arcWidth[0] = 9.0;
    layer.tickCountColor = QColor(10, 20, 30, 40);
    return layer;
}

/// What the widget shows on a transparent picture.
QImage shown(RenderArea &area)
{
    QImage image(area.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    area.render(&image, QPoint(), QRegion(), QWidget::RenderFlags());
    return image;
}

/// The stack painted at scale 1 on a transparent picture.
QImage painted(const QList<gaugeData> &layers, const QSize &size)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    paintGauge(painter, 512, layers);
    return image;
}

/// Counts the paint events of a widget.
class PaintCounter : public QObject
{
public:
    int paints = 0;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            ++paints;
        return QObject::eventFilter(watched, event);
    }
};

} // namespace

/// What the preview shows, and when.
class tst_Preview : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void repaints_data();
    void repaints();
    void setterAloneChangesNothingVisible();
    void savedEditIsVisible();
    void emptyStackShowsOnlyTheDot();
    void showsWhatThePainterPaints();
    void resizingDoesNotScale();
    void paintsTheStackOnAnyPainter();
};

void tst_Preview::repaints_data()
{
    QTest::addColumn<Action>("act");
    QTest::addColumn<bool>("repaint");
    const auto row = [](const char *name, const Action &act, bool repaint = true) {
        QTest::newRow(name) << act << repaint;
    };
    row("setAngles", [](RenderArea &a) { a.setAngles(1.0, 2.0, 0.5, false); });
    row("setRoundCaps", [](RenderArea &a) { a.setRoundCaps(true, true); });
    row("setDivisions1", [](RenderArea &a) { a.setDivisions1(1, 0.1, 0.2, 0.0); });
    row("setDivisions2", [](RenderArea &a) { a.setDivisions2(1, 0.1, 0.2, 0.0); });
    row("setDivisions3", [](RenderArea &a) { a.setDivisions3(1, 0.1, 0.2, 0.0); });
    row("setArc1", [](RenderArea &a) { a.setArc1(1.0, 2.0, 0.1, 0.0); });
    row("setArc2", [](RenderArea &a) { a.setArc2(1.0, 2.0, 0.1, 0.0); });
    row("setArc3", [](RenderArea &a) { a.setArc3(1.0, 2.0, 0.1, 0.0); });
    row("setArc4", [](RenderArea &a) { a.setArc4(1.0, 2.0, 0.1, 0.0); });
    row("setTickCounts", [](RenderArea &a) { a.setTickCounts(true, 0.0, 1.0, 0, 0.7, false, false); });
    row("manualRedraw", [](RenderArea &a) { a.manualRedraw(); });
    row("loadLayer", [](RenderArea &a) { a.loadLayer(0); });
    row(
        "loadLayer of no row", [](RenderArea &a) { a.loadLayer(-1); }, false);
    row(
        "saveLayerData", [](RenderArea &a) { a.saveLayerData(0); }, false);
    row(
        "defaultGauge", [](RenderArea &a) { a.defaultGauge(); }, false);
}

void tst_Preview::repaints()
{
    QFETCH(const Action, act);
    QFETCH(const bool, repaint);
    QWidget window;
    auto *area = new RenderArea(&window);
    area->layers.append(gaugeData());
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QCoreApplication::processEvents();

    PaintCounter counter;
    area->installEventFilter(&counter);
    act(*area);
    // Only scheduled, not done at once.
    QCOMPARE(counter.paints, 0);
    QCoreApplication::processEvents();
    QCOMPARE(counter.paints, repaint ? 1 : 0);
}

void tst_Preview::setterAloneChangesNothingVisible()
{
    RenderArea area(nullptr);
    area.resize(512, 512);
    area.layers = {gaugeData()};
    const QImage before = shown(area);
    area.setAngles(90.0, 45.0, 0.5, false);
    area.setArc1(10.0, 300.0, 0.5, 30.0, Qt::red);
    QCOMPARE(shown(area), before);
}

void tst_Preview::savedEditIsVisible()
{
    RenderArea area(nullptr);
    area.resize(512, 512);
    area.layers = {gaugeData()};
    const QImage before = shown(area);
    area.setArc1(10.0, 300.0, 0.5, 30.0, Qt::red);
    area.saveLayerData(0);
    QVERIFY(shown(area) != before);
    QCOMPARE(shown(area), painted({area.workingLayer}, QSize(512, 512)));
}

void tst_Preview::emptyStackShowsOnlyTheDot()
{
    RenderArea area(nullptr);
    area.resize(512, 512);
    area.workingLayer = layerStartingAt(10.0);
    const QImage image = shown(area);
    QCOMPARE(image.pixelColor(256, 256), QColor(Qt::white));
    for (int y = 0; y < 512; ++y) {
        for (int x = 0; x < 512; ++x)
            QVERIFY(QRect(252, 252, 8, 8).contains(x, y) || image.pixelColor(x, y).alpha() == 0);
    }
}

void tst_Preview::showsWhatThePainterPaints()
{
    RenderArea area(nullptr);
    area.resize(512, 512);
    area.layers = {layerStartingAt(-100.0), gaugeData()};
    QCOMPARE(shown(area), painted(area.layers, QSize(512, 512)));
}

void tst_Preview::resizingDoesNotScale()
{
    RenderArea area(nullptr);
    area.layers = {layerStartingAt(-100.0)};
    for (const QSize &size : {QSize(800, 700), QSize(300, 400), QSize(100, 100)}) {
        area.resize(size);
        QCOMPARE(shown(area), painted(area.layers, size));
    }
}

void tst_Preview::paintsTheStackOnAnyPainter()
{
    RenderArea area(nullptr);
    area.layers = {layerStartingAt(-100.0)};
    area.workingLayer = layerStartingAt(50.0);
    QImage image(512, 512, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    area.paint(painter, 512);
    painter.end();
    QCOMPARE(image, painted(area.layers, QSize(512, 512)));
}

ADD_TEST_CLASS(tst_Preview)
#include "tst_preview.moc"
