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
    : m_labelPen(solidPen(layer.tickCountColor, 0.0))
    , m_labelFont(layer.tickCountFont)
    , m_labelsTurn(layer.tickCountRotate)
{
    for (size_t ring = 0; ring < m_ringPens.size(); ++ring)
        m_ringPens[ring] = solidPen(layer.divisionColor[ring], layer.divisionLineWidth[ring]);
    for (size_t arc = 0; arc < layer.arcRadius.size(); ++arc) {
        if (layer.arcAngleLength[arc] == 0.0)
            continue;
        const double radius = 250.0 * layer.arcRadius[arc];
        m_calls.emplace_back(Arc{solidPen(layer.arcColor[arc], layer.arcWidth[arc]),
                                 QRectF(256.0 - radius, 256.0 - radius, 2.0 * radius, 2.0 * radius),
                                 int(std::lround((90.0 - layer.arcStartAngle[arc]) * 16.0)),
                                 int(std::lround(-layer.arcAngleLength[arc] * 16.0))});
    }
    const auto angleAt = [&layer](double t) {
        const double biased = layer.bias < 0.5 ? 1.0 - std::pow(1.0 - t, 2.0 * layer.bias) : 1.0 - (1.0 - t);
        return (90.0 - layer.startAngle) - biased * layer.angleLength;
    };
    const auto addTick = [&](size_t ring, double angle) {
        m_calls.emplace_back(Line{ring,
                                  {pointAt(250.0 * layer.divisionOuterRadius[ring], angle),
                                   pointAt(250.0 * layer.divisionInnerRadius[ring], angle)}});
    };
    const auto [c1, c2, c3] = layer.divisionCount;
    const int ticks = std::abs(layer.angleLength) >= 360.0 ? c1 : c1 + 1;
    for (int i = 0; i < ticks; ++i) {
        const double angle = angleAt(double(i) / c1);
        addTick(0, angle);
        if (layer.tickCountEnabled) {
            m_calls.emplace_back(
                Text{pointAt(250.0 * layer.tickCountRadius, angle), 90.0 - angle, QString::number(i)});
        }
        for (int j = 0; c2 > 1 && i < c1 && j < c2; ++j) {
            if (j != 0)
                addTick(1, angleAt((double(j) / c2 + i) / c1));
            for (int k = 1; k < c3; ++k)
                addTick(2, angleAt(((double(k) / c3 + j) / c2 + i) / c1));
        }
    }
}

struct BareCalls::Caller
{
    QPainter &painter;
    const BareCalls &all;

    void operator()(const Arc &arc) const
    {
        painter.setPen(arc.pen);
        painter.drawArc(arc.rectangle, arc.start, arc.span);
    }
    void operator()(const Line &line) const
    {
        painter.setPen(all.m_ringPens[line.ring]);
        painter.drawLines(&line.line, 1);
    }
    void operator()(const Text &text) const
    {
        painter.setFont(all.m_labelFont);
        painter.setPen(all.m_labelPen);
        if (all.m_labelsTurn) {
            painter.translate(text.anchor);
            painter.rotate(text.turn);
            painter.drawText(QRectF(-50.0, -50.0, 100.0, 100.0), Qt::AlignCenter, text.text);
            painter.rotate(-text.turn);
            painter.translate(-text.anchor);
        } else {
            painter.drawText(QRectF(text.anchor.x() - 50.0, text.anchor.y() - 50.0, 100.0, 100.0),
                             Qt::AlignCenter, text.text);
        }
    }
};

void BareCalls::make(QPainter &painter, int size) const
{
    painter.setPen(solidPen(Qt::white, 0.0));
    painter.setBrush(QBrush(Qt::white, Qt::NoBrush));
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size / 512.0, size / 512.0);
    painter.setBrush(QBrush(Qt::white, Qt::SolidPattern));
    painter.drawEllipse(QRectF(253.0, 253.0, 6.0, 6.0));
    painter.setBrush(QBrush(Qt::white, Qt::NoBrush));
    const Caller caller{painter, *this};
    for (const auto &call : m_calls)
        std::visit(caller, call);
}
