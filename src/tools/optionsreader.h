#ifndef OPTIONSREADER_H
#define OPTIONSREADER_H

#include "tools/outputfile.h"

#include <QByteArrayList>
#include <QCommandLineParser>
#include <QString>
#include <QStringList>

/// What a command line asks for.
enum class CommandLineOutcome { Run, ShowText, WrongUsage };

/// A parsed command line: the options of a program, or a text to show.
template <typename Options>
struct CommandLine
{
    using Outcome = CommandLineOutcome;

    Outcome outcome = Outcome::Run;
    QString text; ///< The help, the version, or the error.
    Options options{};
};

/// The options --help and --version, which parseArguments() handles.
[[nodiscard]] QList<QCommandLineOption> helpAndVersion();

/// Parses the arguments as main() gets them, program name first. Those that are not UTF-8 are appended to
/// @a notUtf8. Sets @a text unless the outcome is Run: then the options can be read from @a parser. Needs the
/// application object, for the program's name and version.
[[nodiscard]] CommandLineOutcome parseArguments(QCommandLineParser &parser, const QByteArrayList &arguments,
                                                QStringList &notUtf8, QString &text);

/// Reads the values of options. Only the first error is kept. A base class: each program derives its own.
class OptionsReader
{
public:
    /// Empty when the command line is right.
    [[nodiscard]] const QString &error() const { return m_error; }

protected:
    explicit OptionsReader(const QCommandLineParser &parser)
        : m_parser(parser)
    {
    }

    void refuse(const QString &reason);
    /// Refuses a value of an option. @a expected describes the valid values.
    void refuseValue(const QCommandLineOption &option, const QString &value, const QString &expected);
    void refuseValue(const QCommandLineOption &option, const QString &expected);

    [[nodiscard]] bool isSet(const QCommandLineOption &option) const { return m_parser.isSet(option); }
    [[nodiscard]] QString valueOf(const QCommandLineOption &option) const { return m_parser.value(option); }
    [[nodiscard]] QStringList valuesOf(const QCommandLineOption &option) const
    {
        return m_parser.values(option);
    }
    [[nodiscard]] QStringList positionalArguments() const { return m_parser.positionalArguments(); }

    /// Reads a whole number from @a min, which is not negative, to @a max.
    template <typename Number>
    [[nodiscard]] Number readCount(const QCommandLineOption &option, Number defaultCount, Number min,
                                   Number max);
    [[nodiscard]] ExistingFile readExisting(const QCommandLineOption &overwrite,
                                            const QCommandLineOption &keep);

private:
    const QCommandLineParser &m_parser;
    QString m_error;
};

template <typename Number>
Number OptionsReader::readCount(const QCommandLineOption &option, Number defaultCount, Number min, Number max)
{
    if (!isSet(option))
        return defaultCount;
    bool isNumber = false;
    const quint64 count = valueOf(option).toULongLong(&isNumber);
    if (isNumber && count >= static_cast<quint64>(min) && count <= static_cast<quint64>(max))
        return static_cast<Number>(count);
    refuseValue(option, QStringLiteral("a whole number from %1 to %2").arg(min).arg(max));
    return defaultCount;
}

#endif
