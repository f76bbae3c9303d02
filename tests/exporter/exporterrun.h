#ifndef EXPORTERRUN_H
#define EXPORTERRUN_H

#include "support/files.h"

#include <QByteArray>
#include <QMap>
#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

class QTemporaryDir;
struct gaugeData;

/// The result of a run of the exporter.
struct ExporterRun
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
    QString standardOutput = {};             ///< A file or device in place of ExporterRun::out.
    QMap<QString, QString> environment = {}; ///< Variables to set.
    std::function<void()> before = {};       ///< Called in the new process before the program starts.
    QString program = {};                    ///< A program that starts the exporter.
};

/// Splits arguments at blanks.
[[nodiscard]] QStringList words(const char *arguments);

/// The names of all files and folders below a folder, sorted.
[[nodiscard]] QStringList contents(const QString &folder);

/// The bytes of a gauge file of equal layers.
[[nodiscard]] QByteArray gaugeOf(const gaugeData &data, qsizetype layerCount = 1,
                                 const QString &name = QStringLiteral("Layer"));

/// The names of the layers in the bytes of a gauge file.
[[nodiscard]] QStringList layerNames(const QByteArray &gauge);

#ifdef Q_OS_LINUX
/// For RunConditions::before: sets a limit of the system, such as RLIMIT_FSIZE.
[[nodiscard]] std::function<void()> withLimit(int resource, quint64 value);
#endif

/// A test class that runs the real program without a display, in a folder of its own, in which Dial.gauge is
/// a gauge of one default layer.
class ExporterTest : public QObject
{
    Q_OBJECT

public:
    ExporterTest();
    ~ExporterTest() override;

private Q_SLOTS:
    void init();

protected:
    [[nodiscard]] QString path(const QString &name) const;
    [[nodiscard]] QByteArray read(const QString &name) const { return readFile(path(name)); }
    void write(const QString &name, const QByteArray &bytes) const;
    /// Writes a gauge of layers with these names. No two have the same number of divisions.
    void writeGauge(const QString &name, const QStringList &layers = {QStringLiteral("Dial")}) const;
    [[nodiscard]] QStringList files() const { return contents(path({})); }
    [[nodiscard]] ExporterRun run(const QStringList &arguments, const RunConditions &conditions = {}) const;
    [[nodiscard]] ExporterRun run(const char *arguments, const RunConditions &conditions = {}) const
    {
        return run(words(arguments), conditions);
    }

private:
    std::unique_ptr<QTemporaryDir> m_folder;
};

#endif
