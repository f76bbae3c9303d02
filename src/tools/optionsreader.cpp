#include "tools/optionsreader.h"

#include "tools/program.h"

#include <QCoreApplication>

QList<QCommandLineOption> helpAndVersion()
{
    // Not QCommandLineParser::addHelpOption(), which adds --help-all for options of Qt itself.
    return {{{QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Show this help.")},
            {{QStringLiteral("v"), QStringLiteral("version")}, QStringLiteral("Show the version.")}};
}

CommandLineOutcome parseArguments(QCommandLineParser &parser, const QByteArrayList &arguments,
                                  QStringList &notUtf8, QString &text)
{
    if (!parser.parse(decodedArguments(arguments, notUtf8))) {
        text = parser.errorText();
        return CommandLineOutcome::WrongUsage;
    }
    if (parser.isSet(QStringLiteral("help"))) {
        text = parser.helpText();
        return CommandLineOutcome::ShowText;
    }
    if (parser.isSet(QStringLiteral("version"))) {
        text = QStringLiteral("%1 %2\n").arg(QCoreApplication::applicationName(),
                                             QCoreApplication::applicationVersion());
        return CommandLineOutcome::ShowText;
    }
    return CommandLineOutcome::Run;
}

void OptionsReader::refuse(const QString &reason)
{
    if (m_error.isEmpty())
        m_error = reason;
}

void OptionsReader::refuseValue(const QCommandLineOption &option, const QString &value,
                                const QString &expected)
{
    refuse(QStringLiteral("\"%1\" is not a value for --%2; it must be %3")
               .arg(value, option.names().constLast(), expected));
}

void OptionsReader::refuseValue(const QCommandLineOption &option, const QString &expected)
{
    refuseValue(option, valueOf(option), expected);
}

ExistingFile OptionsReader::readExisting(const QCommandLineOption &overwrite, const QCommandLineOption &keep)
{
    if (isSet(overwrite) && isSet(keep))
        refuse(QStringLiteral("--overwrite and --keep cannot be given together"));
    if (isSet(overwrite))
        return ExistingFile::Overwrite;
    return isSet(keep) ? ExistingFile::Keep : ExistingFile::Refuse;
}
