#ifndef DRAWINGSIZE_H
#define DRAWINGSIZE_H

#include <QList>

struct gaugeData;

/// About the number of digits before the decimal point: the logarithm to base 10, plus 1. 1 for NaN.
[[nodiscard]] double digitCount(double number);

/// The number of digits before the decimal point of the layer's largest tick value.
[[nodiscard]] double valueDigits(const gaugeData &layer);

/// The number of primary ticks; not below 0.
[[nodiscard]] double primaryTicks(const gaugeData &layer);

/// Roughly the number of bytes of an SVG of the layers. Rather too large than too small.
[[nodiscard]] double svgDrawingSize(const QList<gaugeData> &layers, bool textAsPaths);

/// The same of a PDF.
[[nodiscard]] double pdfDrawingSize(const QList<gaugeData> &layers, bool textAsPaths);

#endif
