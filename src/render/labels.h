#ifndef LABELS_H
#define LABELS_H

#include <QFont>
#include <QList>
#include <QPolygonF>
#include <QString>

struct gaugeData;

/// Labels have at most this many decimals. No double has more: others are zeros.
inline constexpr int maxLabelDecimals = 1074;

/// Returns the text of a layer's label for @a value.
[[nodiscard]] QString labelText(const gaugeData &layer, double value);

/// Returns the layer's label font, with its size limited to what Qt can draw.
[[nodiscard]] QFont labelFont(const gaugeData &layer);

/// A label as it is drawn.
struct GaugeLabel
{
    QString text;
    QPolygonF outline; ///< The box around the text's ink, in canvas units.
};

/// Returns the labels that a layer draws, in the order of its ticks. Empty if labels are not shown.
[[nodiscard]] QList<GaugeLabel> gaugeLabels(const gaugeData &layer);

#endif
