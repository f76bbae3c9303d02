#ifndef EXPORTFORMAT_H
#define EXPORTFORMAT_H

#include "exporter/rawpicture.h"
#include "model/gaugedata.h"
#include "render/angletable.h"
#include "render/gaugeparts.h"
#include "render/imageexport.h"

#include <QList>
#include <QString>

class QIODevice;

/// The largest side of a picture in pixels.
inline constexpr int maxPictureSize = 16384;

/// Where the picture of a part is cropped.
struct PartCrop
{
    QString part; ///< The name of the GaugePart.
    int size = 0; ///< The side of the picture before it is cropped, in pixels.
    QRect area;   ///< What is left of it, in pixels.
};

/// What one file is made of. Each format uses what it needs.
struct ExportJob
{
    QString gaugeName;        ///< The name of the gauge file without its suffix.
    QList<gaugeLayer> layers; ///< What is drawn or listed, bottom layer first.
    QList<GaugePart> parts;   ///< All parts of the gauge, bottom part first. Empty when it is not split.
    QList<AngleTable> tables; ///< The scales.
    QList<int> sizes;         ///< The sides of all pictures of the gauge, in pixels.
    QList<PartCrop> crops;    ///< Of all pictures that are cropped, for formats that list them.
    QString partName;         ///< Of the part that is drawn. Empty: the whole gauge.
    int size = 0;             ///< The side of this picture in pixels. 0 for a format without a size.
    PictureStyle style;       ///< Of a picture.
    int compression = 0;      ///< Of a PNG.
    int quality = 0;          ///< Of a JPEG or WebP.
    bool cropped = false;     ///< Whether a raw picture has only the area with marks.
    ByteOrder byteOrder = ByteOrder::Little; ///< Of the pixels in an RGB565 file.
};

/// What a format does with the scales of a gauge.
enum class ScaleUse { None, Any, OneInEachFile };

/// One kind of file that a gauge is exported as.
struct ExportFormat
{
    const char *name;       ///< On the command line; also the suffix of the files.
    bool isPicture = false; ///< Whether the file has a size in pixels.
    bool isRaster = false;  ///< Whether it is painted by Qt's raster engine.

    /// Writes the file to an open device. Returns false when there is not enough memory or the device does
    /// not take all bytes.
    bool (*write)(QIODevice &device, const ExportJob &job);

    /// Roughly the number of bytes that write() makes. Null for formats whose files are never much larger
    /// than the picture's pixels or the gauge file.
    double (*estimatedSize)(const ExportJob &job) = nullptr;

    bool isOpaque = false;        ///< Whether a picture has no transparency and needs a background.
    int maxSize = maxPictureSize; ///< Of a picture, in pixels.

    /// Why this system cannot write the format. Empty when it can. Null for formats that it always can.
    QString (*missing)() = nullptr;

    ScaleUse scales = ScaleUse::None;
    /// The error in degrees that rounding adds when the points of a table are written. The table is made with
    /// the max error minus this, but at least with half of it.
    double tableRounding = 0.0;

    /// Why the gauge cannot be written in this format. Empty when it can. Null for formats that take every
    /// gauge.
    QString (*check)(const ExportJob &job) = nullptr;

    bool cropsParts = false; ///< Whether pictures of parts above the face are cropped to their marks.
    bool listsCrops = false; ///< Whether the file lists the cropped areas.
};

/// The records of layers, without their names.
[[nodiscard]] QList<gaugeData> layerData(const QList<gaugeLayer> &layers);

/// All formats, in the order in which the help lists them.
[[nodiscard]] const QList<const ExportFormat *> &exportFormats();

/// The names of the formats as a part of a sentence: "png, jpeg, ... or c".
[[nodiscard]] QString exportFormatNames();

/// The format of this name; "jpg" is jpeg. Null when there is none.
[[nodiscard]] const ExportFormat *findExportFormat(const QString &name);

#endif
