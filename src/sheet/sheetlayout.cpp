#include "sheet/sheetlayout.h"

#include "render/gaugepainter.h"

#include <algorithm>
#include <cmath>

namespace {

/// The height of the strip for the rule and its text.
constexpr double ruleHeight = 10.0;
/// The space that the rule needs beyond its ends for the width of its lines.
constexpr double ruleSpace = 1.0;
/// Less than this is a rounding error.
constexpr double tolerance = 1e-6;

QRectF squareAround(QPointF centre, double side)
{
    return {centre.x() - side / 2.0, centre.y() - side / 2.0, side, side};
}

QRectF printableArea(const SheetPaper &paper)
{
    return QRectF(QPointF(), paper.size).marginsRemoved(paper.margins);
}

} // namespace

double dialSide(double millimetres, DialMeasure measure)
{
    constexpr double squarePerRim = canvasSize / (2.0 * faceRadius);
    return measure == DialMeasure::Rim ? millimetres * squarePerRim : millimetres;
}

QRectF dialBounds(double millimetres, DialMeasure measure, const DialMarks &marks, bool mirrored)
{
    QRectF bounds = squareAround({}, dialSide(millimetres, measure));
    if (marks.cropMarks)
        bounds |= squareAround({}, millimetres + 2.0 * cropMarkEnd);
    for (const DialHole &hole : marks.holes) {
        const double x = mirrored ? -hole.place.x() : hole.place.x();
        bounds |= squareAround({x, hole.place.y()}, hole.diameter);
    }
    if (marks.caption)
        bounds.setBottom(bounds.bottom() + captionHeight);
    return bounds;
}

QRectF ruleArea(const SheetPaper &paper)
{
    QRectF area = printableArea(paper);
    area.setTop(area.bottom() - ruleHeight);
    return area;
}

QRectF dialArea(const SheetPaper &paper)
{
    QRectF area = printableArea(paper);
    area.setBottom(area.bottom() - ruleHeight);
    return area.width() < ruleLength + 2.0 * ruleSpace ? QRectF() : area;
}

bool fitsOnPage(const SheetPaper &paper, const QRectF &bounds)
{
    const QRectF area = dialArea(paper);
    return bounds.width() <= area.width() + tolerance && bounds.height() <= area.height() + tolerance;
}

double largestDial(const SheetPaper &paper, DialMeasure measure, const DialMarks &marks)
{
    constexpr double stepsPerMillimetre = 10.0;
    const auto fits = [&](int steps) {
        return fitsOnPage(paper, dialBounds(steps / stepsPerMillimetre, measure, marks));
    };
    int fitting = 0;
    int tooLarge =
        static_cast<int>(std::max(paper.size.width(), paper.size.height()) * stepsPerMillimetre) + 1;
    while (tooLarge - fitting > 1) {
        const int middle = fitting + (tooLarge - fitting) / 2;
        (fits(middle) ? fitting : tooLarge) = middle;
    }
    return fitting / stepsPerMillimetre;
}

QList<SheetPlace> placeDials(const SheetPaper &paper, const QList<QRectF> &bounds)
{
    const QRectF area = dialArea(paper);
    QList<SheetPlace> places;
    places.reserve(bounds.size());
    qsizetype page = 0;
    qsizetype rowStart = 0;
    QRectF row(area.topLeft(), QSizeF());
    for (const QRectF &dial : bounds) {
        const bool firstInRow = places.size() == rowStart;
        double left = firstInRow ? area.left() : row.right() + paper.gap;
        if (!firstInRow && left + dial.width() > area.right() + tolerance) {
            row = QRectF(area.left(), row.bottom() + paper.gap, 0.0, 0.0);
            rowStart = places.size();
            left = area.left();
        }
        if (row.top() + dial.height() > area.bottom() + tolerance) {
            // A row that has become too high stays on its page; this dial begins the next.
            ++page;
            row = QRectF(area.topLeft(), QSizeF());
            rowStart = places.size();
            left = area.left();
        }
        places.append({page, QPointF(left, row.top()) - dial.topLeft()});
        row.setRight(left + dial.width());
        row.setBottom(std::max(row.bottom(), row.top() + dial.height()));
    }
    return places;
}

ContactCell contactCell(const SheetPaper &paper, int columns)
{
    const QRectF area = dialArea(paper);
    const double width = (area.width() - (columns - 1) * paper.gap) / columns;
    const double side = std::min(width, area.height() - captionHeight);
    return {side, QRectF(-width / 2.0, -side / 2.0, width, side + captionHeight)};
}
