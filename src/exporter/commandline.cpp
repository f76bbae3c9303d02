#include "exporter/commandline.h"

#include "exporter/exportoptionsreader.h"

#include <QCommandLineParser>

ExportCommandLine parseCommandLine(const QByteArrayList &arguments)
{
    const OptionDefinitions definitions;
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Writes gauges as pictures, tables, web pages or gauge files, without a window."));
    parser.addPositionalArgument(
        QStringLiteral("FILE..."),
        QStringLiteral("Gauge files, in the current or the older form. A single - reads one gauge from "
                       "standard input and writes to standard output."),
        QStringLiteral("FILE..."));
    parser.addOptions(helpAndVersion());
    parser.addOptions(definitions.all());

    ExportCommandLine result;
    QStringList notUtf8;
    result.outcome = parseArguments(parser, arguments, notUtf8, result.text);
    if (result.outcome != CommandLineOutcome::Run)
        return result;
    const auto wrongUsage = [](const QString &error) {
        return ExportCommandLine{CommandLineOutcome::WrongUsage, error, {}};
    };
    const ExportOptionsReader reader(parser, definitions);
    if (!reader.error().isEmpty())
        return wrongUsage(reader.error());
    for (const QString &argument : std::as_const(notUtf8)) {
        if (!reader.options().files.contains(argument))
            return wrongUsage(QStringLiteral("\"%1\" is not UTF-8").arg(argument));
    }
    result.options = reader.options();
    result.options.notUtf8 = notUtf8;
    return result;
}
