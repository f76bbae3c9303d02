#include "exporter/exportrun.h"

#include "exporter/commandline.h"
#include "exporter/gaugeexport.h"
#include "exporter/progress.h"

#include <QFileInfo>
#include <QHash>
#include <QThreadPool>

#include <algorithm>
#include <atomic>

namespace {

/// For each gauge the first of those whose files would take the same names.
QList<qsizetype> firstClaims(const ExportSettings &settings)
{
    QHash<QString, qsizetype> claims;
    QList<qsizetype> firsts;
    for (qsizetype index = 0; index < settings.files.size(); ++index) {
        const QString stem = QFileInfo(outputStem(settings.files.at(index), settings)).absoluteFilePath();
        const auto claim = claims.constFind(stem);
        firsts.append(claim == claims.cend() ? index : *claim);
        if (claim == claims.cend())
            claims.insert(stem, index);
    }
    return firsts;
}

} // namespace

bool exportAll(const ExportSettings &settings)
{
    const Progress::Style style =
        settings.quiet ? Progress::Style::Quiet : Progress::styleForStandardOutput();
    Progress progress(static_cast<size_t>(settings.files.size()), style);
    if (settings.readsStandardInput()) {
        const QString reason = exportStandardInput(settings);
        if (!reason.isEmpty())
            progress.failed(QStringLiteral("standard input"), reason);
        return reason.isEmpty();
    }

    const QList<qsizetype> firsts = firstClaims(settings);
    std::atomic<qsizetype> next = 0;
    std::atomic<bool> allMade = true;
    const auto work = [&] {
        for (qsizetype index = next++; index < settings.files.size(); index = next++) {
            const QString &path = settings.files.at(index);
            const qsizetype first = firsts.at(index);
            const QString reason = first == index
                                       ? exportGauge(path, settings, progress)
                                       : QStringLiteral("Its files would take the names of those of %1.")
                                             .arg(settings.files.at(first));
            if (!reason.isEmpty()) {
                allMade = false;
                progress.failed(path, reason);
            }
            progress.finishedOne();
        }
    };

    // Each worker takes the next gauge when it is done with one, so that no more pictures than workers are in
    // memory at any time. The global pool, because Qt's raster engine spreads its spans over that pool unless
    // it already paints in one of its threads: with a gauge a worker that only costs thousands of waits.
    QThreadPool &pool = *QThreadPool::globalInstance();
    const auto workers = static_cast<int>(std::min<qsizetype>(settings.jobs, settings.files.size()));
    pool.setMaxThreadCount(workers);
    for (int worker = 0; worker < workers; ++worker)
        pool.start(work);
    pool.waitForDone();
    progress.finishedAll();
    return allMade;
}
