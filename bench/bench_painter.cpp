// The painter beside the bare Qt calls that it makes: the same calls in the same order, their geometry, pens
// and texts worked out beforehand.

#include "gaugedata.h"
#include "gaugepainter.h"

#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <QSvgGenerator>

#include <benchmark/benchmark.h>

#include <array>
#include <cmath>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace {

constexpr int side = 512;

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

gaugeData turnedLayer()
{
    gaugeData layer = typicalLayer();
    layer.tickCountRotate = true;
    return layer;
}

/// 100,000 ticks of one device pixel, the cheapest lines there are.
gaugeData denseLayer()
{
    gaugeData layer;
    layer.angleLength = 360.0;
    layer.divisionCount = {1000, 10, 10};
    layer.tickCountEnabled = false;
    return layer;
}

gaugeData denseBiasedLayer()
{
    gaugeData layer = denseLayer();
    layer.bias = 0.3;
    return layer;
}

struct ArcCall
{
    QPen pen;
    QRectF rectangle;
    int start;
    int span;
};
struct LineCall
{
    const QPen *pen;
    QLineF line;
};
struct TextCall
{
    QPointF anchor;
    double turn;
    QString text;
};
using Call = std::variant<ArcCall, LineCall, TextCall>;

/// What is to be called for one layer.
struct Calls
{
    std::array<QPen, 3> ringPens;
    QPen labelPen;
    QFont labelFont;
    bool labelsTurn = false;
    std::vector<Call> calls;
};

QPen solidPen(const QColor &color, double width)
{
    return {QBrush(color), width, Qt::SolidLine, Qt::FlatCap, Qt::RoundJoin};
}

QPointF pointAt(double distance, double angle)
{
    const double radians = angle * 3.141592653589793 / 180.0;
    return {256.0 + distance * std::cos(radians), 256.0 - distance * std::sin(radians)};
}

/// The calls of a layer with flat caps and an even or "Exponential" bias below a half, and without decimals.
void workOut(const gaugeData &layer, Calls &all)
{
    for (size_t ring = 0; ring < 3; ++ring)
        all.ringPens[ring] = solidPen(layer.divisionColor[ring], layer.divisionLineWidth[ring]);
    all.labelPen = solidPen(layer.tickCountColor, 0.0);
    all.labelFont = layer.tickCountFont;
    all.labelsTurn = layer.tickCountRotate;
    for (size_t arc = 0; arc < 4; ++arc) {
        if (layer.arcAngleLength[arc] == 0.0)
            continue;
        const double radius = 250.0 * layer.arcRadius[arc];
        all.calls.emplace_back(ArcCall{solidPen(layer.arcColor[arc], layer.arcWidth[arc]),
                                       QRectF(256.0 - radius, 256.0 - radius, 2.0 * radius, 2.0 * radius),
                                       int(std::lround((90.0 - layer.arcStartAngle[arc]) * 16.0)),
                                       int(std::lround(-layer.arcAngleLength[arc] * 16.0))});
    }
    const auto angleAt = [&layer](double t) {
        const double biased = layer.bias < 0.5 ? 1.0 - std::pow(1.0 - t, 2.0 * layer.bias) : 1.0 - (1.0 - t);
        return (90.0 - layer.startAngle) - biased * layer.angleLength;
    };
    const auto addTick = [&](size_t ring, double angle) {
        all.calls.emplace_back(LineCall{&all.ringPens[ring],
                                        {pointAt(250.0 * layer.divisionOuterRadius[ring], angle),
                                         pointAt(250.0 * layer.divisionInnerRadius[ring], angle)}});
    };
    const auto [c1, c2, c3] = layer.divisionCount;
    const int ticks = std::abs(layer.angleLength) >= 360.0 ? c1 : c1 + 1;
    for (int i = 0; i < ticks; ++i) {
        const double angle = angleAt(double(i) / c1);
        addTick(0, angle);
        if (layer.tickCountEnabled) {
            all.calls.emplace_back(
                TextCall{pointAt(250.0 * layer.tickCountRadius, angle), 90.0 - angle, QString::number(i)});
        }
        for (int j = 0; c2 > 1 && i < c1 && j < c2; ++j) {
            if (j != 0)
                addTick(1, angleAt((double(j) / c2 + i) / c1));
            for (int k = 1; k < c3; ++k)
                addTick(2, angleAt(((double(k) / c3 + j) / c2 + i) / c1));
        }
    }
}

struct Caller
{
    QPainter &painter;
    const Calls &all;

    void operator()(const ArcCall &call) const
    {
        painter.setPen(call.pen);
        painter.drawArc(call.rectangle, call.start, call.span);
    }
    void operator()(const LineCall &call) const
    {
        painter.setPen(*call.pen);
        painter.drawLines(&call.line, 1);
    }
    void operator()(const TextCall &call) const
    {
        painter.setFont(all.labelFont);
        painter.setPen(all.labelPen);
        if (all.labelsTurn) {
            painter.translate(call.anchor);
            painter.rotate(call.turn);
            painter.drawText(QRectF(-50.0, -50.0, 100.0, 100.0), Qt::AlignCenter, call.text);
            painter.rotate(-call.turn);
            painter.translate(-call.anchor);
        } else {
            painter.drawText(QRectF(call.anchor.x() - 50.0, call.anchor.y() - 50.0, 100.0, 100.0),
                             Qt::AlignCenter, call.text);
        }
    }
};

void makeBareCalls(QPainter &painter, const Calls &all)
{
    painter.setPen(solidPen(Qt::white, 0.0));
    painter.setBrush(QBrush(Qt::white, Qt::NoBrush));
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(1.0, 1.0);
    painter.setBrush(QBrush(Qt::white, Qt::SolidPattern));
    painter.drawEllipse(QRectF(253.0, 253.0, 6.0, 6.0));
    painter.setBrush(QBrush(Qt::white, Qt::NoBrush));
    const Caller caller{painter, all};
    for (const Call &call : all.calls)
        std::visit(caller, call);
}

/// The two ways to paint, as functions that a profiler can count alone.
[[gnu::noinline]] void paintWithGaugePainter(QPainter &painter, const QList<gaugeData> &layers)
{
    paintGauge(painter, side, layers);
}

[[gnu::noinline]] void paintWithBareCalls(QPainter &painter, const Calls &all)
{
    makeBareCalls(painter, all);
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

enum class Device { Image, Svg };
enum class Way { GaugePainter, BareCalls };

void painting(benchmark::State &state, const gaugeData &layer, Device device, Way way)
{
    const QList<gaugeData> layers{layer};
    Calls calls;
    workOut(layer, calls);
    // A comparison of two different drawings would be worth nothing. (It fills Qt's caches besides.)
    const auto gauge = [&](QPainter &painter) { paintGauge(painter, side, layers); };
    const auto bare = [&](QPainter &painter) { makeBareCalls(painter, calls); };
    if (onImage(gauge) != onImage(bare) || asSvg(gauge) != asSvg(bare))
        state.SkipWithError("the bare calls draw something else");

    const auto paint = [&](QPainter &painter) {
        if (way == Way::GaugePainter)
            paintWithGaugePainter(painter, layers);
        else
            paintWithBareCalls(painter, calls);
    };
    for (auto _ : state) {
        if (device == Device::Image)
            benchmark::DoNotOptimize(onImage(paint));
        else
            benchmark::DoNotOptimize(asSvg(paint));
    }
}

const int registered = [] {
    const std::vector<std::pair<std::string, gaugeData>> layers{{"default", gaugeData()},
                                                                {"typical", typicalLayer()},
                                                                {"turned", turnedLayer()},
                                                                {"dense", denseLayer()},
                                                                {"denseBiased", denseBiasedLayer()}};
    for (const auto &[name, layer] : layers) {
        for (const auto &[deviceName, device] :
             {std::pair("image", Device::Image), std::pair("svg", Device::Svg)}) {
            for (const auto &[wayName, way] :
                 {std::pair("painting", Way::GaugePainter), std::pair("paintingBare", Way::BareCalls)}) {
                benchmark::RegisterBenchmark((std::string(wayName) + '/' + deviceName + '/' + name).c_str(),
                                             painting, layer, device, way)
                    ->Unit(benchmark::kMicrosecond);
            }
        }
    }
    return 0;
}();

} // namespace
