#ifndef LIVEPAGE_H
#define LIVEPAGE_H

#include "render/angletable.h"
#include "render/gaugeparts.h"

#include <QByteArray>
#include <QList>
#include <QString>

/// Returns an HTML page that shows a gauge with needles that move. The page needs no other file and no
/// network; its script and styles are in the folder page.
///
/// @a parts are those of splitGauge(). The first needle follows the first table, the second one the second
/// and so on; needles without a table of their own follow the last. A gauge without a needle gets a plain
/// pointer. At first each needle shows the value at which it is drawn, or the minimum if that is not on its
/// scale.
///
/// Returns an empty array when @a tables is empty or the pictures cannot be made.
[[nodiscard]] QByteArray livePage(const QString &gaugeName, const QList<GaugePart> &parts,
                                  const QList<AngleTable> &tables);

/// The value at which a needle at @a angle points. Whole turns do not count. The minimum of the scale if the
/// angle is not on it.
[[nodiscard]] double valueAtAngle(const QList<QPointF> &points, double angle);

#endif
