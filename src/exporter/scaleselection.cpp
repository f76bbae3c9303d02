#include "exporter/scaleselection.h"

#include "model/gaugedata.h"
#include "model/layerselection.h"

#include <algorithm>
#include <cmath>
#include <ranges>

namespace {

/// The largest gap between joined layers, in degrees.
constexpr double maxGap = 0.5;

/// The largest relative difference of the values where layers meet, because each is rounded.
constexpr double valuePrecision = 1e-9;

/// Layers that become one table.
struct Choice
{
    QString name;
    QList<gaugeLayer> layers;
};

struct Choices
{
    QList<Choice> choices;
    QString failure;
};

QString checkScale(const gaugeLayer &layer)
{
    if (!scaleEnds(layer.data).isEmpty())
        return {};
    QString reason;
    if (layer.data.divisionCount[0] < 1)
        reason = QStringLiteral("it has no primary divisions");
    else if (layer.data.tickCountIncrement == 0.0)
        reason = QStringLiteral("its increment is 0");
    else
        reason =
            QStringLiteral("its values or angles are not finite, or its increment does not change the value");
    return QStringLiteral("The layer \"%1\" has no scale: %2.").arg(layer.name, reason);
}

/// A layer and the ends of its scale.
struct Segment
{
    QString name;
    QPointF first;
    QPointF last;
};

QString checkJoint(const Segment &lower, const Segment &upper)
{
    const auto number = [](double value) {
        return QString::number(value + 0.0, 'g', 12); // + 0.0 removes the sign of zero
    };
    const double largest =
        std::max({std::abs(lower.first.x()), std::abs(lower.last.x()), std::abs(upper.last.x())});
    const double valueGap = upper.first.x() - lower.last.x();
    if (std::abs(valueGap) > largest * valuePrecision) {
        return QStringLiteral(
                   "The layers \"%1\" and \"%2\" do not meet: the values of one end at %3, those of the "
                   "other begin at %4, a gap of %5.")
            .arg(lower.name, upper.name, number(lower.last.x()), number(upper.first.x()), number(valueGap));
    }
    const double angleGap = upper.first.y() - lower.last.y();
    if (!(std::abs(angleGap) <= maxGap * (1.0 + valuePrecision))) {
        return QStringLiteral(
                   "The layers \"%1\" and \"%2\" do not meet: at %3 one ends at %4 degrees, the other "
                   "begins at %5, a gap of %6.")
            .arg(lower.name, upper.name, number(lower.last.x()), number(lower.last.y()),
                 number(upper.first.y()), number(angleGap));
    }
    return {};
}

QString checkChoice(const Choice &choice)
{
    QList<Segment> segments;
    for (const gaugeLayer &layer : choice.layers) {
        QString failure = checkScale(layer);
        if (!failure.isEmpty())
            return failure;
        const QList<QPointF> ends = scaleEnds(layer.data);
        segments.append({layer.name, ends.constFirst(), ends.constLast()});
    }
    std::ranges::stable_sort(segments, {}, [](const Segment &segment) { return segment.first.x(); });
    for (qsizetype index = 1; index < segments.size(); ++index) {
        QString failure = checkJoint(segments.at(index - 1), segments.at(index));
        if (!failure.isEmpty())
            return failure;
    }
    return {};
}

/// The layers that one choice names. A name with "=" in it is a layer's if there is one.
Choices readChoice(const QString &text, const QList<gaugeLayer> &layers)
{
    const qsizetype equals = text.indexOf(QLatin1Char('='));
    QString unknown;
    QList<qsizetype> rows = findLayers(text, layers, unknown);
    const bool isJoined = !unknown.isNull() && !text.left(std::max<qsizetype>(0, equals)).trimmed().isEmpty();
    if (isJoined) {
        unknown = QString();
        rows = findLayers(text.mid(equals + 1), layers, unknown);
    }
    if (!unknown.isNull())
        return {{}, describeUnknownLayer(unknown, layers)};

    Choices result;
    QList<qsizetype> seen;
    for (const qsizetype row : std::as_const(rows)) {
        if (seen.contains(row))
            continue;
        seen.append(row);
        const gaugeLayer &layer = layers.at(row);
        if (isJoined && !result.choices.isEmpty())
            result.choices.last().layers.append(layer);
        else
            result.choices.append({isJoined ? text.left(equals).trimmed() : layer.name, {layer}});
    }
    return result;
}

Choices readChoices(const QStringList &texts, const QList<gaugeLayer> &layers)
{
    Choices result;
    for (const QString &text : texts) {
        Choices read = readChoice(text, layers);
        if (!read.failure.isEmpty())
            return read;
        result.choices += read.choices;
    }
    for (const Choice &choice : std::as_const(result.choices)) {
        result.failure = checkChoice(choice);
        if (!result.failure.isEmpty())
            break;
    }
    return result;
}

Choices labelledScales(const QList<gaugeLayer> &layers)
{
    Choices result;
    for (const gaugeLayer &layer : layers) {
        if (layer.data.tickCountEnabled && !scaleEnds(layer.data).isEmpty())
            result.choices.append({layer.name, {layer}});
    }
    return result;
}

} // namespace

ScaleTables scaleTables(const QList<gaugeLayer> &layers, const QStringList &choices, double maxError)
{
    const Choices chosen = choices.isEmpty() ? labelledScales(layers) : readChoices(choices, layers);
    if (!chosen.failure.isEmpty())
        return {{}, chosen.failure};
    QList<AngleTable> tables;
    for (const Choice &choice : chosen.choices) {
        QStringList names;
        QList<gaugeData> data;
        for (const gaugeLayer &layer : choice.layers) {
            names.append(layer.name);
            data.append(layer.data);
        }
        const QList<QPointF> points = joinedTablePoints(data, maxError);
        if (points.isEmpty()) {
            return {{},
                    QStringLiteral("The table of the scale \"%1\" would have too many points (--max-error).")
                        .arg(choice.name)};
        }
        tables.append({choice.name, names, maxError, points});
    }
    return {tables, {}};
}
