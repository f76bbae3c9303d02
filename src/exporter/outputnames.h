#ifndef OUTPUTNAMES_H
#define OUTPUTNAMES_H

#include "exporter/exportoptions.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <mutex>

/// One file to make of a gauge.
struct Output
{
    const ExportFormat *format;
    int size;     ///< In pixels; 0 for a format without a size.
    QString part; ///< The name of the GaugePart that is drawn. Empty: the whole gauge.
    QString path;
    qsizetype scale = 0; ///< The index of the table in a file for one scale.
};

/// The files to make of a gauge. A part for which the gauge has no layers gets no file.
[[nodiscard]] QList<Output> outputsOf(const QString &gaugePath, const ExportOptions &options);

/// The files of an output whose format takes one scale in each file: named after the scale when there are
/// several. No two names differ in case only.
[[nodiscard]] QList<Output> outputsForScales(const Output &output, const QString &gaugePath,
                                             const QStringList &scaleNames, const ExportOptions &options);

/// Why no files can be named after the gauge: its name is empty without its suffix, or only dots, and would
/// lead to another folder. Empty when there is no such reason.
[[nodiscard]] QString checkBaseName(const QString &gaugePath, const ExportOptions &options);

/// For each gauge the reason why it is not exported: one of its files has the name of a file of an earlier
/// gauge. Empty when there is no such reason.
[[nodiscard]] QStringList findNameCollisions(const ExportOptions &options);

/// Which gauge each file is written for. The files for scales are added when the gauge has been read.
/// Thread-safe.
class OutputOwners
{
public:
    /// Contains what outputsOf() returns for all gauges. The first gauge has a file that several would write.
    explicit OutputOwners(const ExportOptions &options);

    /// Adds a file of a gauge. Returns an empty text, or the reason why it is another gauge's.
    [[nodiscard]] QString add(const QString &path, const QString &gauge);

private:
    std::mutex m_mutex;
    ExistingFile m_existing;
    QHash<QString, QString> m_gauges; ///< By uniquePath().
};

#endif
