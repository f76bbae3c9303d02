#ifndef SHEETOPTIONS_H
#define SHEETOPTIONS_H

#include "sheet/sheetlayout.h"
#include "tools/gaugeinput.h"
#include "tools/outputfile.h"

#include <QList>
#include <QString>

/// A gauge file and the size of its dial.
struct SheetFile
{
    QString path;
    double millimetres = 0.0; ///< 0: SheetOptions::millimetres.
};

/// What to print and how. Plain values: parseSheetCommandLine() checks that they are in range and go
/// together.
struct SheetOptions
{
    QList<SheetFile> files;
    QString outputFile;
    SheetPaper paper;
    double millimetres = 80.0; ///< The size of the dials that have no size of their own.
    DialMeasure measure = DialMeasure::Rim;
    DialMarks marks;
    bool mirroredCopies = false; ///< Follow each dial by a mirrored copy.
    int contactColumns = 0;      ///< The columns of a contact sheet. 0: dials at true size.
    bool embedFonts = false;     ///< Write texts as text in embedded fonts, not as paths.
    ExistingFile existing = ExistingFile::Refuse;
    bool dryRun = false;
    bool quiet = false;
    quint64 tickLimit = 10'000'000;          ///< The maximum number of ticks and arcs of a gauge.
    qint64 inputLimit = defaultMaxGaugeSize; ///< The maximum size of a gauge file, in MiB.
};

#endif
