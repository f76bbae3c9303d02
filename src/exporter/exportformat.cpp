#include "exporter/exportformat.h"

#include "exporter/pngfile.h"
#include "model/gaugefile.h"
#include "render/imageexport.h"
#include "render/keyframes.h"
#include "render/sweep.h"

#include <QIODevice>
#include <QStringEncoder>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace {

QList<gaugeData> dataOf(const QList<gaugeLayer> &layers)
{
    QList<gaugeData> data;
    data.reserve(layers.size());
    for (const gaugeLayer &layer : layers)
        data.append(layer.data);
    return data;
}

bool writePng(QIODevice &device, int size, const QList<gaugeLayer> &layers, const PictureStyle &style,
              int compression)
{
    return writePngFile(device, gaugeImage(size, dataOf(layers), style), compression);
}

bool writeSvgFile(QIODevice &device, int size, const QList<gaugeLayer> &layers, const PictureStyle &style,
                  int /*compression*/)
{
    return writeSvg(device, size, dataOf(layers), style);
}

bool writePdfFile(QIODevice &device, int size, const QList<gaugeLayer> &layers, const PictureStyle &style,
                  int /*compression*/)
{
    return writePdf(device, size, dataOf(layers), style);
}

bool writeKeyframes(QIODevice &device, int /*size*/, const QList<gaugeLayer> &layers,
                    const PictureStyle & /*style*/, int /*compression*/)
{
    // Not with a QTextStream: without enough memory its destructor ends the program.
    QStringEncoder encoder(QStringConverter::Utf8);
    const QByteArray bytes = encoder.encode(keyframeTable(layers));
    return device.write(bytes) == bytes.size();
}

bool writeGauge(QIODevice &device, int /*size*/, const QList<gaugeLayer> &layers,
                const PictureStyle & /*style*/, int /*compression*/)
{
    const QByteArray bytes = gaugeFile::write(layers);
    return device.write(bytes) == bytes.size();
}

/// The number of digits before the decimal point of the largest tick value.
double digitCount(const gaugeData &layer)
{
    const auto ticks = static_cast<double>(primaryTickCount(layer));
    const double last = layer.tickCountStart + layer.tickCountIncrement * ticks;
    const double largest = std::max(std::abs(layer.tickCountStart), std::abs(last));
    constexpr double maxDigits = std::numeric_limits<double>::max_exponent10 + 1;
    return largest < 10.0 || std::isnan(largest) ? 1.0 : std::min(std::log10(largest) + 1.0, maxDigits);
}

double primaryTicks(const gaugeData &layer)
{
    return static_cast<double>(std::max<qint64>(0, primaryTickCount(layer)));
}

double keyframesSize(const QList<gaugeLayer> &layers, const PictureStyle & /*style*/)
{
    constexpr double restOfLine = 16.0; // the angle and the separators
    double size = 0.0;
    for (const gaugeLayer &layer : layers) {
        const auto nameSize = static_cast<double>(layer.name.toUtf8().size());
        size += primaryTicks(layer.data) * (nameSize + digitCount(layer.data) + restOfLine);
    }
    return size;
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

double drawingSize(const QList<gaugeLayer> &layers, const PictureStyle &style, const DrawingCosts &costs)
{
    constexpr int maxDecimals = 400; // the painter's limit is lower
    double size = 0.0;
    for (const gaugeLayer &layer : layers) {
        const gaugeData &data = layer.data;
        size += static_cast<double>(totalTickCount(data)) * costs.tick;
        if (!data.tickCountEnabled)
            continue;
        const double characters = digitCount(data) + std::clamp(data.tickCountDecimalPlaces, 0, maxDecimals);
        double label = costs.label + characters * (style.textAsPaths ? costs.outline : costs.character);
        if (costs.repeatsFont)
            label += static_cast<double>(data.tickCountFont.family().toUtf8().size());
        size += primaryTicks(data) * label;
    }
    return size;
}

double svgSize(const QList<gaugeLayer> &layers, const PictureStyle &style)
{
    return drawingSize(layers, style, {100.0, 320.0, 25.0, 900.0, true});
}

double pdfSize(const QList<gaugeLayer> &layers, const PictureStyle &style)
{
    return drawingSize(layers, style, {20.0, 30.0, 5.0, 130.0, false});
}

constexpr std::array formats{
    ExportFormat{"png", true, true, writePng, nullptr},
    ExportFormat{"svg", true, false, writeSvgFile, svgSize},
    ExportFormat{"pdf", true, false, writePdfFile, pdfSize},
    ExportFormat{"csv", false, false, writeKeyframes, keyframesSize},
    ExportFormat{"gauge", false, false, writeGauge, nullptr},
};

} // namespace

const QList<const ExportFormat *> &exportFormats()
{
    static const QList<const ExportFormat *> all = [] {
        QList<const ExportFormat *> pointers;
        for (const ExportFormat &format : formats)
            pointers.append(&format);
        return pointers;
    }();
    return all;
}

const ExportFormat *findExportFormat(const QString &name)
{
    for (const ExportFormat &format : formats) {
        if (name == QLatin1String(format.name))
            return &format;
    }
    return nullptr;
}
