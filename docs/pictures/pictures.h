#ifndef PICTURES_H
#define PICTURES_H

#include "model/gaugedata.h"

#include <QDir>
#include <QImage>
#include <QList>

// Each function ends the program with a message when a file cannot be read or written.

/// Draws docs/gallery/, the samples and the presets on a dark face, and docs/strip.png, a few samples in a
/// row.
void drawGallery(const QDir &docs);

/// Draws the gauges of docs/fit.md, which scripts/scales makes.
void drawFittedScales(const QDir &docs);

/// Draws docs/editor.png and docs/guide/, and writes the gauge that the guide builds.
void drawGuide(const QDir &docs);

/// Reads a gauge file of the source tree, such as "samples/Clock.gauge".
[[nodiscard]] QList<gaugeLayer> readGauge(const QString &path);

/// The records of named layers.
[[nodiscard]] QList<gaugeData> dataOf(const QList<gaugeLayer> &layers);

/// The full path of a file of the source tree.
[[nodiscard]] QString sourcePath(const QString &path);

/// Writes a PNG.
void savePicture(const QImage &picture, const QString &path);

#endif
