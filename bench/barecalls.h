#ifndef BARECALLS_H
#define BARECALLS_H

#include <functional>
#include <vector>

class QPainter;
struct gaugeData;

/// The Qt calls that draw a layer, in the painter's order, with geometry, pens and label texts computed
/// beforehand. For layers with flat caps, an even bias or an "Exponential" one below a half, labels that do
/// not turn, and labels without decimals.
class BareCalls
{
public:
    explicit BareCalls(const gaugeData &layer);

    /// Draws on a device whose side is @a size pixels.
    void draw(QPainter &painter, int size) const;

private:
    std::vector<std::function<void(QPainter &)>> m_calls;
};

#endif
