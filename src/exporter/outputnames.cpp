#include "exporter/outputnames.h"

#include "tools/program.h"

#include <QFileInfo>
#include <QHash>
#include <QSet>

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
    QString rest = info.fileName();
    QFileInfo folder(info.absolutePath());
    while (!folder.exists() && !folder.isRoot()) {
        rest = folder.fileName() + QLatin1Char('/') + rest;
        folder.setFile(folder.path());
    }
    return folder.canonicalFilePath() + QLatin1Char('/') + rest;
}

QString alreadyWritten(const QString &path, const QString &gauge)
{
    return QStringLiteral("%1 is already written for %2.").arg(path, gauge);
}

/// The name of a scale as part of a file name on every system.
QString fileNamePart(const QString &scale)
{
    constexpr qsizetype maxLength = 60; // file names have up to 255 bytes, a character up to 3
    const QString start = scale.left(maxLength);
    QString part;
    for (const QChar character : start) {
        const bool isAllowed = character.isPrint() && !character.isSurrogate() &&
                               !QStringLiteral("/\\:*?\"<>|").contains(character);
        part += isAllowed ? character : QLatin1Char('_');
    }
    return part.trimmed().isEmpty() ? QStringLiteral("scale") : part.trimmed();
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

QList<Output> outputsForScales(const Output &output, const QString &gaugePath, const QStringList &scaleNames,
                               const ExportOptions &options)
{
    if (scaleNames.size() < 2)
        return {output};
    QList<Output> outputs;
    QSet<QString> used;
    QHash<QString, int> nextNumbers; // of names that several scales have
    for (qsizetype scale = 0; scale < scaleNames.size(); ++scale) {
        const QString part = fileNamePart(scaleNames.at(scale));
        QString name = part;
        int number = nextNumbers.value(part.toCaseFolded(), 2);
        while (used.contains(name.toCaseFolded()))
            name = part + QLatin1Char('-') + QString::number(number++);
        nextNumbers.insert(part.toCaseFolded(), number);
        used.insert(name.toCaseFolded());
        outputs.append({output.format, output.size, output.part,
                        outputPath(gaugePath, *output.format, output.size, name, options), scale});
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
                reason = alreadyWritten(output.path, other);
        }
        reasons.append(reason);
        if (!reason.isEmpty())
            continue;
        for (const Output &output : outputs)
            gaugeOfOutput.insert(uniquePath(output.path, options.existing), gauge);
    }
    return reasons;
}

OutputOwners::OutputOwners(const ExportOptions &options)
    : m_existing(options.existing)
{
    for (const QString &gauge : options.files) {
        for (const Output &output : outputsOf(gauge, options))
            (void)add(output.path, gauge);
    }
}

QString OutputOwners::add(const QString &path, const QString &gauge)
{
    const QString id = uniquePath(path, m_existing);
    const std::lock_guard lock(m_mutex);
    const QString owner = m_gauges.value(id);
    if (owner.isEmpty())
        m_gauges.insert(id, gauge);
    return owner.isEmpty() || owner == gauge ? QString() : alreadyWritten(path, owner);
}
