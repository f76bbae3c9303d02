#ifndef GAUGECHECK_H
#define GAUGECHECK_H

#include "model/gaugedata.h"

#include <QList>
#include <QString>

class ScaleCurve;

/// A labelled mark of a gauge, compared with a curve.
struct CheckedMark
{
    QString layer;
    double value = 0.0;
    double angle = 0.0;    ///< Of the mark, in degrees clockwise from 12 o'clock.
    double expected = 0.0; ///< The curve's angle. NaN if the value is beyond the curve.
    double error = 0.0;    ///< In degrees, 0 to 180. NaN if there is no expected angle.
};

/// Compares the marks that have labels with the curve. Where @a withoutSign is true, a label stands for the
/// value or for its negative, whichever is nearer.
[[nodiscard]] QList<CheckedMark> checkMarks(const QList<gaugeLayer> &layers, const ScaleCurve &curve,
                                            bool withoutSign);

#endif
