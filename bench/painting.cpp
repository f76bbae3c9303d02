// paintGauge() and the preview widget compared with the bare Qt calls.

#include "barecalls.h"
#include "compare.h"
#include "model/gaugedata.h"
#include "render/gaugepainter.h"
#include "render/renderarea.h"

#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QSvgGenerator>

#include <cstdio>
#include <cstdlib>

namespace {

constexpr int side = 512;

/// 270 degrees, 101 ticks of three rings, three wide arcs, bold labels.
gaugeData typicalLayer()
{
    gaugeData layer;
    layer.startAngle = -135.0;
    layer.angleLength = 270.0;
    layer.divisionCount = {10, 2, 5};
    layer.divisionLineWidth = {4.0, 2.0, 1.0};
    layer.arcAngleLength = {150.0, 60.0, 60.0, 0.0};
    layer.arcStartAngle = {-135.0, 15.0, 75.0, 0.0};
    layer.arcWidth = {12.0, 12.0, 12.0, 0.0};
    layer.tickCountFont.setBold(true);
    return layer;
}

/// 100,000 ticks one pixel wide without labels, the cheapest lines, so that the painter's own work counts
/// most.
gaugeData denseLayer(double bias)
{
    gaugeData layer;
    layer.angleLength = 360.0;
    layer.bias = bias;
    layer.divisionCount = {1000, 10, 10};
    layer.tickCountEnabled = false;
    return layer;
}

template <typename Paint>
QImage onImage(const Paint &paint)
{
    QImage image(side, side, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    paint(painter);
    return image;
}

template <typename Paint>
QByteArray asSvg(const Paint &paint)
{
    QBuffer buffer;
    QSvgGenerator generator;
    generator.setOutputDevice(&buffer);
    generator.setSize(QSize(side, side));
    generator.setViewBox(QRect(0, 0, side, side));
    QPainter painter(&generator);
    paint(painter);
    painter.end();
    return buffer.data();
}

/// A widget that only makes the bare calls.
class BareWidget : public QWidget
{
public:
    explicit BareWidget(const BareCalls &calls)
        : m_calls(calls)
    {
    }

protected:
    void paintEvent(QPaintEvent * /*event*/) override
    {
        QPainter painter(this);
        m_calls.draw(painter, side);
    }

private:
    const BareCalls &m_calls;
};

/// Paints a widget as a window paints its children.
QImage onScreen(QWidget &widget)
{
    QPixmap pixmap(side, side);
    pixmap.fill(Qt::transparent);
    widget.render(&pixmap, QPoint(), QRegion(), QWidget::RenderFlags());
    return pixmap.toImage();
}

void compareLayer(const std::string &name, const gaugeData &layer)
{
    const BareCalls calls(layer);
    const auto ours = [&](QPainter &painter) { paintGauge(painter, side, {layer}); };
    const auto bare = [&](QPainter &painter) { calls.draw(painter, side); };
    RenderArea area;
    area.layers = {layer};
    area.resize(side, side);
    BareWidget widget(calls);
    widget.resize(side, side);

    if (onImage(ours) != onImage(bare) || asSvg(ours) != asSvg(bare) || onScreen(area) != onScreen(widget)) {
        std::fprintf(stderr, "The bare calls draw something else: %s\n", name.c_str());
        std::exit(1);
    }
    compare(
        name + ", preview", [&] { (void)onScreen(area); }, [&] { (void)onScreen(widget); });
    compare(
        name + ", image", [&] { (void)onImage(ours); }, [&] { (void)onImage(bare); });
    compare(
        name + ", SVG", [&] { (void)asSvg(ours); }, [&] { (void)asSvg(bare); });
}

} // namespace

void benchPainting()
{
    std::puts("\n| Drawing | ours, ms | bare Qt calls, ms | ratio |\n|---|---:|---:|---:|");
    compareLayer("typical layer", typicalLayer());
    compareLayer("100,000 ticks", denseLayer(0.5));
    compareLayer("100,000 ticks with a bias", denseLayer(0.3));
}
