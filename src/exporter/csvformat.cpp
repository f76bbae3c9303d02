#include "exporter/formats.h"
#include "render/drawingsize.h"
#include "render/keyframes.h"

#include <QIODevice>
#include <QStringEncoder>

#include <cmath>

namespace {

bool writeKeyframes(QIODevice &device, const ExportJob &job)
{
    // Not with a QTextStream: without enough memory its destructor ends the program.
    QStringEncoder encoder(QStringConverter::Utf8);
    const QByteArray bytes = encoder.encode(keyframeTable(job.layers));
    return device.write(bytes) == bytes.size();
}

double keyframesSize(const ExportJob &job)
{
    constexpr double restOfLine = 27.0; // two signs, two points with ten decimals, three separators
    double size = 0.0;
    for (const gaugeLayer &layer : job.layers) {
        const auto nameSize = static_cast<double>(layer.name.toUtf8().size());
        const double maxAngle = std::abs(layer.data.startAngle) + std::abs(layer.data.angleLength);
        size += primaryTicks(layer.data) *
                (nameSize + valueDigits(layer.data) + digitCount(maxAngle) + restOfLine);
    }
    return size;
}

} // namespace

constinit const ExportFormat csvFormat{
    .name = "csv", .write = writeKeyframes, .estimatedSize = keyframesSize};
