#ifndef GAUGEPAINTER_H
#define GAUGEPAINTER_H

#include <QList>

class QPainter;
struct gaugeData;

/// The side of the square that all geometry lives in, in canvas units; its centre is the gauge's centre.
inline constexpr int canvasSize = 512;

/// The radius of the face in canvas units: where a stored radius of 1 lies.
inline constexpr double faceRadius = 250.0;

/// How a picture departs from the preview. The defaults are the preview itself.
struct PaintStyle
{
    bool textAsPaths = false; ///< Labels are filled shapes, which need no font where they are shown.
    double hairline = 0.0;    ///< The width of lines without a width, in canvas units; 0 is one device pixel.
};

/// Draws a stack of layers, bottom layer first, onto a painter whose device is @a size by @a size pixels.
///
/// First comes the white dot at the centre, then for each layer its four arcs and, tick by tick, the primary
/// line, its label and the secondary and tertiary lines that follow it. The painter is left scaled by
/// size / canvasSize, with the last pen, brush and font set.
///
/// Every record is drawn as it stands: numbers that give no position reach the painter as such, and a count
/// of many millions takes its time.
void paintGauge(QPainter &painter, int size, const QList<gaugeData> &layers, const PaintStyle &style = {});

#endif
