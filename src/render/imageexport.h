#ifndef IMAGEEXPORT_H
#define IMAGEEXPORT_H

#include <QList>

class QIODevice;
struct gaugeData;

/// Writes a stack of layers to an open device as a square PNG of @a size pixels with a transparent
/// background. Returns false when the picture could not be made or written.
bool writePng(QIODevice &device, int size, const QList<gaugeData> &layers);

/// Writes a stack of layers to an open device as an SVG drawing whose width, height and view box are @a size.
/// Returns false when the device does not take it.
bool writeSvg(QIODevice &device, int size, const QList<gaugeData> &layers);

#endif
