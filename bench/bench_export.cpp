// Whole picture files beside the bare Qt calls that make the same bytes.

#include "barecalls.h"
#include "compare.h"
#include "layers.h"
#include "render/imageexport.h"

#include <QBuffer>
#include <QImageWriter>
#include <QPainter>
#include <QSvgGenerator>

#include <memory>

namespace {

QByteArray ourPng(const QList<gaugeData> &layers, int size)
{
    QBuffer file;
    file.open(QIODevice::WriteOnly);
    writePng(file, size, layers);
    return file.data();
}

QByteArray barePng(const BareCalls &calls, int size)
{
    QBuffer file;
    file.open(QIODevice::WriteOnly);
    QImage image(size, size, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    calls.make(painter, size);
    painter.end();
    QImageWriter(&file, "png").write(image);
    return file.data();
}

QByteArray ourSvg(const QList<gaugeData> &layers, int size)
{
    QBuffer file;
    file.open(QIODevice::WriteOnly);
    writeSvg(file, size, layers);
    return file.data();
}

QByteArray bareSvg(const BareCalls &calls, int size)
{
    QBuffer file;
    QSvgGenerator generator;
    generator.setOutputDevice(&file);
    generator.setSize(QSize(size, size));
    generator.setViewBox(QRect(0, 0, size, size));
    generator.setResolution(96);
    generator.setTitle(QStringLiteral("Corvalence 2 Gauge"));
    generator.setDescription(QStringLiteral("A gauge generated in Corvalence 2Saved to SVG."));
    QPainter painter(&generator);
    calls.make(painter, size);
    painter.end();
    return file.data();
}

bool compareFiles(const std::string &format, const gaugeData &layer, int size, auto ours, auto bare)
{
    if (ours({layer}, size) != bare(BareCalls(layer), size))
        return false;
    compare(
        "export/" + format + '/' + std::to_string(size),
        [=] { return [ours, size, layers = QList{layer}] { benchmark::DoNotOptimize(ours(layers, size)); }; },
        [=] {
            return [bare, size, calls = std::make_shared<BareCalls>(layer)] {
                benchmark::DoNotOptimize(bare(*calls, size));
            };
        });
    return true;
}

} // namespace

bool registerBenchmarks()
{
    const gaugeData layer = typicalLayer();
    bool alike = true;
    for (const int size : {512, 1024, 2048, 4096}) {
        alike = alike && compareFiles("png", layer, size, ourPng, barePng);
        alike = alike && compareFiles("svg", layer, size, ourSvg, bareSvg);
    }
    return alike;
}
