#ifndef SHEETLAYOUT_H
#define SHEETLAYOUT_H

#include <QList>
#include <QMarginsF>
#include <QPointF>
#include <QRectF>
#include <QSizeF>

/// All lengths are in millimetres. Places on a page are measured from its upper left corner, places on a dial
/// from its centre, both to the right and down.

/// The paper and its empty space.
struct SheetPaper
{
    QSizeF size{210.0, 297.0};
    QMarginsF margins{5.0, 5.0, 5.0, 5.0}; ///< Where the printer does not print.
    double gap = 3.0;                      ///< The space between dials.
};

/// What the size of a dial means.
enum class DialMeasure {
    Rim,   ///< The diameter of the face, a stored radius of 1.
    Canvas ///< The side of the whole square picture.
};

/// A hole to drill.
struct DialHole
{
    double diameter = 0.0;
    QPointF place;
};

/// What is printed on and around each dial.
struct DialMarks
{
    bool cutCircle = false;   ///< A circle of the dial's size.
    bool cropMarks = false;   ///< Lines at the corners of a square of the dial's size.
    bool centreCross = false; ///< A cross at the centre.
    bool caption = false;     ///< A line of text below the dial.
    QList<DialHole> holes;
};

/// The length of the rule on every page.
inline constexpr double ruleLength = 100.0;

/// Crop marks begin and end at these distances from the corner, beyond the dial.
inline constexpr double cropMarkStart = 1.0;
inline constexpr double cropMarkEnd = 4.0;

/// The height of the caption's box, which is at the bottom of a dial's bounds.
inline constexpr double captionHeight = 5.0;

/// The side of the square picture of a dial of this size.
[[nodiscard]] double dialSide(double millimetres, DialMeasure measure);

/// The rectangle, around the centre, that a dial of this size takes with all its marks. Mirrored about the
/// vertical axis when @a mirrored.
[[nodiscard]] QRectF dialBounds(double millimetres, DialMeasure measure, const DialMarks &marks,
                                bool mirrored = false);

/// The strip for the rule, at the bottom between the margins.
[[nodiscard]] QRectF ruleArea(const SheetPaper &paper);

/// The rectangle for dials, above the rule. Not valid (QRectF::isValid()) when the rule or a dial of no size
/// does not fit.
[[nodiscard]] QRectF dialArea(const SheetPaper &paper);

/// Whether a dial with these bounds fits on a page.
[[nodiscard]] bool fitsOnPage(const SheetPaper &paper, const QRectF &bounds);

/// The largest size of a dial that fits on a page, rounded down to 0.1 mm. 0 when none fits.
[[nodiscard]] double largestDial(const SheetPaper &paper, DialMeasure measure, const DialMarks &marks);

/// The place of a dial's centre.
struct SheetPlace
{
    qsizetype page = 0; ///< The first page is 0.
    QPointF centre;
};

/// Places dials by their bounds: in order, in rows from left to right, as many as fit in a row and on a page.
/// Precondition: fitsOnPage() for each.
[[nodiscard]] QList<SheetPlace> placeDials(const SheetPaper &paper, const QList<QRectF> &bounds);

/// The cells of a contact sheet, which have a caption.
struct ContactCell
{
    double side = 0.0; ///< The side of the square picture. Not above 0: the columns do not fit.
    QRectF bounds;
};

/// The largest cells of which @a columns (at least 1) fit side by side.
[[nodiscard]] ContactCell contactCell(const SheetPaper &paper, int columns);

#endif
