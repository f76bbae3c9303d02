#include "exporter/formats.h"
#include "exporter/pngfile.h"
#include "exporter/sizeestimate.h"
#include "render/sweep.h"

#include <algorithm>

namespace {

QList<gaugeData> dataOf(const QList<gaugeLayer> &layers)
{
    QList<gaugeData> data;
    data.reserve(layers.size());
    for (const gaugeLayer &layer : layers)
        data.append(layer.data);
    return data;
}

bool writePng(QIODevice &device, const ExportJob &job)
{
    return writePngFile(device, gaugeImage(job.size, dataOf(job.layers), job.style), job.compression);
}

bool writeSvg(QIODevice &device, const ExportJob &job)
{
    return ::writeSvg(device, job.size, dataOf(job.layers), job.style);
}

bool writePdf(QIODevice &device, const ExportJob &job)
{
    return ::writePdf(device, job.size, dataOf(job.layers), job.style);
}

/// What the parts of a drawing take in bytes, measured with gauges of many ticks.
struct DrawingCosts
{
    double tick;
    double label;     ///< Without its text.
    double character; ///< Of a label.
    double outline;   ///< Of a character that is drawn as a path.
    bool repeatsFont; ///< Whether each label names its font family.
};

double drawingSize(const ExportJob &job, const DrawingCosts &costs)
{
    constexpr int maxDecimals = 400; // the painter's limit is lower
    double size = 0.0;
    for (const gaugeLayer &layer : job.layers) {
        const gaugeData &data = layer.data;
        size += static_cast<double>(totalTickCount(data)) * costs.tick;
        if (!data.tickCountEnabled)
            continue;
        const double characters = valueDigits(data) + std::clamp(data.tickCountDecimalPlaces, 0, maxDecimals);
        double label = costs.label + characters * (job.style.textAsPaths ? costs.outline : costs.character);
        if (costs.repeatsFont)
            label += static_cast<double>(data.tickCountFont.family().toUtf8().size());
        size += primaryTicks(data) * label;
    }
    return size;
}

double svgSize(const ExportJob &job)
{
    return drawingSize(job, {100.0, 320.0, 25.0, 900.0, true});
}

double pdfSize(const ExportJob &job)
{
    return drawingSize(job, {20.0, 30.0, 5.0, 130.0, false});
}

} // namespace

constinit const ExportFormat pngFormat{"png", true, true, writePng, nullptr};
constinit const ExportFormat svgFormat{"svg", true, false, writeSvg, svgSize};
constinit const ExportFormat pdfFormat{"pdf", true, false, writePdf, pdfSize};
