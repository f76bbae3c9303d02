#include "exporter/outputnames.h"

#include "tools/program.h"

#include <QFileInfo>
#include <QHash>

#include <algorithm>

namespace {

QString outputPath(const QString &gaugePath, const ExportFormat &format, int size, const QString &part,
                   const ExportOptions &options)
{
    if (!options.outputFile.isEmpty())
        return options.outputFile;
    const QFileInfo gauge(gaugePath);
    QString name = format.isPicture ? options.pictureNames : options.otherNames;
    // In this order, because a gauge's name may hold "{size}".
    name.replace(QLatin1String("{size}"), QString::number(size));
    name.replace(QLatin1String("{name}"), gauge.completeBaseName());
    const QString folder = options.outputFolder.isEmpty() ? gauge.path() : options.outputFolder;
    if (!part.isEmpty())
        name += QLatin1Char('-') + part;
    name += QLatin1Char('.') + QLatin1String(format.name);
    // Not with QDir::cleanPath(), which makes the current folder of "link/..".
    if (folder == QLatin1String("."))
        return nativeName(name);
    return folder.endsWith(QLatin1Char('/')) ? folder + name : folder + QLatin1Char('/') + name;
}

/// The path without links, as far as it exists. A link to a file counts as the file if it would be replaced.
QString uniquePath(const QString &path, ExistingFile existing)
{
    const QFileInfo info(path);
    if (existing == ExistingFile::Overwrite && info.exists())
        return info.canonicalFilePath();
    const QString folder = QFileInfo(info.path()).canonicalFilePath();
    return folder.isEmpty() ? info.absoluteFilePath() : folder + QLatin1Char('/') + info.fileName();
}

} // namespace

QList<Output> outputsOf(const QString &gaugePath, const ExportOptions &options)
{
    QList<Output> outputs;
    const qsizetype needleCount = options.needles.size();
    for (const ExportFormat *format : options.formats) {
        const bool isSplit = format->isPicture && needleCount > 0;
        const QList<int> sizes = format->isPicture ? options.sizes : QList<int>{0};
        const QStringList parts = isSplit ? partNames(needleCount) : QStringList{QString()};
        for (const int size : sizes) {
            for (const QString &part : parts)
                outputs.append({format, size, part, outputPath(gaugePath, *format, size, part, options)});
        }
    }
    return outputs;
}

QString checkBaseName(const QString &gaugePath, const ExportOptions &options)
{
    if (!options.outputFile.isEmpty())
        return {};
    const QString name = QFileInfo(gaugePath).completeBaseName();
    const bool onlyDots = std::ranges::all_of(name, [](QChar character) { return character == u'.'; });
    return onlyDots ? QStringLiteral("Its name has nothing before the suffix (--to names the output).")
                    : QString();
}

QStringList findNameCollisions(const ExportOptions &options)
{
    QHash<QString, QString> gaugeOfOutput;
    QStringList reasons;
    for (const QString &gauge : options.files) {
        const QList<Output> outputs = outputsOf(gauge, options);
        QString reason;
        for (const Output &output : outputs) {
            const QString other = gaugeOfOutput.value(uniquePath(output.path, options.existing));
            if (!other.isEmpty() && reason.isEmpty())
                reason = QStringLiteral("%1 is already written for %2.").arg(output.path, other);
        }
        reasons.append(reason);
        if (!reason.isEmpty())
            continue;
        for (const Output &output : outputs)
            gaugeOfOutput.insert(uniquePath(output.path, options.existing), gauge);
    }
    return reasons;
}
