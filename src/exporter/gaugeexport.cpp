#include "exporter/gaugeexport.h"

#include "exporter/commandline.h"
#include "exporter/progress.h"
#include "model/gaugefile.h"
#include "model/layernames.h"
#include "render/imageexport.h"
#include "render/keyframes.h"
#include "render/sweep.h"
#ifdef CORVALENCE_FAST_PNG
#include "exporter/pngencoder.h"
#endif

#include <QBuffer>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QSaveFile>
#include <QTextStream>

#include <algorithm>
#include <cstdio>
#include <limits>

namespace {

/// One file to make of a gauge.
struct Output
{
    ExportFormat format;
    int size; ///< In pixels; means nothing for a format without a size.
};

QList<Output> outputs(const ExportSettings &settings)
{
    QList<Output> all;
    for (const ExportFormat format : settings.formats) {
        if (isPicture(format)) {
            for (const int size : settings.sizes)
                all.append({format, size});
        } else {
            all.append({format, 0});
        }
    }
    return all;
}

/// The rows that one value of the layers option means: those of the name that it is as a whole, else of each
/// name or number in it. Sets @a unknown to what is neither.
QList<qsizetype> rowsNamed(const QString &value, const QList<gaugeLayer> &layers, QString &unknown)
{
    QList<qsizetype> rows;
    const auto appendNamed = [&layers, &rows](const QString &name) {
        const qsizetype before = rows.size();
        for (qsizetype row = 0; row < layers.size(); ++row) {
            if (layers.at(row).name == name)
                rows.append(row);
        }
        return rows.size() > before;
    };
    if (appendNamed(value))
        return rows;
    for (const QString &part : value.split(QLatin1Char(','))) {
        if (appendNamed(part.trimmed()))
            continue;
        bool isNumber = false;
        const int number = part.toInt(&isNumber);
        if (isNumber && number >= 1 && number <= layers.size())
            rows.append(number - 1);
        else
            unknown = part.trimmed();
    }
    return rows;
}

/// Leaves only the layers wanted, in the order of the gauge. Returns the reason when one is not there.
QString selectLayers(QList<gaugeLayer> &layers, const QStringList &wanted)
{
    if (wanted.isEmpty())
        return {};
    QList<bool> chosen(layers.size(), false);
    for (const QString &value : wanted) {
        QString unknown;
        for (const qsizetype row : rowsNamed(value, layers, unknown))
            chosen[row] = true;
        if (!unknown.isNull())
            return QStringLiteral("There is no layer \"%1\".").arg(unknown);
    }
    QList<gaugeLayer> selected;
    for (qsizetype row = 0; row < layers.size(); ++row) {
        if (chosen.at(row))
            selected.append(layers.at(row));
    }
    layers = selected;
    return {};
}

QString checkTicks(const QList<gaugeLayer> &layers, quint64 limit)
{
    quint64 ticks = 0;
    for (const gaugeLayer &layer : layers) {
        const quint64 more = totalTickCount(layer.data);
        const quint64 room = std::numeric_limits<quint64>::max() - ticks;
        ticks += std::min(more, room);
    }
    if (ticks <= limit)
        return {};
    QLocale plain = QLocale::c();
    plain.setNumberOptions(QLocale::DefaultNumberOptions); // thousands apart, for numbers of this length
    return QStringLiteral("It has %1 ticks, more than the limit of %2 (--tick-limit raises it).")
        .arg(plain.toString(ticks), plain.toString(limit));
}

/// The layers to export of a gauge file's bytes. Returns the reason when there are none.
QString readLayers(const QByteArray &bytes, const QString &baseName, const ExportSettings &settings,
                   QList<gaugeLayer> &layers)
{
    QString error;
    if (!gaugeFile::read(bytes, &layers, &error))
        return error;
    nameUnnamedLayers(layers, baseName, LoadInto::CurrentRow, 1); // as in a new window of one row
    error = selectLayers(layers, settings.layers);
    return error.isEmpty() ? checkTicks(layers, settings.tickLimit) : error;
}

/// Writes a PNG: the very bytes that the editor writes, by the faster way where there is one.
bool writePicture(QIODevice &device, int size, const QList<gaugeData> &stack, const PictureStyle &style)
{
#ifdef CORVALENCE_FAST_PNG
    const QImage image = gaugeImage(size, stack, style);
    return !image.isNull() && writeArgbPng(device, image);
#else
    return writePng(device, size, stack, style);
#endif
}

/// Writes what a text stream makes of a text, as the editor does. The stream does not see the device: it
/// would take the text for written when the device has taken a part.
bool writeText(QIODevice &device, const auto &text)
{
    QByteArray bytes;
    QTextStream(&bytes) << text;
    return device.write(bytes) == bytes.size();
}

/// Writes one output to an open device.
bool writeOutput(QIODevice &device, const Output &output, const QList<gaugeLayer> &layers,
                 const ExportSettings &settings)
{
    QList<gaugeData> stack;
    stack.reserve(layers.size());
    for (const gaugeLayer &layer : layers)
        stack.append(layer.data);
    const PictureStyle style{.millimetres = settings.trueSide(output.size),
                             .textAsPaths = settings.textAsPaths};
    switch (output.format) {
    case ExportFormat::Png:
        return writePicture(device, output.size, stack, style);
    case ExportFormat::Svg:
        return writeSvg(device, output.size, stack, style);
    case ExportFormat::Pdf:
        return writePdf(device, output.size, stack, style);
    case ExportFormat::KeyframeTable:
        return writeText(device, keyframeTable(layers));
    case ExportFormat::Gauge:
        return writeText(device, gaugeFile::write(layers));
    }
    Q_UNREACHABLE();
}

QString cannotMake(const Output &output)
{
    return QStringLiteral("The %1 could not be made.").arg(formatName(output.format));
}

/// A name template with its places filled, in the folder that the gauge's files go to.
QString pathWithoutSuffix(QString name, const QString &gaugePath, const QString &size,
                          const ExportSettings &settings)
{
    const QFileInfo gauge(gaugePath);
    name.replace(QLatin1String("{size}"), size);
    name.replace(QLatin1String("{name}"), gauge.completeBaseName());
    const QString folder = settings.outputFolder.isEmpty() ? gauge.path() : settings.outputFolder;
    return QDir::cleanPath(folder + QLatin1Char('/') + name);
}

QString outputPath(const QString &gaugePath, const Output &output, const ExportSettings &settings)
{
    if (!settings.outputFile.isEmpty())
        return settings.outputFile;
    const QString &name = isPicture(output.format) ? settings.pictureNames : settings.otherNames;
    return pathWithoutSuffix(name, gaugePath, QString::number(output.size), settings) + QLatin1Char('.') +
           formatName(output.format);
}

/// Makes one file. Returns the reason when that fails.
QString makeFile(const QString &path, const Output &output, const QList<gaugeLayer> &layers,
                 const ExportSettings &settings, Progress &progress)
{
    if (QFileInfo::exists(path)) {
        if (settings.existing == ExistingFile::Keep)
            return {};
        if (settings.existing == ExistingFile::Refuse)
            return QStringLiteral("%1 exists already (--overwrite replaces it, --keep keeps it).").arg(path);
    }
    if (!settings.dryRun) {
        const QString folder = QFileInfo(path).path();
        if (!QDir().mkpath(folder))
            return QStringLiteral("The folder %1 cannot be made.").arg(folder);
        QSaveFile file(path);
        if (!file.open(QIODevice::WriteOnly))
            return QStringLiteral("%1: %2").arg(path, file.errorString());
        const bool made = writeOutput(file, output, layers, settings);
        if (file.error() == QFileDevice::NoError && !made)
            return cannotMake(output);
        if (!file.commit())
            return QStringLiteral("%1: %2").arg(path, file.errorString());
    }
    progress.wrote(path);
    return {};
}

} // namespace

QString outputStem(const QString &gaugePath, const ExportSettings &settings)
{
    return pathWithoutSuffix(settings.otherNames, gaugePath, QString(), settings);
}

QString exportGauge(const QString &gaugePath, const ExportSettings &settings, Progress &progress)
{
    QFile file(gaugePath);
    if (!file.open(QIODevice::ReadOnly))
        return file.errorString();
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return file.errorString();
    file.close();

    QList<gaugeLayer> layers;
    QString reason = readLayers(bytes, QFileInfo(gaugePath).completeBaseName(), settings, layers);
    if (!reason.isEmpty())
        return reason;
    for (const Output &output : outputs(settings)) {
        const QString failure =
            makeFile(outputPath(gaugePath, output, settings), output, layers, settings, progress);
        if (reason.isEmpty())
            reason = failure;
    }
    return reason;
}

QString exportStandardInput(const ExportSettings &settings)
{
    QFile input;
    if (!input.open(stdin, QIODevice::ReadOnly))
        return input.errorString();
    const QByteArray bytes = input.readAll();
    if (input.error() != QFileDevice::NoError)
        return input.errorString();

    // Without a file name the first layer keeps the name of the row that it takes.
    QList<gaugeLayer> layers;
    const QString firstRow = QCoreApplication::translate("Window", "Layer %1").arg(1);
    QString reason = readLayers(bytes, firstRow, settings, layers);
    if (!reason.isEmpty() || settings.dryRun)
        return reason;

    const Output output = outputs(settings).constFirst();
    QBuffer result;
    if (!result.open(QIODevice::WriteOnly) || !writeOutput(result, output, layers, settings))
        return cannotMake(output);
    QFile standardOutput;
    const bool written = standardOutput.open(stdout, QIODevice::WriteOnly) &&
                         standardOutput.write(result.data()) == result.data().size() &&
                         standardOutput.flush();
    return written ? QString() : standardOutput.errorString();
}
