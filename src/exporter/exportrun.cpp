#include "exporter/exportrun.h"

#include "exporter/exportoptions.h"
#include "exporter/gaugeexport.h"
#include "exporter/outputnames.h"
#include "exporter/progress.h"
#include "exporter/workers.h"
#include "tools/outputfile.h"
#include "tools/terminal.h"

#include <algorithm>
#include <atomic>

namespace {

Progress::Style progressStyle(const ExportOptions &options)
{
    // What is written to standard output is not mixed with messages.
    if (options.quiet || options.readsStandardInput() || isStandardOutput(options.outputFile))
        return Progress::Style::Quiet;
    return isStandardOutputTerminal() && !options.dryRun ? Progress::Style::Bar : Progress::Style::Lines;
}

bool exportFromStandardInput(const ExportOptions &options, Progress &progress)
{
    QString reason;
    runInThreads(1, [&] { reason = exportStandardInput(options); });
    if (!reason.isEmpty())
        progress.failed(QStringLiteral("standard input"), reason);
    return reason.isEmpty();
}

} // namespace

bool exportAll(const ExportOptions &options)
{
    Progress progress(static_cast<size_t>(options.files.size()), progressStyle(options));
    if (options.readsStandardInput())
        return exportFromStandardInput(options, progress);

    const QStringList collisions = findNameCollisions(options);
    OutputOwners owners(options);
    InputFiles inputs;
    for (const QString &path : options.files)
        inputs.insert(fileId(path), path);

    // Each thread takes the next gauge when it has finished one. So there are never more pictures in memory
    // than threads.
    std::atomic<qsizetype> next = 0;
    std::atomic<bool> allMade = true;
    const auto work = [&] {
        for (qsizetype index = next++; index < options.files.size(); index = next++) {
            const QString &path = options.files.at(index);
            const QString &collision = collisions.at(index);
            const QString reason =
                collision.isEmpty() ? exportGauge(path, inputs, options, owners, progress) : collision;
            if (!reason.isEmpty()) {
                allMade = false;
                progress.failed(path, reason);
            }
            progress.finishedGauge();
        }
    };
    runInThreads(static_cast<int>(std::min<qsizetype>(options.jobs, options.files.size())), work);
    return progress.finish() && allMade;
}
