#include "exporter/formats.h"
#include "exporter/livepage.h"

#include <QIODevice>

#include <algorithm>

namespace {

/// The parts of the gauge. Without a choice of the user, layers whose names begin with "Needle" are its
/// needle.
GaugeParts partsOf(const ExportJob &job)
{
    if (!job.parts.isEmpty())
        return {job.parts, {}};
    const auto isNeedle = [](const gaugeLayer &layer) {
        return layer.name.startsWith(QLatin1String("Needle"));
    };
    QList<NeedleChoice> needles;
    if (std::ranges::any_of(job.layers, isNeedle))
        needles.append({QStringLiteral("Needle*"), {}});
    return splitGauge(job.layers, needles);
}

QString checkPage(const ExportJob &job)
{
    if (job.tables.isEmpty())
        return QStringLiteral("It has no scale: no layer with a scale shows its labels (--scale names one).");
    const QString failure = partsOf(job).failure;
    return failure.isEmpty() || !job.parts.isEmpty()
               ? failure
               : QStringLiteral("%1 --split chooses the layers of the needle.").arg(failure);
}

bool writePage(QIODevice &device, const ExportJob &job)
{
    const QByteArray page = livePage(job.gaugeName, partsOf(job).parts, job.tables);
    return !page.isEmpty() && device.write(page) == page.size();
}

/// The page holds an SVG whose labels are paths.
double pageSize(const ExportJob &job)
{
    ExportJob drawing = job;
    drawing.style.textAsPaths = true;
    return svgFormat.estimatedSize(drawing);
}

} // namespace

constinit const ExportFormat htmlFormat{.name = "html",
                                        .write = writePage,
                                        .estimatedSize = pageSize,
                                        .scales = ScaleUse::Any,
                                        .check = checkPage};
