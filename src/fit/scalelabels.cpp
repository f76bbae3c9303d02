#include "fit/scalelabels.h"

#include "fit/scalecurve.h"
#include "fit/scalemarks.h"
#include "render/labels.h"

#include <QTransform>

#include <algorithm>
#include <cmath>

namespace {

constexpr qsizetype minCount = 5;
constexpr qsizetype maxCount = 12;

bool overlap(const QPolygonF &a, const QPolygonF &b)
{
    return a.boundingRect().intersects(b.boundingRect()) && a.intersects(b);
}

/// The label as fitScale() places it, with some space around it.
QPolygonF outlineOf(const gaugeData &look, double value, double angle)
{
    constexpr double space = 1.2; // times the size of the label
    gaugeData layer = look;
    layer.divisionCount = {1, 1, 1};
    layer.startAngle = angle;
    layer.angleLength = 360.0;
    layer.tickCountEnabled = true;
    layer.tickCountSkipFirst = false;
    layer.tickCountStart = value;
    layer.tickCountDecimalPlaces = labelDecimals({value});
    const QPolygonF outline = gaugeLabels(layer).constFirst().outline;
    const QPointF centre = outline.boundingRect().center();
    QTransform larger;
    larger.translate(centre.x(), centre.y());
    larger.scale(space, space);
    larger.translate(-centre.x(), -centre.y());
    return larger.map(outline);
}

/// Returns those of the values that can be labelled, at most maxCount. Earlier values are preferred.
QList<double> withoutOverlaps(const QList<double> &values, const ScaleCurve &curve, const gaugeData &look)
{
    QList<double> kept;
    QList<QPolygonF> outlines;
    for (const double value : values) {
        const QPolygonF outline = outlineOf(look, value, curve.angle(value));
        const bool isFree = std::ranges::none_of(
            outlines, [&outline](const QPolygonF &other) { return overlap(outline, other); });
        if (!isFree || kept.size() == maxCount)
            continue;
        kept.append(value);
        outlines.append(outline);
    }
    std::ranges::sort(kept);
    return kept;
}

/// Returns 0 and the numbers on the curve that are one of @a digits times a power of ten, those of the first
/// digit first.
QList<double> roundNumbers(const ScaleCurve &curve, const QList<int> &digits)
{
    // Below the largest number. Near 0, labels of more decades would overlap.
    const int decades = curve.minValue() <= 0.0 && curve.maxValue() >= 0.0 ? 4 : 12;
    const double largest = std::max(std::abs(curve.minValue()), std::abs(curve.maxValue()));
    const int top = static_cast<int>(std::floor(std::log10(largest)));
    QList<double> numbers{0.0};
    for (const int digit : digits) {
        for (int power = top; power > top - decades && power >= -maxFormDecimals; --power) {
            const double number = QStringLiteral("%1e%2").arg(digit).arg(power).toDouble();
            numbers.append({number, -number});
        }
    }
    numbers.removeIf(
        [&curve](double number) { return !(number >= curve.minValue() && number <= curve.maxValue()); });
    return numbers;
}

} // namespace

QList<LabelPair> overlappingLabels(const QList<gaugeLayer> &layers)
{
    QList<GaugeLabel> labels;
    for (const gaugeLayer &layer : layers)
        labels.append(gaugeLabels(layer.data));
    QList<LabelPair> pairs;
    for (qsizetype i = 0; i < labels.size(); ++i) {
        for (qsizetype j = i + 1; j < labels.size(); ++j) {
            if (overlap(labels.at(i).outline, labels.at(j).outline))
                pairs.append({labels.at(i).text, labels.at(j).text});
        }
    }
    return pairs;
}

QList<double> chooseLabels(const ScaleCurve &curve, const gaugeData &look)
{
    QList<double> labels;
    for (qsizetype count = maxCount; count >= minCount; --count) {
        labels = roundLabels(curve.minValue(), curve.maxValue(), static_cast<int>(count));
        if (labels.size() >= minCount && withoutOverlaps(labels, curve, look).size() == labels.size())
            return labels;
    }
    // The same digits in all decades, or else as many numbers as fit.
    const QList<int> allDigits{1, 5, 2};
    for (const QList<int> &digits : {allDigits, QList<int>{1, 5}, QList<int>{1}}) {
        const QList<double> numbers = roundNumbers(curve, digits);
        QList<double> kept = withoutOverlaps(numbers, curve, look);
        if (kept.size() >= minCount && kept.size() == numbers.size())
            return kept;
    }
    const QList<double> numbers = withoutOverlaps(roundNumbers(curve, allDigits), curve, look);
    return numbers.size() >= minCount ? numbers : labels;
}
