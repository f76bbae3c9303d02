#ifndef DRAWNSCALE_H
#define DRAWNSCALE_H

#include "fit/scalecurve.h"
#include "fit/scalemarks.h"
#include "model/gaugedata.h"

#include <QList>
#include <QString>

/// A look whose rings have colours of their own, so that a tick's rank can be seen.
[[nodiscard]] gaugeData rankedLook();

/// Writes the layers as a gauge file, reads it, draws it with paintGauge() and compares the ticks and labels
/// with the marks: all are there, once, with the look of their rank in rankedLook(), within @a maxError
/// degrees of the curve. Returns what is wrong first, or an empty string.
[[nodiscard]] QString faultOfDrawnScale(const QList<gaugeLayer> &layers, const ScaleCurve &curve,
                                        const ScaleMarks &marks, double maxError);

#endif
