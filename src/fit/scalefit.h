#ifndef SCALEFIT_H
#define SCALEFIT_H

#include "model/gaugedata.h"

#include <QList>
#include <QString>

class ScaleCurve;
struct ScaleMarks;

/// The layers of a scale and how exact they are.
struct ScaleFit
{
    QList<gaugeLayer> layers;
    double worstError = 0.0; ///< degrees by which a mark of the layers is off the curve
    double worstValue = 0.0; ///< value of that mark
    QString failure;         ///< one line that says what is wrong and where; empty if the fit succeeded
};

/// Returns layers that draw @a marks so that each is at most @a maxError degrees off @a curve, as few as it
/// finds. They are named after their values and lie in the order of these.
///
/// Rings 1, 2 and 3 of @a look are the ticks at labels, minor and subminor marks; radii, widths, colours,
/// caps and the font of all layers are its own. Only the first layer has its arcs.
///
/// Fails if labels do not ascend or are not finite, if there are too many marks, if the curve has no angle at
/// a mark, or if numbers are too large for the accuracy. There are no layers then.
[[nodiscard]] ScaleFit fitScale(const ScaleCurve &curve, const ScaleMarks &marks, double maxError,
                                const gaugeData &look);

#endif
