#ifndef SCALELABELS_H
#define SCALELABELS_H

#include "model/gaugedata.h"

#include <QList>
#include <QString>

#include <utility>

class ScaleCurve;

/// Two labels that overlap, by their texts.
using LabelPair = std::pair<QString, QString>;

/// Returns the pairs of labels of these layers that overlap.
[[nodiscard]] QList<LabelPair> overlappingLabels(const QList<gaugeLayer> &layers);

/// Returns 5 to 12 round numbers between the ends of the curve whose labels do not overlap: equal steps of 1,
/// 2 or 5 times a power of ten, as many as fit; or, where these overlap at one end, numbers that are 0 or 1,
/// 2 or 5 times a power of ten themselves, with the same digits in each decade if possible. When neither
/// gives 5, the smallest number of equal steps.
[[nodiscard]] QList<double> chooseLabels(const ScaleCurve &curve, const gaugeData &look);

#endif
