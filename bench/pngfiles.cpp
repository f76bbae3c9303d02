// The exporter's PNG files at each level of compression compared with QImageWriter's, over all presets and
// samples.

#include "compare.h"
#include "exporter/pngfile.h"
#include "model/gaugefile.h"
#include "render/imageexport.h"

#include <QBuffer>
#include <QDir>
#include <QImageWriter>

#include <array>
#include <cstdio>

namespace {

constexpr std::array sizes{256, 512, 1024, 2048};

QList<QList<gaugeData>> allGauges()
{
    QList<QList<gaugeData>> gauges;
    for (const char *folder : {CORVALENCE_SOURCE "/presets", CORVALENCE_SOURCE "/samples"}) {
        const QDir directory(QString::fromLatin1(folder));
        for (const QString &name : directory.entryList({QStringLiteral("*.gauge")})) {
            QFile file(directory.filePath(name));
            QList<gaugeLayer> layers;
            if (!file.open(QIODevice::ReadOnly) || !gaugeFile::read(file.readAll(), &layers, nullptr))
                continue;
            QList<gaugeData> data;
            for (const gaugeLayer &layer : std::as_const(layers))
                data.append(layer.data);
            gauges.append(data);
        }
    }
    return gauges;
}

/// Prints the total file sizes and processor times of one way to write all pictures.
void measure(const char *name, const QList<QList<QImage>> &images, auto write)
{
    std::printf("| %s |", name);
    double totalSize = 0.0;
    double totalTime = 0.0;
    for (const QList<QImage> &imagesOfSize : images) {
        double size = 0.0;
        const double start = processorTime();
        for (const QImage &image : imagesOfSize) {
            QBuffer buffer;
            buffer.open(QIODevice::WriteOnly);
            write(buffer, image);
            size += static_cast<double>(buffer.size()) / 1000.0;
        }
        const double time = processorTime() - start;
        std::printf(" %.0f | %.0f |", size, time);
        totalSize += size;
        totalTime += time;
    }
    std::printf(" %.0f | %.0f |\n", totalSize, totalTime);
    std::fflush(stdout);
}

} // namespace

void benchPngFiles()
{
    QList<QList<QImage>> images;
    const QList<QList<gaugeData>> gauges = allGauges();
    for (const int size : sizes) {
        QList<QImage> imagesOfSize;
        for (const QList<gaugeData> &layers : gauges)
            imagesOfSize.append(gaugeImage(size, layers));
        images.append(imagesOfSize);
    }
    std::printf("\nAll %d presets and samples, KB and ms:\n\n| PNG |", int(gauges.size()));
    for (const int size : sizes)
        std::printf(" %d pixels | time |", size);
    std::puts(" all | time |\n|---|---:|---:|---:|---:|---:|---:|---:|---:|---:|---:|");
    measure("QImageWriter", images,
            [](QBuffer &buffer, const QImage &image) { QImageWriter(&buffer, "png").write(image); });
    for (int level = 0; level <= maxCompression; ++level) {
        measure(qPrintable(QStringLiteral("level %1").arg(level)), images,
                [level](QBuffer &buffer, const QImage &image) { (void)writePngFile(buffer, image, level); });
    }
}
