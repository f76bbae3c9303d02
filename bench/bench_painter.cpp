// The painter beside the bare Qt calls that it makes, on screen and on what it exports to.

#include "barecalls.h"
#include "compare.h"
#include "layers.h"
#include "render/gaugepainter.h"
#include "render/renderarea.h"

#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <QPdfWriter>
#include <QPixmap>
#include <QSvgGenerator>

#include <memory>
#include <utility>
#include <vector>

namespace {

constexpr int side = 512;

/// Paints with the program's painter.
class Ours
{
public:
    explicit Ours(const gaugeData &layer)
        : m_layers{layer}
    {
    }
    void operator()(QPainter &painter) const { paintGauge(painter, side, m_layers); }

private:
    QList<gaugeData> m_layers;
};

/// Paints with the bare calls.
class Bare
{
public:
    explicit Bare(const gaugeData &layer)
        : m_calls(std::make_shared<BareCalls>(layer))
    {
    }
    void operator()(QPainter &painter) const { m_calls->make(painter, side); }

private:
    std::shared_ptr<BareCalls> m_calls;
};

QImage onImage(const auto &paint)
{
    QImage image(side, side, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    paint(painter);
    return image;
}

QByteArray asSvg(const auto &paint)
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

QByteArray asPdf(const auto &paint)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    writer.setResolution(96);
    QPainter painter(&writer);
    paint(painter);
    painter.end();
    return buffer.data();
}

/// The PDF without the second in which it was made.
QByteArray dateless(QByteArray pdf)
{
    const qsizetype start = pdf.indexOf("/CreationDate");
    return pdf.remove(start, pdf.indexOf('\n', start) - start);
}

/// A widget that shows the bare calls, as little as a widget can be.
class BareWidget : public QWidget
{
public:
    explicit BareWidget(const gaugeData &layer)
        : m_paint(layer)
    {
    }

protected:
    void paintEvent(QPaintEvent * /*event*/) override
    {
        QPainter painter(this);
        m_paint(painter);
    }

private:
    Bare m_paint;
};

/// What a widget shows, painted as a window paints its children.
QPixmap onScreen(QWidget &widget)
{
    QPixmap pixmap(side, side);
    pixmap.fill(Qt::transparent);
    widget.render(&pixmap, QPoint(), QRegion(), QWidget::RenderFlags());
    return pixmap;
}

std::shared_ptr<QWidget> ourWidget(const gaugeData &layer)
{
    auto widget = std::make_shared<RenderArea>();
    widget->layers = {layer};
    widget->resize(side, side);
    return widget;
}

std::shared_ptr<QWidget> bareWidget(const gaugeData &layer)
{
    auto widget = std::make_shared<BareWidget>(layer);
    widget->resize(side, side);
    return widget;
}

bool drawAlike(const gaugeData &layer)
{
    const Ours ours(layer);
    const Bare bare(layer);
    return onImage(ours) == onImage(bare) && asSvg(ours) == asSvg(bare) &&
           dateless(asPdf(ours)) == dateless(asPdf(bare)) &&
           onScreen(*ourWidget(layer)).toImage() == onScreen(*bareWidget(layer)).toImage();
}

void compareOn(const std::string &device, const std::string &name, const gaugeData &layer, auto draw)
{
    const auto with = [draw](auto paint) { return [draw, paint] { benchmark::DoNotOptimize(draw(paint)); }; };
    compare(
        "paint/" + device + '/' + name, [layer, with] { return with(Ours(layer)); },
        [layer, with] { return with(Bare(layer)); });
}

void compareOnScreen(const std::string &name, const gaugeData &layer)
{
    const auto show = [](const std::shared_ptr<QWidget> &widget) {
        return [widget] { benchmark::DoNotOptimize(onScreen(*widget)); };
    };
    compare(
        "paint/screen/" + name, [layer, show] { return show(ourWidget(layer)); },
        [layer, show] { return show(bareWidget(layer)); });
}

} // namespace

bool registerBenchmarks()
{
    const auto image = [](const auto &paint) { return onImage(paint); };
    constexpr int dense = 100'000;
    const std::vector<std::pair<std::string, gaugeData>> layers{{"default", gaugeData()},
                                                                {"typical", typicalLayer()},
                                                                {"turned", turnedLayer()},
                                                                {"dense", denseLayer(dense)},
                                                                {"denseBiased", denseBiasedLayer(dense)}};
    for (const auto &[name, layer] : layers) {
        if (!drawAlike(layer))
            return false;
        compareOnScreen(name, layer);
        compareOn("image", name, layer, image);
        compareOn("svg", name, layer, [](const auto &paint) { return asSvg(paint); });
        compareOn("pdf", name, layer, [](const auto &paint) { return asPdf(paint); });
    }
    for (const int ticks : {1'000, 10'000, 100'000, 1'000'000})
        compareOn("ticks", std::to_string(ticks), denseLayer(ticks), image);
    return true;
}
