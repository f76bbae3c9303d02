#ifndef CURVETABLE_H
#define CURVETABLE_H

#include "fit/scalecurve.h"

#include <QByteArray>
#include <QList>
#include <QString>

struct gaugeLayer;

/// The curve as an angle table, in one of the exporter's formats.
struct CurveTable
{
    QByteArray bytes;
    QString failure; ///< Empty when it was made.
};

/// Makes a table of the curve from @a min to @a max whose straight lines depart from it by at most 0.1
/// degrees; in "h", whose numbers are rounded, by at most 0.11.
///
/// @a format is "json", "xml" or "h"; the gauge has this name and is drawn by these layers.
[[nodiscard]] CurveTable makeCurveTable(const ScaleCurve &curve, double min, double max,
                                        const QString &format, const QString &gaugeName,
                                        const QList<gaugeLayer> &layers);

#endif
