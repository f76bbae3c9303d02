#ifndef EXPORTFORMAT_H
#define EXPORTFORMAT_H

#include <QList>
#include <QString>

class QIODevice;
struct gaugeLayer;
struct PictureStyle;

/// One kind of file that a gauge is exported as.
struct ExportFormat
{
    const char *name; ///< On the command line; also the suffix of the files.
    bool isPicture;   ///< Whether the file has a size in pixels.
    bool isRaster;    ///< Whether it is painted by Qt's raster engine.

    /// Writes the layers to an open device. @a size and @a style matter for pictures only, @a compression for
    /// a PNG only. Returns false when there is not enough memory or the device does not take all bytes.
    bool (*write)(QIODevice &device, int size, const QList<gaugeLayer> &layers, const PictureStyle &style,
                  int compression);

    /// Roughly the number of bytes that write() makes. Null for formats whose files are never much larger
    /// than the picture's pixels or the gauge file.
    double (*estimatedSize)(const QList<gaugeLayer> &layers, const PictureStyle &style);
};

/// All formats, in the order in which the help lists them.
[[nodiscard]] const QList<const ExportFormat *> &exportFormats();

/// The format of this name. Null when there is none.
[[nodiscard]] const ExportFormat *findExportFormat(const QString &name);

#endif
