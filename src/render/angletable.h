#ifndef ANGLETABLE_H
#define ANGLETABLE_H

#include "render/simplifiedtable.h"

#include <QList>
#include <QPointF>
#include <QString>
#include <QStringList>

struct gaugeData;

/// A scale as a function value -> angle, given by points between which straight lines are drawn.
struct AngleTable
{
    QString name;          ///< The layer's, or one that the user gives.
    QStringList layers;    ///< The names of the layers that the scale is made of.
    double maxError = 0.1; ///< By how much the lines depart from the layers' angles at most, in degrees.
    QList<QPointF> points; ///< x: value, strictly ascending. y: degrees clockwise from 12 o'clock, unwrapped.
};

/// Returns the angle of a position on the layer's scale, in degrees clockwise from 12 o'clock. Whole
/// positions are the primary ticks, counted from 0, and the angles are exactly theirs. The scale ends at
/// position divisionCount[0]; on a full circle no tick is drawn there.
[[nodiscard]] double scaleAngle(const gaugeData &layer, double position);

/// Returns the layer's scale as a table with the fewest points: a position stands for the value
/// tickCountStart + position * tickCountIncrement, and straight lines depart from scaleAngle() by at most
/// @a maxError degrees, anywhere on the scale. "Fewest" and where the points are: see simplifiedTable(). The
/// first and the last point are exact, in both coordinates.
///
/// Values ascend strictly, even where the increment is negative. Where the angle jumps, as with a bias close
/// to 0 or 1, the table has two points as close together as doubles can be, or 2^-900 of the scale. Positions
/// and angles are never more precise than a double, and angles not more precise than 2^-46 of the largest
/// one.
///
/// Returns an empty list when there is no scale: the increment is 0 or does not change the value, there is no
/// primary division, the values or angles are not finite; also when the table would need many thousands of
/// points, which takes sweeps of millions of degrees or an extremely small @a maxError, and when @a maxError
/// is not above 0.
[[nodiscard]] QList<QPointF> angleTablePoints(const gaugeData &layer, double maxError);

/// Returns the scales of several layers as one table, as angleTablePoints() does for one. The lowest values
/// come first, whatever the order of @a layers. Where a layer's scale begins at another angle than the last
/// one ended, the table has a jump. Empty when one of the layers has no scale.
[[nodiscard]] QList<QPointF> joinedTablePoints(const QList<gaugeData> &layers, double maxError);

/// Returns the points with the smallest and the largest value of a layer's scale. Empty when it has none.
[[nodiscard]] QList<QPointF> scaleEnds(const gaugeData &layer);

#endif
