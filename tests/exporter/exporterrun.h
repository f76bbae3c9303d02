#ifndef EXPORTERRUN_H
#define EXPORTERRUN_H

#include "model/gaugefile.h"

#include <QByteArray>
#include <QMap>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <functional>

/// What a run of the exporter came to.
struct ExporterRun
{
    int status = -1; ///< The exit status; -1 when the program did not end of itself.
    QByteArray out;
    QByteArray err;
};

/// How a run differs from the usual one.
struct RunConditions
{
    QString folder = {};                     ///< The working folder; empty: the test's own.
    QByteArray input = {};                   ///< What is on standard input.
    QString standardInput = {};              ///< A file or device in place of it.
    QString standardOutput = {};             ///< A file or device in place of ExporterRun::out.
    QMap<QString, QString> environment = {}; ///< Variables to set.
    std::function<void()> before = {};       ///< Runs in the new process, just before the program.
};

/// Runs the real program without a display and without a platform chosen for it.
[[nodiscard]] ExporterRun runExporter(const QStringList &arguments, const RunConditions &conditions = {});

[[nodiscard]] QByteArray readFile(const QString &path);
/// Writes a file and returns its path.
QString writeFile(const QString &path, const QByteArray &bytes);
/// Writes a gauge file of layers with these names, all different in their first ring, and returns its path.
QString writeGauge(const QString &path, const QStringList &layerNames = {QStringLiteral("Dial")});

/// The names of all files and folders below a folder, sorted.
[[nodiscard]] QStringList contents(const QString &folder);

/// The names of the layers in a gauge file's bytes.
[[nodiscard]] QStringList layerNames(const QByteArray &gauge);

#endif
