#include "barecalls.h"

#include "model/gaugedata.h"

#include <QPainter>

#include <cmath>

namespace {

QPen solidPen(const QColor &color, double width)
{
    return {QBrush(color), width, Qt::SolidLine, Qt::FlatCap, Qt::RoundJoin};
}

QPointF pointAt(double distance, double angle)
{
    const double radians = angle * 3.141592653589793 / 180.0;
    return {256.0 + distance * std::cos(radians), 256.0 - distance * std::sin(radians)};
}

} // namespace

BareCalls::BareCalls(const gaugeData &layer)
{
    for (size_t arc = 0; arc < layer.arcRadius.size(); ++arc) {
        if (layer.arcAngleLength[arc] == 0.0)
            continue;
        const double radius = 250.0 * layer.arcRadius[arc];
        const QRectF rectangle(256.0 - radius, 256.0 - radius, 2.0 * radius, 2.0 * radius);
        const QPen pen = solidPen(layer.arcColor[arc], layer.arcWidth[arc]);
        const auto start = static_cast<int>(std::lround((90.0 - layer.arcStartAngle[arc]) * 16.0));
        const auto span = static_cast<int>(std::lround(-layer.arcAngleLength[arc] * 16.0));
        m_calls.emplace_back([=](QPainter &painter) {
            painter.setPen(pen);
            painter.drawArc(rectangle, start, span);
        });
    }
    const auto angleAt = [&layer](double t) {
        const double biased = layer.bias < 0.5 ? 1.0 - std::pow(1.0 - t, 2.0 * layer.bias) : 1.0 - (1.0 - t);
        return (90.0 - layer.startAngle) - biased * layer.angleLength;
    };
    const auto addTick = [&](size_t ring, double angle) {
        const QLineF line(pointAt(250.0 * layer.divisionOuterRadius[ring], angle),
                          pointAt(250.0 * layer.divisionInnerRadius[ring], angle));
        const QPen pen = solidPen(layer.divisionColor[ring], layer.divisionLineWidth[ring]);
        m_calls.emplace_back([=](QPainter &painter) {
            painter.setPen(pen);
            painter.drawLines(&line, 1);
        });
    };
    const auto addLabel = [&](double angle, int number) {
        const QPointF anchor = pointAt(250.0 * layer.tickCountRadius, angle);
        const QRectF box(anchor.x() - 50.0, anchor.y() - 50.0, 100.0, 100.0);
        m_calls.emplace_back([=, pen = solidPen(layer.tickCountColor, 0.0), font = layer.tickCountFont,
                              text = QString::number(number)](QPainter &painter) {
            painter.setFont(font);
            painter.setPen(pen);
            painter.drawText(box, Qt::AlignCenter, text);
        });
    };
    const auto [c1, c2, c3] = layer.divisionCount;
    const int ticks = std::abs(layer.angleLength) >= 360.0 ? c1 : c1 + 1;
    for (int i = 0; i < ticks; ++i) {
        const double angle = angleAt(double(i) / c1);
        addTick(0, angle);
        if (layer.tickCountEnabled)
            addLabel(angle, i);
        for (int j = 0; c2 > 1 && i < c1 && j < c2; ++j) {
            if (j != 0)
                addTick(1, angleAt((double(j) / c2 + i) / c1));
            for (int k = 1; k < c3; ++k)
                addTick(2, angleAt(((double(k) / c3 + j) / c2 + i) / c1));
        }
    }
}

void BareCalls::draw(QPainter &painter, int size) const
{
    painter.setPen(solidPen(Qt::white, 0.0));
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size / 512.0, size / 512.0);
    painter.setBrush(QBrush(Qt::white, Qt::SolidPattern));
    painter.drawEllipse(QRectF(253.0, 253.0, 6.0, 6.0));
    painter.setBrush(QBrush(Qt::white, Qt::NoBrush));
    for (const auto &call : m_calls)
        call(painter);
}
