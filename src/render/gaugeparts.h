#ifndef GAUGEPARTS_H
#define GAUGEPARTS_H

#include "model/gaugedata.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

/// Consecutive layers of a gauge that are drawn as one picture.
struct GaugePart
{
    QString name; ///< "face", "needle" or "cover"; with several needles also "face-2", "needle-2".
    QList<gaugeLayer> layers; ///< Bottom layer first. Empty when the gauge has no layers there.
    bool isNeedle = false;
    double needleAngle = 0.0; ///< Of a needle: degrees clockwise from 12 o'clock at which it is drawn.
    qsizetype choice = 0;     ///< Of a needle: its index in the choices, which can be in another order.
};

/// The parts of a gauge, or why it has none.
struct GaugeParts
{
    QList<GaugePart> parts; ///< Bottom part first.
    QString failure;        ///< Empty when there are parts.
};

/// A needle to take out of a gauge.
struct NeedleChoice
{
    QString layers;              ///< Names or numbers, as for findLayers().
    std::optional<double> angle; ///< Replaces the angle at which the needle is drawn; finite.
};

/// The names of the parts of a gauge with @a needleCount needles, from the bottom up. "face" is below the
/// needle, "cover" above it. With several needles, "face-2" lies between the first needle and "needle-2", and
/// so on.
[[nodiscard]] QStringList partNames(qsizetype needleCount);

/// Splits the layers into the parts that partNames() lists. Drawn one over the other they are the whole
/// gauge. Needles are numbered from the bottom up, whatever the order of @a needles.
///
/// The layers of a needle must be consecutive, and no layer belongs to two needles. A needle is drawn at the
/// angle of the first primary tick of its first layer, at 0 when that layer has no such tick.
[[nodiscard]] GaugeParts splitGauge(const QList<gaugeLayer> &layers, const QList<NeedleChoice> &needles);

#endif
