#ifndef GAUGEPAINTER_H
#define GAUGEPAINTER_H

#include <QList>

class QPainter;
struct gaugeData;

/// Side of the square canvas. All coordinates are in canvas units; the gauge centre is the canvas centre.
inline constexpr int canvasSize = 512;

/// Face radius in canvas units. A stored radius of 1 means this distance from the centre.
inline constexpr double faceRadius = 250.0;

/// Options of a drawing. The defaults are those of the preview.
struct PaintStyle
{
    bool textAsPaths = false; ///< Draw labels as filled paths, so that viewers do not need the font.
    double hairline = 0.0;    ///< Width in canvas units of lines with width 0; 0 is one device pixel.
    bool centreDot = true;    ///< Draw the white dot at the centre.
    double rotation = 0.0;    ///< Degrees by which the drawing is turned clockwise about the centre; finite.
};

/// Draws the layers, bottom layer first, on a painter whose device is @a size by @a size pixels.
///
/// Draws the white centre dot first, unless @a style omits it. Then draws for each layer its four arcs and,
/// for each primary tick, the tick, its label and the secondary and tertiary ticks up to the next primary
/// tick. Does not restore the painter's state: it stays scaled by @a size / canvasSize and keeps the last
/// pen, brush and font.
///
/// Accepts all values, including NaN and infinity. The time needed grows with the number of ticks; see
/// totalTickCount().
void paintGauge(QPainter &painter, int size, const QList<gaugeData> &layers, const PaintStyle &style = {});

#endif
