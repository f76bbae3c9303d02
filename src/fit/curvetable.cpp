#include "fit/curvetable.h"

#include "exporter/exportformat.h"
#include "render/angletable.h"
#include "render/gaugepainter.h"
#include "render/simplifiedtable.h"

#include <QBuffer>

#include <algorithm>
#include <cmath>

namespace {

/// Points of the curve that are close to each other, with the measured ones among them.
QList<QPointF> sampledCurve(const ScaleCurve &curve, double min, double max)
{
    constexpr qsizetype totalCount = 20'000;
    QList<double> values{min, max};
    for (const QPointF &point : curve.points()) {
        if (point.x() > min && point.x() < max)
            values.append(point.x());
    }
    std::ranges::sort(values);
    const qsizetype countInGap = std::max<qsizetype>(1, totalCount / values.size());
    QList<QPointF> samples;
    for (qsizetype gap = 0; gap < values.size(); ++gap) {
        const double from = values.at(gap);
        const double to = values.value(gap + 1, from);
        for (qsizetype part = 0; part < countInGap; ++part) {
            const double value =
                from + (to - from) * static_cast<double>(part) / static_cast<double>(countInGap);
            if (samples.isEmpty() || value > samples.constLast().x())
                samples.append({value, curve.angle(value)});
        }
    }
    return samples;
}

} // namespace

CurveTable makeCurveTable(const ScaleCurve &curve, double min, double max, const QString &format,
                          const QString &gaugeName, const QList<gaugeLayer> &layers)
{
    AngleTable table;
    table.name = gaugeName;
    for (const gaugeLayer &layer : layers)
        table.layers.append(layer.name);
    // Some of the error is left for the curve between the samples.
    table.points = simplifiedTable(sampledCurve(curve, min, max), 0.9 * table.maxError);

    ExportJob job;
    job.gaugeName = gaugeName;
    job.tables = {table};
    job.sizes = {canvasSize};
    const ExportFormat *writer = findExportFormat(format);
    CurveTable result;
    if (writer->check != nullptr)
        result.failure = writer->check(job);
    QBuffer buffer(&result.bytes);
    if (result.failure.isEmpty() && (!buffer.open(QIODevice::WriteOnly) || !writer->write(buffer, job)))
        result.failure = QStringLiteral("There is not enough memory.");
    return result;
}
