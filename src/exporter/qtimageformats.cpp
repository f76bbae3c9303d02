#include "exporter/formats.h"

#include <QImageWriter>

namespace {

/// Writes the picture with Qt's own writer of this name.
bool writeImage(QIODevice &device, const ExportJob &job, const char *writerName)
{
    const QImage image = gaugeImage(job.size, layerData(job.layers), job.style);
    if (image.isNull())
        return false;
    QImageWriter writer(&device, writerName);
    writer.setQuality(job.quality);
    return writer.write(image);
}

bool writeJpeg(QIODevice &device, const ExportJob &job)
{
    return writeImage(device, job, "jpeg");
}

bool writeWebp(QIODevice &device, const ExportJob &job)
{
    return writeImage(device, job, "webp");
}

QString missingWebp()
{
    if (QImageWriter::supportedImageFormats().contains("webp"))
        return {};
    return QStringLiteral("webp cannot be written without Qt's plugin for it (on Debian and Ubuntu, install "
                          "qt6-image-formats-plugins)");
}

} // namespace

constinit const ExportFormat jpegFormat{.name = "jpeg",
                                        .isPicture = true,
                                        .isRaster = true,
                                        .write = writeJpeg,
                                        .estimatedSize = nullptr,
                                        .isOpaque = true};
// The largest side that a WebP file can have.
constinit const ExportFormat webpFormat{.name = "webp",
                                        .isPicture = true,
                                        .isRaster = true,
                                        .write = writeWebp,
                                        .estimatedSize = nullptr,
                                        .maxSize = 16383,
                                        .missing = missingWebp};
