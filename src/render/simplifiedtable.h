#ifndef SIMPLIFIEDTABLE_H
#define SIMPLIFIEDTABLE_H

#include <QList>
#include <QPointF>

/// Returns a polyline with the fewest points that departs from @a exact by at most @a maxError in y,
/// anywhere.
///
/// The x of @a exact must ascend strictly, and so do the x of the result. Its first and last points are
/// those of @a exact. The points between them are anywhere in the strip of height 2 @a maxError around
/// @a exact, so that no other polyline in this strip has fewer points. Returns @a exact when it has fewer
/// than three points or @a maxError is not above 0.
///
/// Each line is drawn as far through the strip as possible, after: H. Imai and M. Iri, "An optimal algorithm
/// for approximating a piecewise linear function", Journal of Information Processing 9 (1986). Takes time in
/// proportion to the number of points.
[[nodiscard]] QList<QPointF> simplifiedTable(const QList<QPointF> &exact, double maxError);

#endif
