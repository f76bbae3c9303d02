#include "sheet/sheetcaption.h"

#include <QFontMetricsF>

#include <algorithm>

SheetCaption sheetCaption(const QString &name, const QString &remarks, double width,
                          const QFontMetricsF &metrics)
{
    constexpr double minScale = 0.5;
    const QString rest = name.isEmpty() || remarks.isEmpty() ? remarks : QStringLiteral(", ") + remarks;
    const QString line = name + rest;
    const double lineWidth = metrics.horizontalAdvance(line);
    if (lineWidth <= width)
        return {line, 1.0};
    if (lineWidth * minScale <= width)
        return {line, width / lineWidth};
    const double space = width / minScale;
    const QString shortened =
        metrics.elidedText(name, Qt::ElideMiddle, space - metrics.horizontalAdvance(rest)) + rest;
    const bool hasName = shortened.size() > rest.size() + 1; // more than an ellipsis
    if (hasName && metrics.horizontalAdvance(shortened) <= space)
        return {shortened, minScale};
    const QString cut = metrics.elidedText(line, Qt::ElideRight, space);
    // Elided texts can be a little wider than asked for, and a single letter is never elided.
    return {cut, std::min(minScale, width / std::max(1.0, metrics.horizontalAdvance(cut)))};
}
