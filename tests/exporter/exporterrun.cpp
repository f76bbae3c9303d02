#include "exporterrun.h"

#include "model/gaugefile.h"
#include "support/warnings.h"

#include <QDir>
#include <QDirIterator>
#include <QProcess>
#include <QTemporaryDir>

#ifdef Q_OS_LINUX
#include <sys/resource.h>
#endif

using namespace Qt::StringLiterals;

QStringList words(const char *arguments)
{
    return QString::fromUtf8(arguments).split(u' ', Qt::SkipEmptyParts);
}

QStringList contents(const QString &folder)
{
    QStringList names;
    QDirIterator iterator(folder, QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot,
                          QDirIterator::Subdirectories);
    while (iterator.hasNext())
        names.append(QDir(folder).relativeFilePath(iterator.next()));
    names.sort();
    return names;
}

QByteArray gaugeOf(const gaugeData &data, qsizetype layerCount, const QString &name)
{
    return gaugeFile::write(QList<gaugeLayer>(layerCount, gaugeLayer{name, data}));
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

#ifdef Q_OS_LINUX
std::function<void()> withLimit(int resource, quint64 value)
{
    return [resource, value] {
        const rlimit limit{value, value};
        setrlimit(static_cast<__rlimit_resource>(resource), &limit);
    };
}
#endif

ExporterTest::ExporterTest() = default;
ExporterTest::~ExporterTest() = default;

void ExporterTest::init()
{
    failOnUnexpectedWarnings();
    m_folder = std::make_unique<QTemporaryDir>();
    writeGauge(u"Dial.gauge"_s);
}

QString ExporterTest::path(const QString &name) const
{
    return m_folder->filePath(name);
}

void ExporterTest::write(const QString &name, const QByteArray &bytes) const
{
    QDir().mkpath(QFileInfo(path(name)).path());
    writeFile(path(name), bytes);
}

void ExporterTest::writeGauge(const QString &name, const QStringList &layers) const
{
    QList<gaugeLayer> stack;
    for (const QString &layerName : layers) {
        gaugeLayer layer{layerName, {}};
        layer.data.divisionCount[0] = 3 + static_cast<int>(stack.size());
        stack.append(layer);
    }
    write(name, gaugeFile::write(stack));
}

ExporterRun ExporterTest::run(const QStringList &arguments, const RunConditions &conditions) const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *variable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        environment.remove(QLatin1String(variable));
    for (const auto &[name, value] : conditions.environment.asKeyValueRange())
        environment.insert(name, value);

    QProcess process;
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(m_folder->path());
    if (!conditions.standardOutput.isEmpty())
        process.setStandardOutputFile(conditions.standardOutput);
    if (!conditions.standardInput.isEmpty())
        process.setStandardInputFile(conditions.standardInput);
    if (conditions.before)
        process.setChildProcessModifier(conditions.before);
    const QString exporter = QStringLiteral(CORVALENCE_EXPORT);
    process.start(conditions.program.isEmpty() ? exporter : conditions.program, arguments);
    if (conditions.standardInput.isEmpty()) {
        process.write(conditions.input);
        process.closeWriteChannel();
    }
    constexpr int timeout = 120'000;
    const bool ended = process.waitForFinished(timeout) && process.exitStatus() == QProcess::NormalExit;
    return {ended ? process.exitCode() : -1, process.readAllStandardOutput(), process.readAllStandardError()};
}
