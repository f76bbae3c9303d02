#ifndef COMMANDLINE_H
#define COMMANDLINE_H

#include <QList>
#include <QString>
#include <QStringList>

/// What a gauge is exported as.
enum class ExportFormat { Png, Svg, Pdf, KeyframeTable, Gauge };

/// What happens to a file that is there already.
enum class ExistingFile { Refuse, Overwrite, Keep };

/// All that the command line says about an export, already checked: sizes, lengths and counts are in range,
/// and the options go together.
struct ExportSettings
{
    /// The gauge files. Standard input stands alone as "-".
    QStringList files;
    QList<ExportFormat> formats{ExportFormat::Png};
    QList<int> sizes{512}; ///< The sides of the pictures, in pixels.
    QString outputFolder;  ///< Empty: each file's own folder.
    QString outputFile;    ///< The one file to write; empty: named after the gauge as follows.
    /// The names of the files without their suffixes; {name} and {size} stand for the gauge's name and the
    /// picture's size.
    QString pictureNames = QStringLiteral("{name}");
    QString otherNames = QStringLiteral("{name}");
    QStringList layers; ///< The layers wanted, by name or number; empty: all.
    bool textAsPaths = false;
    double millimetres = 0.0; ///< The true side of the pictures; 0: from the density.
    double dotsPerInch = 0.0; ///< The density of the pictures; 0: from the true side.
    int jobs = 1;             ///< How many gauges are worked on at a time.
    ExistingFile existing = ExistingFile::Refuse;
    bool dryRun = false;
    bool quiet = false;
    quint64 tickLimit = 10'000'000; ///< The largest number of ticks that a gauge may draw.

    [[nodiscard]] bool readsStandardInput() const { return files == QStringList{QStringLiteral("-")}; }

    /// The true side in millimetres of a picture of @a size pixels; 0 when nothing is said of it.
    [[nodiscard]] double trueSide(int size) const;
};

/// What a command line comes to: settings, or a text to show in place of any work.
struct CommandLine
{
    enum class Outcome { Export, ShowText, WrongUsage };

    Outcome outcome = Outcome::Export;
    QString text; ///< The help, the version, or what is wrong.
    ExportSettings settings;
};

/// Reads a command line, program name first. Needs the application object, for the program's name and
/// version.
[[nodiscard]] CommandLine readCommandLine(const QStringList &arguments);

/// Whether a format has a size in pixels.
[[nodiscard]] bool isPicture(ExportFormat format);

/// A format's name on the command line, which is also the suffix of its files.
[[nodiscard]] QString formatName(ExportFormat format);

#endif
