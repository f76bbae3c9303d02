#include "dial.h"

#include "render/gaugepainter.h"
#include "render/sweep.h"

#include <QPainter>

#include <cmath>

void drawReference(QPainter &painter, int size, const QList<gaugeData> &layers)
{
    const auto setPen = [&painter](const QColor &color, double width, bool rounded) {
        painter.setPen(
            QPen(QBrush(color), width, Qt::SolidLine, rounded ? Qt::RoundCap : Qt::FlatCap, Qt::RoundJoin));
    };
    setPen(Qt::white, 0.0, false);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size * 0.001953125, size * 0.001953125);
    painter.setBrush(QBrush(Qt::white));
    painter.drawEllipse(QRectF(253.0, 253.0, 6.0, 6.0));
    painter.setBrush(QBrush(Qt::white, Qt::NoBrush));

    for (const gaugeData &layer : layers) {
        for (size_t arc = 0; arc < 4; ++arc) {
            if (layer.arcAngleLength[arc] == 0.0)
                continue;
            const double radius = 250.0 * layer.arcRadius[arc];
            setPen(layer.arcColor[arc], layer.arcWidth[arc], layer.roundedArcCaps);
            painter.drawArc(QRectF(256.0 - radius, 256.0 - radius, 2.0 * radius, 2.0 * radius),
                            int(std::lround((90.0 - layer.arcStartAngle[arc]) * 16.0)),
                            int(std::lround(-layer.arcAngleLength[arc] * 16.0)));
        }

        const auto angleOf = [&layer](double t) {
            return 90.0 - layer.startAngle -
                   layer.angleLength * biasedFraction(t, layer.bias, layer.midpointBias);
        };
        const auto drawTick = [&](size_t ring, double angle) {
            setPen(layer.divisionColor[ring], layer.divisionLineWidth[ring], layer.roundedTickCaps);
            painter.drawLine(QLineF(dialPoint(250.0 * layer.divisionOuterRadius[ring], angle),
                                    dialPoint(250.0 * layer.divisionInnerRadius[ring], angle)));
        };
        const auto drawLabel = [&](double angle, double value) {
            const QPointF anchor = dialPoint(250.0 * layer.tickCountRadius, angle);
            const QString text = QString::number(value, 'f', layer.tickCountDecimalPlaces);
            const double turn = layer.tickCountRotate ? 90.0 - angle : 0.0;
            painter.setFont(layer.tickCountFont);
            setPen(layer.tickCountColor, 0.0, layer.roundedTickCaps);
            if (!layer.tickCountRotate) {
                painter.drawText(QRectF(anchor.x() - 50.0, anchor.y() - 50.0, 100.0, 100.0), Qt::AlignCenter,
                                 text);
                return;
            }
            painter.translate(anchor);
            painter.rotate(turn);
            painter.drawText(QRectF(-50.0, -50.0, 100.0, 100.0), Qt::AlignCenter, text);
            painter.rotate(-turn);
            painter.translate(-anchor);
        };

        const double c1 = layer.divisionCount[0];
        const double c2 = layer.divisionCount[1];
        const double c3 = layer.divisionCount[2];
        const double last = std::abs(layer.angleLength) >= 360.0 ? c1 - 1.0 : c1;
        double value = layer.tickCountStart;
        for (double i = 0.0; i <= last; ++i) {
            drawTick(0, angleOf(i / c1));
            if (layer.tickCountEnabled && !(i == 0.0 && layer.tickCountSkipFirst))
                drawLabel(angleOf(i / c1), value);
            value += layer.tickCountIncrement;
            for (double j = 0.0; c2 > 1.0 && i < c1 && j < c2; ++j) {
                if (j > 0.0)
                    drawTick(1, angleOf((j / c2 + i) / c1));
                for (double k = 1.0; k < c3; ++k)
                    drawTick(2, angleOf(((k / c3 + j) / c2 + i) / c1));
            }
        }
    }
}

QList<RecordedCall> referenceCalls(const QList<gaugeData> &layers, int size)
{
    RecordingDevice device(size);
    QPainter painter(&device);
    drawReference(painter, size, layers);
    painter.end();
    return device.calls();
}

QList<RecordedCall> paintedCalls(const QList<gaugeData> &layers, int size)
{
    RecordingDevice device(size);
    QPainter painter(&device);
    paintGauge(painter, size, layers);
    painter.end();
    return device.calls();
}

QList<RecordedCall> paintedCalls(RecordedCall::Kind kind, const gaugeData &layer)
{
    QList<RecordedCall> calls = paintedCalls({layer});
    calls.removeIf([kind](const RecordedCall &call) { return call.kind != kind; });
    return calls;
}

QStringList paintedTexts(const gaugeData &layer)
{
    QStringList texts;
    for (const RecordedCall &call : paintedCalls(RecordedCall::Kind::Text, layer))
        texts.append(call.text);
    return texts;
}

QStringList descriptions(const QList<RecordedCall> &calls)
{
    QStringList texts;
    for (const RecordedCall &call : calls)
        texts.append(call.description());
    return texts;
}

QImage picture(const QList<gaugeData> &layers, int size)
{
    QImage image(size, size, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    paintGauge(painter, size, layers);
    return image;
}

gaugeData ticksOnly()
{
    gaugeData layer;
    layer.arcAngleLength = {0.0, 0.0, 0.0, 0.0};
    layer.tickCountEnabled = false;
    layer.divisionColor = {Qt::red, Qt::green, Qt::blue};
    return layer;
}

gaugeData busyLayer(bool wide)
{
    gaugeData layer;
    layer.divisionCount = {3, 2, 2};
    layer.arcAngleLength = {120.0, 360.0, -50.0, 1.0};
    if (wide) {
        layer.divisionLineWidth = {3.0, 0.5, 7.0};
        layer.arcWidth = {10.0, 0.5, 20.0, 2.0};
        layer.roundedArcCaps = layer.roundedTickCaps = layer.tickCountRotate = true;
    }
    return layer;
}

QPointF dialPoint(double distance, double angle)
{
    const double radians = angle * 3.141592653589793 / 180.0;
    return {256.0 + distance * std::cos(radians), 256.0 - distance * std::sin(radians)};
}
