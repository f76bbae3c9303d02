#ifndef PROGRAMRUN_H
#define PROGRAMRUN_H

#include "support/files.h"

#include <QByteArray>
#include <QMap>
#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

class QTemporaryDir;

/// The result of a run of a command-line program.
struct ProgramRun
{
    int status = -1; ///< The exit status. -1 when the program crashed or took too long.
    QByteArray out;
    QByteArray err;
};

/// What is different from the usual run.
struct RunConditions
{
    QByteArray input = {};                   ///< What is on standard input.
    QString standardInput = {};              ///< A file or device in place of it.
    QString standardOutput = {};             ///< A file or device in place of ProgramRun::out.
    QMap<QString, QString> environment = {}; ///< Variables to set.
    std::function<void()> before = {};       ///< Called in the new process before the program starts.
    QString program = {};                    ///< A program that starts the tested one.
};

/// Splits arguments at blanks.
[[nodiscard]] QStringList words(const char *arguments);

/// The names of all files and folders below a folder, sorted.
[[nodiscard]] QStringList contents(const QString &folder);

#ifdef Q_OS_LINUX
/// For RunConditions::before: sets a limit of the system, such as RLIMIT_FSIZE.
[[nodiscard]] std::function<void()> withLimit(int resource, quint64 value);
#endif

/// A test class that runs a real program without a display, in a folder of its own.
class ProgramTest : public QObject
{
    Q_OBJECT

public:
    explicit ProgramTest(const QString &program);
    ~ProgramTest() override;

protected:
    /// Makes a new empty folder. Call it in init().
    void makeFolder();
    [[nodiscard]] QString path(const QString &name) const;
    [[nodiscard]] QByteArray read(const QString &name) const { return readFile(path(name)); }
    void write(const QString &name, const QByteArray &bytes) const;
    [[nodiscard]] QStringList files() const { return contents(path({})); }
    [[nodiscard]] ProgramRun run(const QStringList &arguments, const RunConditions &conditions = {}) const;
    [[nodiscard]] ProgramRun run(const char *arguments, const RunConditions &conditions = {}) const
    {
        return run(words(arguments), conditions);
    }

private:
    QString m_program;
    std::unique_ptr<QTemporaryDir> m_folder;
};

#endif
