#include "sheet/sheetrun.h"

#include "sheet/sheetdrawing.h"
#include "sheet/sheetoptions.h"
#include "tools/gaugeinput.h"
#include "tools/outputfile.h"
#include "tools/program.h"
#include "tools/terminal.h"

#include <QFileInfo>
#include <QLocale>

#include <algorithm>
#include <new>

namespace {

QString lengthText(double millimetres)
{
    return QString::number(millimetres, 'f', QLocale::FloatingPointShortest) + QStringLiteral(" mm");
}

/// Reads the layers of one gauge file. Returns the reason for a failure.
QString readDial(const QString &path, const SheetOptions &options, QList<gaugeData> &layers)
{
    QList<gaugeLayer> named;
    QString reason = readGaugeFile(path, options.inputLimit, named, QStringLiteral("--input-limit"));
    if (reason.isEmpty())
        reason = checkTickCount(named, options.tickLimit);
    for (const gaugeLayer &layer : std::as_const(named))
        layers.append(layer.data);
    return reason;
}

/// Why a dial of this size does not fit on a page. Empty when it does.
QString checkSize(double millimetres, const SheetOptions &options)
{
    if (fitsOnPage(options.paper, dialBounds(millimetres, options.measure, options.marks)))
        return {};
    const double largest = largestDial(options.paper, options.measure, options.marks);
    const QString size = lengthText(millimetres);
    return largest > 0.0
               ? QStringLiteral("A dial of %1 does not fit on a page; the largest has %2.")
                     .arg(size, lengthText(largest))
               : QStringLiteral("A dial of %1 does not fit on a page; with these marks none does.").arg(size);
}

/// A dial at true size, without its layers and place.
SheetDial dialAtTrueSize(const SheetFile &file, const SheetOptions &options, bool mirrored)
{
    const double size = file.millimetres > 0.0 ? file.millimetres : options.millimetres;
    SheetDial dial;
    dial.side = dialSide(size, options.measure);
    dial.diameter = size;
    dial.bounds = dialBounds(size, options.measure, options.marks, mirrored);
    dial.mirrored = mirrored;
    dial.remarks = lengthText(size) + (mirrored ? QStringLiteral(", mirrored") : QString());
    return dial;
}

/// The dials that one file gives, without their layers and places.
QList<SheetDial> dialsOf(const SheetFile &file, const SheetOptions &options)
{
    QList<SheetDial> dials;
    if (options.contactColumns > 0) {
        const ContactCell cell = contactCell(options.paper, options.contactColumns);
        SheetDial dial;
        dial.side = cell.side;
        dial.bounds = cell.bounds;
        dials.append(dial);
    } else {
        dials.append(dialAtTrueSize(file, options, false));
        if (options.mirroredCopies)
            dials.append(dialAtTrueSize(file, options, true));
    }
    for (SheetDial &dial : dials)
        dial.name = QFileInfo(file.path).completeBaseName();
    return dials;
}

/// Reads all gauges and places them. Prints a line for each that fails. Returns whether none did.
bool readSheet(const SheetOptions &options, Sheet &sheet)
{
    bool allRead = true;
    sheet.paper = options.paper;
    sheet.marks = options.marks;
    sheet.marks.caption = options.marks.caption || options.contactColumns > 0;
    sheet.embedFonts = options.embedFonts;
    for (const SheetFile &file : options.files) {
        QList<gaugeData> layers;
        QList<SheetDial> dials = dialsOf(file, options);
        QString reason = readDial(file.path, options, layers);
        if (reason.isEmpty() && options.contactColumns == 0)
            reason = checkSize(dials.constFirst().diameter, options);
        if (!reason.isEmpty()) {
            (void)fail(QStringLiteral("%1: %2").arg(file.path, reason));
            allRead = false;
        }
        for (SheetDial &dial : dials) {
            dial.layers = layers;
            sheet.dials.append(dial);
        }
    }
    if (!allRead)
        return false;
    QList<QRectF> bounds;
    for (const SheetDial &dial : std::as_const(sheet.dials))
        bounds.append(dial.bounds);
    const QList<SheetPlace> places = placeDials(options.paper, bounds);
    for (qsizetype index = 0; index < places.size(); ++index)
        sheet.dials[index].place = places.at(index);
    return true;
}

bool isInput(const QString &path, const QList<SheetFile> &files)
{
    const QString id = fileId(path);
    return !id.isEmpty() &&
           std::ranges::any_of(files, [&id](const SheetFile &file) { return fileId(file.path) == id; });
}

bool failSheet(const QString &reason)
{
    (void)fail(reason);
    return false;
}

/// Makes the PDF. Returns the reason for a failure.
QString makePdf(const Sheet &sheet, QByteArray &pdf)
{
    constexpr double maxSize = 1024.0 * 1024.0 * 1024.0;
    const double size = sheetPdfSize(sheet);
    if (size > maxSize)
        return QStringLiteral("The PDF would be larger than 1 GiB.");
    // Fails here if there is not enough memory: a destructor in Qt that fails to allocate memory ends the
    // program.
    (void)QByteArray(static_cast<qsizetype>(4.0 * size), Qt::Uninitialized);
    pdf = sheetPdf(sheet);
    return pdf.isEmpty() ? QStringLiteral("The PDF cannot be made: there is not enough memory.") : QString();
}

bool readAndWrite(const SheetOptions &options)
{
    if (isInput(options.outputFile, options.files) && options.existing != ExistingFile::Keep)
        return failSheet(
            QStringLiteral("%1 is a gauge of the sheet and is not replaced.").arg(options.outputFile));
    Sheet sheet;
    if (!readSheet(options, sheet))
        return false;
    WriteResult result = checkOutputFile(options.outputFile, options.existing);
    if (result.written && !options.dryRun) {
        QByteArray pdf;
        const QString reason = makePdf(sheet, pdf);
        if (!reason.isEmpty())
            return failSheet(reason);
        result = writeOutputFile(options.outputFile, pdf, options.existing);
    }
    if (!result.reason.isEmpty())
        return failSheet(result.reason);
    if (!result.written || options.quiet || (isStandardOutput(options.outputFile) && !options.dryRun))
        return true;
    const QString reason = writeStandardOutput(
        QStringLiteral("%1: %2 on %3\n")
            .arg(QString::fromStdString(maskControlCharacters(options.outputFile)),
                 countText(sheet.dials.size(), QStringLiteral("dial")),
                 countText(sheet.dials.constLast().place.page + 1, QStringLiteral("page")))
            .toUtf8());
    return reason.isEmpty() || failSheet(reason);
}

} // namespace

bool makeSheet(const SheetOptions &options)
{
    try {
        return readAndWrite(options);
    } catch (const std::bad_alloc &) {
        return failSheet(QStringLiteral("There is not enough memory."));
    }
}
