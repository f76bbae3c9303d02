#include "dial.h"

#include "render/gaugepainter.h"

#include <QPainter>

#include <cmath>

QList<RecordedCall> paintedCalls(const QList<gaugeData> &layers, int size)
{
    RecordingDevice device(size);
    QPainter painter(&device);
    paintGauge(painter, size, layers);
    painter.end();
    return device.calls();
}

QList<RecordedCall> bareCalls(const std::function<void(QPainter &)> &draw, int size)
{
    RecordingDevice device(size);
    QPainter painter(&device);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size / 512.0, size / 512.0);
    painter.setBrush(QBrush(Qt::white, Qt::NoBrush));
    draw(painter);
    painter.end();
    return device.calls();
}

QList<RecordedCall> ofKind(RecordedCall::Kind kind, const QList<RecordedCall> &calls)
{
    QList<RecordedCall> found;
    for (const RecordedCall &call : calls) {
        if (call.kind == kind)
            found.append(call);
    }
    return found;
}

QList<RecordedCall> paintedLines(const gaugeData &layer)
{
    return ofKind(RecordedCall::Kind::Line, paintedCalls({layer}));
}

QStringList paintedTexts(const gaugeData &layer)
{
    QStringList texts;
    const QList<RecordedCall> calls = ofKind(RecordedCall::Kind::Text, paintedCalls({layer}));
    for (const RecordedCall &call : calls)
        texts.append(call.text);
    return texts;
}

gaugeData ticksOnly()
{
    gaugeData layer;
    layer.arcAngleLength = {0.0, 0.0, 0.0, 0.0};
    layer.tickCountEnabled = false;
    layer.divisionColor = {Qt::red, Qt::green, Qt::blue};
    return layer;
}

gaugeData busyLayer(bool heavy)
{
    gaugeData layer;
    layer.divisionCount = {3, 2, 2};
    layer.arcAngleLength = {120.0, 360.0, -50.0, 1.0};
    if (heavy) {
        layer.divisionLineWidth = {3.0, 0.5, 7.0};
        layer.arcWidth = {10.0, 0.5, 20.0, 2.0};
        layer.roundedArcCaps = layer.roundedTickCaps = layer.tickCountRotate = true;
    }
    return layer;
}

QImage picture(const QList<gaugeData> &layers, int size)
{
    QImage image(size, size, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    paintGauge(painter, size, layers);
    return image;
}

QPointF dialPoint(double distance, double angle)
{
    const double radians = angle * 3.141592653589793 / 180.0;
    return {256.0 + distance * std::cos(radians), 256.0 - distance * std::sin(radians)};
}

QPen dialPen(const QColor &color, double width, Qt::PenCapStyle cap)
{
    return {QBrush(color, Qt::SolidPattern), width, Qt::SolidLine, cap, Qt::RoundJoin};
}

QString lineText(const QPointF &from, const QPointF &to)
{
    const auto exact = [](double value) { return QString::number(value, 'g', 17); };
    return exact(from.x()) + QLatin1Char(',') + exact(from.y()) + QLatin1String(" to ") + exact(to.x()) +
           QLatin1Char(',') + exact(to.y());
}

QString lineText(const QLineF &line)
{
    return lineText(line.p1(), line.p2());
}
