#include "exporterrun.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QProcess>

ExporterRun runExporter(const QStringList &arguments, const RunConditions &conditions)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("DISPLAY"));
    environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
    environment.remove(QStringLiteral("QT_QPA_PLATFORM"));
    for (auto variable = conditions.environment.cbegin(); variable != conditions.environment.cend();
         ++variable)
        environment.insert(variable.key(), variable.value());

    QProcess process;
    process.setProcessEnvironment(environment);
    if (!conditions.folder.isEmpty())
        process.setWorkingDirectory(conditions.folder);
    if (!conditions.standardOutput.isEmpty())
        process.setStandardOutputFile(conditions.standardOutput);
    if (!conditions.standardInput.isEmpty())
        process.setStandardInputFile(conditions.standardInput);
    if (conditions.before)
        process.setChildProcessModifier(conditions.before);
    process.start(QStringLiteral(CORVALENCE_EXPORT), arguments);
    if (conditions.standardInput.isEmpty()) {
        process.write(conditions.input);
        process.closeWriteChannel();
    }
    constexpr int patience = 300'000;
    const bool ended = process.waitForFinished(patience) && process.exitStatus() == QProcess::NormalExit;
    return {ended ? process.exitCode() : -1, process.readAllStandardOutput(), process.readAllStandardError()};
}

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write %s", qPrintable(path));
    return path;
}

QString writeGauge(const QString &path, const QStringList &layerNames)
{
    QList<gaugeLayer> layers;
    for (const QString &name : layerNames) {
        gaugeLayer layer{name, {}};
        layer.data.divisionCount[0] = 3 + static_cast<int>(layers.size());
        layers.append(layer);
    }
    return writeFile(path, gaugeFile::write(layers));
}

QStringList contents(const QString &folder)
{
    QStringList names;
    QDirIterator iterator(folder, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                          QDirIterator::Subdirectories);
    while (iterator.hasNext())
        names.append(QDir(folder).relativeFilePath(iterator.next()));
    names.sort();
    return names;
}

QStringList layerNames(const QByteArray &gauge)
{
    QList<gaugeLayer> layers;
    gaugeFile::read(gauge, &layers, nullptr);
    QStringList names;
    for (const gaugeLayer &layer : std::as_const(layers))
        names.append(layer.name);
    return names;
}
