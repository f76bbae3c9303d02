#include "render/rasterlimits.h"

#include "render/gaugepainter.h"

#include <QPaintEngine>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

constexpr double maxRadius = 10.0 * faceRadius;
/// Even a round cap of this width at maxRadius ends outside the canvas.
constexpr double maxWidth = 16.0 * faceRadius;
/// The corners of the canvas are less than this from the centre.
constexpr double outsideCanvas = canvasSize;

} // namespace

RasterLimits::RasterLimits(const QPainter &painter)
    : m_limited(painter.isActive() && painter.paintEngine()->type() == QPaintEngine::Raster)
{
}

double RasterLimits::radius(double radius) const
{
    return m_limited ? std::clamp(radius, -maxRadius, maxRadius) : radius;
}

double RasterLimits::width(double width) const
{
    return m_limited ? std::min(width, maxWidth) : width;
}

RasterLimits::Arc RasterLimits::arc(double radius, double width) const
{
    const double distance = std::abs(radius);
    if (!m_limited || !(distance > maxRadius || width > maxWidth))
        return {radius, width};
    const double inner = std::clamp(distance - width / 2.0, -outsideCanvas, outsideCanvas);
    const double outer = std::clamp(distance + width / 2.0, -outsideCanvas, maxRadius);
    return {(inner + outer) / 2.0, outer - inner};
}
