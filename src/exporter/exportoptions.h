#ifndef EXPORTOPTIONS_H
#define EXPORTOPTIONS_H

#include "exporter/exportformat.h"
#include "exporter/pngfile.h"
#include "render/gaugeparts.h"
#include "tools/outputfile.h"

#include <QColor>
#include <QList>
#include <QString>
#include <QStringList>

inline constexpr double millimetresPerInch = 25.4;
inline constexpr int maxQuality = 100;

/// What to export and how. Plain values: parseCommandLine() checks that they are in range and go together.
struct ExportOptions
{
    QStringList files;   ///< The gauge files; only "-" for standard input.
    QStringList notUtf8; ///< Those of the files whose names are not UTF-8, with replacement characters.
    QList<const ExportFormat *> formats{findExportFormat(QStringLiteral("png"))};
    QList<int> sizes{512}; ///< The sides of the pictures, in pixels.
    QString outputFolder;  ///< Empty: the folder of each gauge.
    QString outputFile;    ///< The only file to write. Empty: named by the following templates.
    /// Names of files without their suffix. {name} and {size} stand for the gauge's name and the picture's
    /// size.
    QString pictureNames = QStringLiteral("{name}");
    QString otherNames = QStringLiteral("{name}");
    QStringList layers;                      ///< The layers to export, by name or number. Empty: all.
    QList<NeedleChoice> needles;             ///< Pictures are split into face, needles and cover. Empty: not.
    QStringList scales;                      ///< As for scaleTables(). Empty: those whose labels are shown.
    double maxError = 0.1;                   ///< Of the tables of scales, in degrees.
    bool textAsPaths = false;                ///< Draw labels as paths.
    double millimetres = 0.0;                ///< The printed size of the pictures. 0: from the density.
    double dotsPerInch = 0.0;                ///< The density of the pictures. 0: from the printed size.
    QColor background;                       ///< Below the pictures. Invalid: transparent.
    int quality = 90;                        ///< Of JPEG and WebP files, from 0 to maxQuality.
    bool crop = true;                        ///< Crop parts in formats that do so.
    ByteOrder byteOrder = ByteOrder::Little; ///< Of RGB565 files.
    int compression = defaultCompression;    ///< Of PNG files, from 0 to maxCompression.
    int jobs = 1;                            ///< The number of gauges to work on at a time.
    ExistingFile existing = ExistingFile::Refuse;
    bool dryRun = false;
    bool quiet = false;
    quint64 tickLimit = 10'000'000; ///< The maximum number of ticks and arcs of a gauge.
    qint64 inputLimit = 64;         ///< The maximum size of a gauge file, in MiB.

    [[nodiscard]] bool readsStandardInput() const { return files == QStringList{QStringLiteral("-")}; }

    /// The printed size in millimetres of a picture of @a size pixels. 0 when it is not set.
    [[nodiscard]] double printedSize(int size) const
    {
        if (millimetres > 0.0)
            return millimetres;
        return dotsPerInch > 0.0 ? size / dotsPerInch * millimetresPerInch : 0.0;
    }
};

#endif
