#include "exporter/gaugeexport.h"

#include "exporter/exportoptions.h"
#include "exporter/outputnames.h"
#include "exporter/progress.h"
#include "exporter/scaleselection.h"
#include "render/imageexport.h"
#include "tools/gaugeinput.h"
#include "tools/inputfile.h"
#include "tools/outputfile.h"
#include "tools/terminal.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QFileInfo>
#include <QThread>
#include <QThreadPool>

#include <algorithm>
#include <new>

namespace {

/// What is exported of a gauge file.
struct Gauge
{
    QString name; ///< The file's name without its suffix. "Layer 1" for standard input.
    QList<gaugeLayer> layers;
    QList<GaugePart> parts;   ///< Empty when its pictures are not split.
    QList<AngleTable> tables; ///< Empty when no format needs them.

    /// The part of this name. Null when there is none.
    [[nodiscard]] const GaugePart *part(const QString &partName) const
    {
        const auto found = std::ranges::find(parts, partName, &GaugePart::name);
        return found == parts.end() ? nullptr : &*found;
    }
};

/// Removes the layers that are not in @a wanted and keeps the order. Returns the reason for a failure.
QString keepLayers(const QStringList &wanted, QList<gaugeLayer> &layers)
{
    if (wanted.isEmpty())
        return {};
    QList<bool> isSelected(layers.size(), false);
    for (const QString &value : wanted) {
        QList<qsizetype> rows;
        QString failure = selectLayers(value, layers, rows);
        if (!failure.isEmpty())
            return failure;
        for (const qsizetype row : std::as_const(rows))
            isSelected[row] = true;
    }
    QList<gaugeLayer> selected;
    for (qsizetype row = 0; row < layers.size(); ++row) {
        if (isSelected.at(row))
            selected.append(layers.at(row));
    }
    layers = selected;
    return {};
}

/// Reads the gauge to export. Its first layer gets the gauge's name if it has none. Returns the reason for a
/// failure.
QString readForExport(const QByteArray &bytes, const ExportOptions &options, Gauge &gauge)
{
    QString reason = readGauge(bytes, gauge.name, gauge.layers);
    if (reason.isEmpty())
        reason = keepLayers(options.layers, gauge.layers);
    if (reason.isEmpty())
        reason = checkTickCount(gauge.layers, options.tickLimit);
    const auto usesScales = [](const ExportFormat *format) { return format->scales != ScaleUse::None; };
    if (reason.isEmpty() && std::ranges::any_of(options.formats, usesScales)) {
        const ScaleTables scales = scaleTables(gauge.layers, options.scales, options.maxError);
        gauge.tables = scales.tables;
        reason = scales.failure;
    }
    if (!reason.isEmpty() || options.needles.isEmpty())
        return reason;
    const GaugeParts split = splitGauge(gauge.layers, options.needles);
    gauge.parts = split.parts;
    return split.failure;
}

/// What one output is made of.
ExportJob jobOf(const Output &output, const Gauge &gauge, const ExportOptions &options)
{
    ExportJob job{
        .gaugeName = gauge.name,
        .layers = gauge.layers,
        .parts = gauge.parts,
        .tables = gauge.tables,
        .sizes = options.sizes,
        .crops = {},
        .partName = output.part,
        .size = output.size,
        .style = {.millimetres = options.printedSize(output.size), .textAsPaths = options.textAsPaths},
        .compression = options.compression,
        .quality = options.quality,
        .byteOrder = options.byteOrder};
    if (const GaugePart *const part = gauge.part(output.part)) {
        job.layers = part->layers;
        job.style.centreDot = part == &gauge.parts.constFirst();
        job.style.rotation = -part->needleAngle;
        job.cropped = !job.style.centreDot && options.crop;
    }
    // Pictures of the other parts are laid over the bottom one.
    if (job.style.centreDot || output.format->isOpaque)
        job.style.background = options.background;
    return job;
}

/// Whether the parts of a split gauge are cropped in one of the formats.
bool cropsParts(const ExportOptions &options)
{
    return options.crop && std::ranges::any_of(options.formats, &ExportFormat::cropsParts);
}

/// Where the parts above the face are cropped. Leaves out those for which there is not enough memory: they
/// are not made either.
QList<PartCrop> partCrops(const Gauge &gauge, const ExportOptions &options)
{
    QList<PartCrop> crops;
    for (const GaugePart &part : gauge.parts) {
        if (&part == &gauge.parts.constFirst() || part.layers.isEmpty())
            continue;
        for (const int size : options.sizes) {
            const Output picture{findExportFormat(QStringLiteral("rgb565")), size, part.name, {}};
            const QRect area = drawRawPicture(jobOf(picture, gauge, options), options.byteOrder).area;
            if (!area.isNull())
                crops.append({part.name, size, area});
        }
    }
    return crops;
}

constexpr qsizetype maxOutputSize = qsizetype(1024) * 1024 * 1024;

QString tooLarge(const Output &output)
{
    return QStringLiteral("The %1 file would be larger than 1 GiB.").arg(QLatin1String(output.format->name));
}

/// Prepares what one output is made of. Returns the reason why it cannot be made.
QString prepareJob(const Output &output, const Gauge &gauge, const ExportOptions &options, ExportJob &job)
{
    job = jobOf(output, gauge, options);
    if (output.format->scales == ScaleUse::OneInEachFile)
        job.tables = gauge.tables.mid(output.scale, 1);
    if (output.format->tableRounding > 0.0) {
        const ScaleTables scales =
            scaleTables(gauge.layers, options.scales,
                        std::max(options.maxError - output.format->tableRounding, options.maxError / 2.0));
        if (!scales.failure.isEmpty())
            return scales.failure;
        job.tables = scales.tables;
        for (AngleTable &table : job.tables)
            table.maxError = options.maxError;
    }
    QString refusal = output.format->check != nullptr ? output.format->check(job) : QString();
    const bool isTooLarge = output.format->estimatedSize != nullptr &&
                            output.format->estimatedSize(job) > static_cast<double>(maxOutputSize);
    return refusal.isEmpty() && isTooLarge ? tooLarge(output) : refusal;
}

/// Makes the bytes of one output. Returns the reason for a failure.
QString makeOutput(const Output &output, const Gauge &gauge, const ExportOptions &options, QByteArray &bytes)
{
    const QString name = QLatin1String(output.format->name);
    ExportJob job;
    QString reason = prepareJob(output, gauge, options, job);
    if (!reason.isEmpty())
        return reason;
    if (output.format->estimatedSize != nullptr) {
        // Fails here if there is not enough memory: a destructor in Qt that fails to allocate memory ends the
        // program. The text is in memory as UTF-16 and twice as UTF-8 when it is written.
        (void)QByteArray(static_cast<qsizetype>(4.0 * output.format->estimatedSize(job)), Qt::Uninitialized);
    }
    const bool listsCrops = output.format->listsCrops && cropsParts(options);
    // Outside the global pool, Qt's raster engine starts threads itself and waits forever if there are none.
    if ((output.format->isRaster || listsCrops) &&
        !QThreadPool::globalInstance()->contains(QThread::currentThread()))
        return QStringLiteral("The %1 cannot be made: the system cannot start more threads.").arg(name);
    if (listsCrops)
        job.crops = partCrops(gauge, options);

    QBuffer buffer(&bytes);
    const bool made = buffer.open(QIODevice::WriteOnly) && output.format->write(buffer, job);
    if (!made)
        return QStringLiteral("The %1 cannot be made: there is not enough memory.").arg(name);
    return bytes.size() > maxOutputSize ? tooLarge(output) : QString();
}

/// Why several scales do not fit the only file that the user asked for. Empty when they do.
QString checkOneFile(const Output &output, const Gauge &gauge, const ExportOptions &options)
{
    const bool takesOne = output.format->scales == ScaleUse::OneInEachFile &&
                          (!options.outputFile.isEmpty() || options.readsStandardInput());
    if (!takesOne || gauge.tables.size() < 2)
        return {};
    return QStringLiteral("It has %1 scales, but a file in %2 holds only one (--scale chooses it).")
        .arg(gauge.tables.size())
        .arg(QLatin1String(output.format->name));
}

/// The files of an output, now that the gauge is known. Sets @a reason if there are several and the user
/// named one, or another gauge's file has the name of one.
QList<Output> filesOf(const Output &output, const QString &gaugePath, const Gauge &gauge,
                      const ExportOptions &options, OutputOwners &owners, QString &reason)
{
    if (output.format->scales != ScaleUse::OneInEachFile)
        return {output};
    reason = checkOneFile(output, gauge, options);
    if (!reason.isEmpty())
        return {};
    QStringList names;
    for (const AngleTable &table : gauge.tables)
        names.append(table.name);
    QList<Output> files = outputsForScales(output, gaugePath, names, options);
    for (const Output &file : std::as_const(files)) {
        reason = owners.add(file.path, gaugePath);
        if (!reason.isEmpty())
            return {};
    }
    return files;
}

/// Why a dry run reports that the file would not be made. Empty when it would be made.
QString checkInDryRun(const Output &output, const Gauge &gauge, const ExportOptions &options)
{
    ExportJob job;
    return options.dryRun ? prepareJob(output, gauge, options, job) : QString();
}

/// Makes and writes one file. Returns the reason for a failure.
QString makeFile(const Output &output, const QString &gaugeId, const InputFiles &inputs, const Gauge &gauge,
                 const ExportOptions &options, Progress &progress)
{
    const GaugePart *const part = gauge.part(output.part);
    if (part != nullptr && part->layers.isEmpty())
        return {};
    const QString id = fileId(output.path);
    const bool updatesGauge = output.format == findExportFormat(QStringLiteral("gauge")) && id == gaugeId;
    if (!id.isEmpty() && inputs.contains(id) && !updatesGauge && options.existing != ExistingFile::Keep)
        return QStringLiteral("%1 is one of the input files and is not replaced.").arg(output.path);

    QString refusal = checkInDryRun(output, gauge, options);
    if (!refusal.isEmpty())
        return refusal;
    WriteResult result = checkOutputFile(output.path, options.existing);
    if (result.written && !options.dryRun) {
        QByteArray bytes;
        QString reason = makeOutput(output, gauge, options, bytes);
        if (!reason.isEmpty())
            return reason;
        result = writeOutputFile(output.path, bytes, options.existing);
    }
    if (result.written)
        progress.wrote(output.path);
    return result.reason;
}

QString inputLimitOption()
{
    return QStringLiteral("--input-limit");
}

/// Runs a part of an export. Running out of memory is a failure of this part only.
QString withoutBadAlloc(const auto &work)
{
    try {
        return work();
    } catch (const std::bad_alloc &) {
        return QStringLiteral("There is not enough memory.");
    }
}

} // namespace

QString exportGauge(const QString &gaugePath, const InputFiles &inputs, const ExportOptions &options,
                    OutputOwners &owners, Progress &progress)
{
    if (options.notUtf8.contains(gaugePath))
        return QStringLiteral("Its name is not UTF-8.");
    Gauge gauge{QFileInfo(gaugePath).completeBaseName(), {}, {}, {}};
    QString reason = checkBaseName(gaugePath, options);
    if (reason.isEmpty()) {
        reason = withoutBadAlloc([&] {
            QByteArray bytes;
            const QString failure = readInputFile(gaugePath, options.inputLimit, bytes, inputLimitOption());
            return failure.isEmpty() ? readForExport(bytes, options, gauge) : failure;
        });
    }
    if (!reason.isEmpty())
        return reason;
    const QString gaugeId = fileId(gaugePath);
    for (const Output &output : outputsOf(gaugePath, options)) {
        const QString failure = withoutBadAlloc([&] {
            QString first;
            for (const Output &file : filesOf(output, gaugePath, gauge, options, owners, first)) {
                const QString reasonOfFile = makeFile(file, gaugeId, inputs, gauge, options, progress);
                if (first.isEmpty())
                    first = reasonOfFile;
            }
            return first;
        });
        if (reason.isEmpty())
            reason = failure;
    }
    return reason;
}

QString exportStandardInput(const ExportOptions &options)
{
    return withoutBadAlloc([&] {
        QByteArray bytes;
        QString reason = readStandardInput(options.inputLimit, bytes, inputLimitOption());
        if (!reason.isEmpty())
            return reason;
        // Without a file name the first layer gets the name of its row.
        Gauge gauge{QCoreApplication::translate("Window", "Layer %1").arg(1), {}, {}, {}};
        reason = readForExport(bytes, options, gauge);
        if (!reason.isEmpty())
            return reason;
        const ExportFormat *format = options.formats.constFirst();
        const Output output{format, format->isPicture ? options.sizes.constFirst() : 0, {}, {}};
        reason = checkOneFile(output, gauge, options);
        if (reason.isEmpty())
            reason = checkInDryRun(output, gauge, options);
        if (!reason.isEmpty() || options.dryRun)
            return reason;
        QByteArray result;
        reason = makeOutput(output, gauge, options, result);
        return reason.isEmpty() ? writeStandardOutput(result) : reason;
    });
}
