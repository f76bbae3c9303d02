#ifndef SHEETDRAWING_H
#define SHEETDRAWING_H

#include "model/gaugedata.h"
#include "sheet/sheetlayout.h"

#include <QByteArray>
#include <QList>
#include <QString>

/// A dial on a sheet. Lengths are in millimetres.
struct SheetDial
{
    QList<gaugeData> layers;
    double side = 0.0;     ///< Of the square picture.
    double diameter = 0.0; ///< Of the cut circle, and the side of the square that crop marks show.
    QRectF bounds;         ///< Around the centre. The caption is at the bottom.
    SheetPlace place;
    bool mirrored = false;
    QString name;    ///< The first part of the caption, which is shortened if there is no space.
    QString remarks; ///< The other part.
};

/// Pages of dials.
struct Sheet
{
    SheetPaper paper;
    DialMarks marks;
    QList<SheetDial> dials; ///< In the order of their pages.
    bool embedFonts = false;
};

/// Returns a PDF of the sheet. Everything is vector graphics at true size, except that the pages are rounded
/// to whole points, as Qt does. The same sheet gives the same bytes. Empty when Qt cannot draw it.
///
/// Lines without a width are as wide as in a picture of 512 pixels. What a gauge draws outside its square is
/// cut off.
[[nodiscard]] QByteArray sheetPdf(const Sheet &sheet);

/// An estimate of the size of sheetPdf() in bytes, usually too large.
[[nodiscard]] double sheetPdfSize(const Sheet &sheet);

#endif
