#include "fit/curvetable.h"

#include "exporter/exportformat.h"
#include "render/angletable.h"
#include "render/gaugepainter.h"
#include "render/simplifiedtable.h"

#include <QBuffer>

#include <algorithm>
#include <cmath>

namespace {

/// Returns the number of parts into which the curve between two consecutive points is divided, so that
/// straight lines between the parts depart from it by at most @a maxError. @a rise is the difference of their
/// angles.
///
/// Beyond the points the curve is straight. Between them it is at most as steep at each end as three times
/// the line through both (Fritsch and Carlson, 1980), so that its second derivative by the part of the way is
/// at most 12 rise, and a straight line over 1/n of the way departs by at most 12 rise / (8 n^2).
qsizetype partCount(double rise, double maxError)
{
    return std::max<qsizetype>(1,
                               static_cast<qsizetype>(std::ceil(std::sqrt(1.5 * std::abs(rise) / maxError))));
}

/// Points of the curve between which straight lines depart from it by at most @a maxError degrees, with the
/// measured ones among them.
QList<QPointF> sampledCurve(const ScaleCurve &curve, double min, double max, double maxError)
{
    QList<QPointF> ends{{min, curve.angle(min)}};
    for (const QPointF &point : curve.points()) {
        if (point.x() > min && point.x() < max)
            ends.append(point);
    }
    ends.append({max, curve.angle(max)});
    QList<QPointF> samples{ends.constFirst()};
    for (qsizetype gap = 1; gap < ends.size(); ++gap) {
        const QPointF &from = ends.at(gap - 1);
        const QPointF &to = ends.at(gap);
        const bool isBeyond = to.x() <= curve.minValue() || from.x() >= curve.maxValue();
        const qsizetype count = isBeyond ? 1 : partCount(to.y() - from.y(), maxError);
        for (qsizetype part = 1; part < count; ++part) {
            const double fraction = static_cast<double>(part) / static_cast<double>(count);
            const double value = from.x() + (to.x() - from.x()) * fraction;
            if (value > samples.constLast().x() && value < to.x())
                samples.append({value, curve.angle(value)});
        }
        samples.append(to);
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
    const ExportFormat *writer = findExportFormat(format);
    const double maxError = std::max(table.maxError - writer->tableRounding, table.maxError / 2.0);
    // Some of the error is left for the curve between the samples.
    const double samplingError = maxError / 10.0;
    table.points = simplifiedTable(sampledCurve(curve, min, max, samplingError), maxError - samplingError);

    ExportJob job;
    job.gaugeName = gaugeName;
    job.tables = {table};
    job.sizes = {canvasSize};
    CurveTable result;
    if (writer->check != nullptr)
        result.failure = writer->check(job);
    QBuffer buffer(&result.bytes);
    if (result.failure.isEmpty() && (!buffer.open(QIODevice::WriteOnly) || !writer->write(buffer, job)))
        result.failure = QStringLiteral("There is not enough memory.");
    return result;
}
