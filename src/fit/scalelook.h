#ifndef SCALELOOK_H
#define SCALELOOK_H

#include "model/gaugedata.h"

#include <QList>
#include <QString>

class ScaleCurve;
struct ValueRange;
struct FitOptions;

/// The look of scales without --style: dark marks and numbers on a light disc. The arcs are the disc and its
/// rim.
[[nodiscard]] gaugeData plainLook();

/// The file in the value of --style, which may end with a colon and the name or number of a layer.
[[nodiscard]] QString styleFile(const QString &style);

/// Where the new layers go, and what they look like.
struct ScalePlace
{
    QList<gaugeLayer> layers; ///< The layers that stay.
    qsizetype row = 0;        ///< The new layers are inserted here.
    gaugeData look;           ///< Of the new layers. Its arcs are circles to draw below them.
    QString failure;          ///< Names the file. Empty when the files could be read.
};

/// Reads the gauges of --style and --into.
[[nodiscard]] ScalePlace readScalePlace(const FitOptions &options);

/// Returns layers of arcs from value to value, or sets @a failure to a range that is not on the curve. The
/// ranges lie under the marks, so that the arcs of the first layer of @a scale are moved to a layer below.
[[nodiscard]] QList<gaugeLayer> withRanges(QList<gaugeLayer> scale, const FitOptions &options,
                                           const ScaleCurve &curve, QString &failure);

#endif
