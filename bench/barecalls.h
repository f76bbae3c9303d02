#ifndef BARECALLS_H
#define BARECALLS_H

#include <QFont>
#include <QLineF>
#include <QPen>
#include <QPointF>
#include <QRectF>
#include <QString>

#include <array>
#include <variant>
#include <vector>

class QPainter;
struct gaugeData;

/// The bare Qt calls that draw a layer: those that the painter makes, in its order, with their geometry, pens
/// and texts worked out beforehand.
class BareCalls
{
public:
    /// For a layer with flat caps, an even or "Exponential" bias below a half, and labels without decimals.
    explicit BareCalls(const gaugeData &layer);
    BareCalls(const BareCalls &) = delete;
    BareCalls(BareCalls &&) = default;
    BareCalls &operator=(const BareCalls &) = delete;
    BareCalls &operator=(BareCalls &&) = default;
    ~BareCalls() = default;

    /// Makes the calls on a device whose side is @a size pixels.
    void make(QPainter &painter, int size) const;

private:
    struct Arc
    {
        QPen pen;
        QRectF rectangle;
        int start;
        int span;
    };
    struct Line
    {
        size_t ring;
        QLineF line;
    };
    struct Text
    {
        QPointF anchor;
        double turn;
        QString text;
    };
    struct Caller;

    std::array<QPen, 3> m_ringPens;
    QPen m_labelPen;
    QFont m_labelFont;
    bool m_labelsTurn;
    std::vector<std::variant<Arc, Line, Text>> m_calls;
};

#endif
