#include "fit/fitrun.h"

#include "fit/curvetable.h"
#include "fit/fitoptions.h"
#include "fit/fitreport.h"
#include "fit/gaugecheck.h"
#include "fit/scalecurve.h"
#include "fit/scalefit.h"
#include "fit/scalelabels.h"
#include "fit/scalelook.h"
#include "fit/scalemarks.h"
#include "fit/tablereader.h"
#include "model/gaugefile.h"
#include "render/labels.h"
#include "render/sweep.h"
#include "tools/gaugeinput.h"
#include "tools/inputfile.h"
#include "tools/outputfile.h"
#include "tools/terminal.h"

#include <QFileInfo>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <new>
#include <optional>

namespace {

constexpr qint64 maxTableSize = 1; // MiB

const QLatin1String standardStream("-");

QString tableName(const FitOptions &options)
{
    return options.table == standardStream ? QStringLiteral("standard input") : options.table;
}

/// Reads the table. Returns the reason for a failure.
QString readCurve(const FitOptions &options, std::optional<ScaleCurve> &curve)
{
    constexpr double maxAngle = 36'000.0;
    QByteArray bytes;
    QString reason = options.table == standardStream ? readStandardInput(maxTableSize, bytes)
                                                     : readInputFile(options.table, maxTableSize, bytes);
    if (!reason.isEmpty())
        return reason;
    MeasuredTable table = readTable(bytes);
    if (!table.failure.isEmpty())
        return table.failure;
    for (qsizetype row = 0; row < table.points.size(); ++row) {
        QPointF &point = table.points[row];
        if (options.map)
            point.setY(options.map->angle(point.y()));
        if (!(std::abs(point.y()) <= maxAngle)) {
            return QStringLiteral("%1: the value %2 has the angle %3; angles are limited to 100 turns")
                .arg(table.places.at(row))
                .arg(point.x())
                .arg(point.y());
        }
    }
    curve.emplace(table.points, options.straight ? ScaleCurve::Kind::Straight : ScaleCurve::Kind::Smooth,
                  options.extrapolate);
    return {};
}

/// Returns why there are no labels at the multiples of @a step.
QString describeStep(double step, const ScaleCurve &curve)
{
    if ((curve.maxValue() - curve.minValue()) / step < maxLabelCount)
        return QStringLiteral("--step %1 gives no label").arg(step);
    return QStringLiteral("--step %1 gives more than %2 labels").arg(step).arg(maxLabelCount);
}

/// Chooses the marks. Returns the reason for a failure.
QString chooseMarks(const FitOptions &options, const ScaleCurve &curve, const gaugeData &look,
                    ScaleMarks &marks)
{
    const QString points =
        QStringLiteral("the points, which go from %1 to %2").arg(curve.minValue()).arg(curve.maxValue());
    marks.minor = options.minor;
    marks.subminor = options.subminor;
    marks.withoutSign = options.withoutSign;
    if (!options.labels.isEmpty())
        marks.labels = options.labels;
    else if (options.step > 0.0)
        marks.labels = steppedLabels(curve.minValue(), curve.maxValue(), options.step);
    else
        marks.labels = chooseLabels(curve, look);
    if (marks.labels.isEmpty() && options.step == 0.0)
        return QStringLiteral("no round labels lie within %1 (--labels names others)").arg(points);
    if (marks.labels.isEmpty())
        return QStringLiteral("%1 within %2").arg(describeStep(options.step, curve), points);
    for (const double label : std::as_const(marks.labels)) {
        const QString text = QString::number(label, 'g', 15);
        if (std::isnan(curve.angle(label)))
            return QStringLiteral("the label %1 is beyond %2 (--extrapolate allows this)").arg(text, points);
        if (!isWrittenExactly(label, maxFormDecimals))
            return QStringLiteral("the label %1 needs more than %2 decimals; use another unit")
                .arg(text)
                .arg(maxFormDecimals);
    }
    const int neededDecimals = labelDecimals(marks.labels);
    marks.decimals = options.decimals >= 0 ? options.decimals : neededDecimals;
    if (marks.decimals < neededDecimals)
        return QStringLiteral("the labels need %1 decimals, more than --decimals %2 writes")
            .arg(neededDecimals)
            .arg(options.decimals);
    return {};
}

/// Gives the labels of a layer only the decimals that they need.
void shortenLabels(gaugeData &layer)
{
    const auto values = [](const gaugeData &data) {
        QList<double> numbers;
        for (const GaugeLabel &label : gaugeLabels(data))
            numbers.append(label.text.toDouble());
        return numbers;
    };
    layer.tickCountDecimalPlaces = std::min(layer.tickCountDecimalPlaces, labelDecimals(values(layer)));
}

qsizetype markCount(const ScaleMarks &marks)
{
    const qsizetype gaps = marks.labels.size() - 1;
    return marks.labels.size() + gaps * (qsizetype(marks.minor) * marks.subminor - 1);
}

void printReport(const QStringList &lines)
{
    for (const QString &line : lines)
        std::fprintf(stderr, "%s\n", maskControlCharacters(line).c_str());
}

bool isSameFile(const QString &a, const QString &b)
{
    const QString id = fileId(a);
    return !id.isEmpty() && id == fileId(b);
}

/// Whether an output would replace a file that is read, or the other output. Only the gauge may replace that
/// of --into.
QString checkReplacesNoInput(const FitOptions &options)
{
    if (options.existing == ExistingFile::Keep)
        return {};
    QStringList inputs{styleFile(options.style)};
    if (options.table != standardStream)
        inputs.append(options.table);
    for (const QString &output : {options.output, options.angleTable}) {
        if (output == standardStream)
            continue;
        const QStringList kept = output == options.output ? inputs : inputs + QStringList{options.into};
        if (std::ranges::any_of(kept, [&output](const QString &input) { return isSameFile(output, input); }))
            return QStringLiteral("%1 is read and is not replaced.").arg(output);
    }
    if (isSameFile(options.output, options.angleTable))
        return QStringLiteral("%1 and %2 are the same file.").arg(options.output, options.angleTable);
    return {};
}

/// Sets @a kept when one of the outputs exists and is kept: needle and face must agree, so that both are
/// written or neither. Returns the reason for a failure.
QString checkOutputs(const FitOptions &options, bool &kept)
{
    QString reason = checkReplacesNoInput(options);
    for (const QString &output : {options.output, options.angleTable}) {
        if (!reason.isEmpty() || output.isEmpty() || output == standardStream)
            continue;
        const WriteResult result = checkOutputFile(output, options.existing);
        reason = result.reason;
        kept = kept || !result.written;
    }
    return reason;
}

/// The name of the gauge in tables: of its file, or else of the measured points.
QString gaugeName(const FitOptions &options)
{
    return QFileInfo(options.output == standardStream ? options.table : options.output).completeBaseName();
}

WriteResult writeOutput(const QString &path, const QByteArray &bytes, ExistingFile existing)
{
    if (path != standardStream)
        return writeOutputFile(path, bytes, existing);
    const QString reason = writeStandardOutput(bytes);
    return {reason.isEmpty(), reason};
}

/// Makes the gauge. Returns the reason for a failure.
QString makeGauge(const FitOptions &options)
{
    bool kept = false;
    QString reason = checkOutputs(options, kept);
    if (!reason.isEmpty() || kept)
        return reason;

    const QString table = tableName(options) + QLatin1String(": ");
    std::optional<ScaleCurve> curve;
    reason = readCurve(options, curve);
    if (!reason.isEmpty())
        return table + reason;
    ScalePlace place = readScalePlace(options);
    if (!place.failure.isEmpty())
        return place.failure;
    ScaleMarks marks;
    reason = chooseMarks(options, *curve, place.look, marks);
    if (!reason.isEmpty())
        return table + reason;
    ScaleFit fit = fitScale(*curve, marks, options.maxError, place.look);
    if (!fit.failure.isEmpty())
        return table + fit.failure;
    if (options.decimals < 0) {
        for (gaugeLayer &layer : fit.layers)
            shortenLabels(layer.data);
    }
    const QList<gaugeLayer> layers = withRanges(fit.layers, options, *curve, reason);
    if (!reason.isEmpty())
        return table + reason;

    FitReport report{.output = options.output == standardStream ? QStringLiteral("standard output")
                                                                : options.output,
                     .scale = fit.layers,
                     .labelCount = marks.labels.size(),
                     .markCount = markCount(marks),
                     .maxError = options.maxError,
                     .worstError = fit.worstError,
                     .worstValue = fit.worstValue,
                     .overlaps = overlappingLabels(fit.layers)};
    for (qsizetype index = 0; index < layers.size(); ++index)
        place.layers.insert(place.row + index, layers.at(index));
    CurveTable angles;
    if (!options.angleTable.isEmpty()) {
        angles =
            makeCurveTable(*curve, std::min(curve->minValue(), marks.labels.constFirst()),
                           std::max(curve->maxValue(), marks.labels.constLast()),
                           QFileInfo(options.angleTable).suffix().toLower(), gaugeName(options), fit.layers);
        if (!angles.failure.isEmpty())
            return options.angleTable + QLatin1String(": ") + angles.failure;
    }
    WriteResult result = writeOutput(options.output, gaugeFile::write(place.layers), options.existing);
    if (result.written && !options.angleTable.isEmpty())
        result = writeOutput(options.angleTable, angles.bytes, options.existing);
    if (!result.written)
        return result.reason;
    printReport(options.jsonReport ? QStringList(fitReportJson(report)) : fitReportText(report));
    return {};
}

/// Reads the layers to check. Returns the reason for a failure.
QString readCheckedLayers(const FitOptions &options, QList<gaugeLayer> &layers)
{
    constexpr qint64 maxCheckedLabels = 1'000'000;
    QString reason = readGaugeFile(options.checkedGauge, defaultMaxGaugeSize, layers);
    if (!reason.isEmpty())
        return reason;
    if (!options.checkedLayers.isEmpty()) {
        QList<qsizetype> rows;
        reason = selectLayers(options.checkedLayers, layers, rows);
        if (!reason.isEmpty())
            return reason;
        QList<gaugeLayer> selected;
        for (const qsizetype row : rows)
            selected.append(layers.at(row));
        layers = selected;
    }
    qint64 labels = 0;
    for (const gaugeLayer &layer : std::as_const(layers))
        labels += layer.data.tickCountEnabled ? std::max<qint64>(0, primaryTickCount(layer.data)) : 0;
    if (labels > maxCheckedLabels)
        return QStringLiteral("It has %1 labels, more than the limit of %2.")
            .arg(labels)
            .arg(maxCheckedLabels);
    return {};
}

/// Compares a gauge with the table. Returns the reason for a failure.
QString checkGauge(const FitOptions &options, bool &passed)
{
    std::optional<ScaleCurve> curve;
    QString reason = readCurve(options, curve);
    if (!reason.isEmpty())
        return tableName(options) + QLatin1String(": ") + reason;
    QList<gaugeLayer> layers;
    reason = readCheckedLayers(options, layers);
    if (!reason.isEmpty())
        return options.checkedGauge + QLatin1String(": ") + reason;

    const CheckReport report{.gauge = options.checkedGauge,
                             .table = tableName(options),
                             .marks = checkMarks(layers, *curve, options.withoutSign),
                             .maxError = options.maxError};
    if (report.marks.isEmpty())
        return options.checkedGauge + QLatin1String(": It has no label that could be checked.");
    passed = report.failures().isEmpty();
    printReport(options.jsonReport ? QStringList(checkReportJson(report)) : checkReportText(report));
    return {};
}

} // namespace

ExitStatus runFit(const FitOptions &options)
{
    bool passed = true;
    QString reason;
    try {
        reason = options.checkedGauge.isEmpty() ? makeGauge(options) : checkGauge(options, passed);
    } catch (const std::bad_alloc &) {
        reason = QStringLiteral("There is not enough memory.");
    }
    if (!reason.isEmpty())
        return fail(reason);
    return passed ? AllMade : SomeFailed;
}
