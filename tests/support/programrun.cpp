#include "support/programrun.h"

#include <QDir>
#include <QDirIterator>
#include <QProcess>
#include <QTemporaryDir>

#ifdef Q_OS_LINUX
#include <sys/resource.h>
#endif

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

#ifdef Q_OS_LINUX
std::function<void()> withLimit(int resource, quint64 value)
{
    return [resource, value] {
        const rlimit limit{value, value};
        setrlimit(static_cast<__rlimit_resource>(resource), &limit);
    };
}
#endif

ProgramTest::ProgramTest(const QString &program)
    : m_program(program)
{
}

ProgramTest::~ProgramTest() = default;

void ProgramTest::makeFolder()
{
    m_folder = std::make_unique<QTemporaryDir>();
}

QString ProgramTest::path(const QString &name) const
{
    return m_folder->filePath(name);
}

void ProgramTest::write(const QString &name, const QByteArray &bytes) const
{
    QDir().mkpath(QFileInfo(path(name)).path());
    writeFile(path(name), bytes);
}

ProgramRun ProgramTest::run(const QStringList &arguments, const RunConditions &conditions) const
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
    process.start(conditions.program.isEmpty() ? m_program : conditions.program, arguments);
    if (conditions.standardInput.isEmpty()) {
        process.write(conditions.input);
        process.closeWriteChannel();
    }
    constexpr int timeout = 120'000;
    const bool ended = process.waitForFinished(timeout) && process.exitStatus() == QProcess::NormalExit;
    return {ended ? process.exitCode() : -1, process.readAllStandardOutput(), process.readAllStandardError()};
}
