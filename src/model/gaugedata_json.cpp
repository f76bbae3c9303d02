#include "model/gaugedata.h"

#include <QJsonArray>

#include <algorithm>
#include <array>
#include <iterator>

namespace {

/// Makes objects that all have the same keys.
///
/// The keys are inserted once, into a pattern; each object is a copy of it whose values are then replaced. In
/// a gauge of thousands of layers this costs a fraction of inserting the keys again and again.
template <std::size_t size>
class ObjectMaker
{
public:
    explicit ObjectMaker(const std::array<const char *, size> &keys)
    {
        for (const char *key : keys)
            m_pattern.insert(QLatin1String(key), QJsonValue::Null);
        // The pattern sorts its keys; where each of them has gone is remembered.
        std::transform(keys.begin(), keys.end(), m_places.begin(), [this](const char *key) {
            return std::distance(m_pattern.constBegin(), m_pattern.constFind(QLatin1String(key)));
        });
    }

    /// The object with @a values, in the order in which the keys were given.
    [[nodiscard]] QJsonObject operator()(const std::array<QJsonValue, size> &values) const
    {
        QJsonObject json = m_pattern;
        const auto first = json.begin();
        for (std::size_t i = 0; i < size; ++i)
            first[m_places[i]] = values[i];
        return json;
    }

private:
    QJsonObject m_pattern;
    std::array<qsizetype, size> m_places{};
};

QJsonObject divisionToJson(int count, double innerRadius, double outerRadius, double width,
                           const QColor &color)
{
    static const ObjectMaker make(std::array{"count", "innerRadius", "outerRadius", "width", "color"});
    return make({count, innerRadius, outerRadius, width, color.name()});
}

QJsonObject arcToJson(double startAngle, double angleLength, double radius, double width, const QColor &color)
{
    static const ObjectMaker make(std::array{"startAngle", "angleLength", "radius", "width", "color"});
    return make({startAngle, angleLength, radius, width, color.name()});
}

double jsonDouble(const QJsonObject &json, const char *key, double fallback)
{
    return json.value(QLatin1String(key)).toDouble(fallback);
}

int jsonInt(const QJsonObject &json, const char *key, int fallback)
{
    return json.value(QLatin1String(key)).toInt(fallback);
}

bool jsonBool(const QJsonObject &json, const char *key, bool fallback)
{
    return json.value(QLatin1String(key)).toBool(fallback);
}

QColor jsonColor(const QJsonObject &json, const char *key, const QColor &fallback)
{
    const QColor color = QColor::fromString(json.value(QLatin1String(key)).toString());
    return color.isValid() ? color : fallback;
}

QJsonObject jsonObject(const QJsonObject &json, const char *key)
{
    return json.value(QLatin1String(key)).toObject();
}

QJsonArray jsonArray(const QJsonObject &json, const char *key)
{
    return json.value(QLatin1String(key)).toArray();
}

QJsonObject fontToJson(const QFont &font)
{
    static const ObjectMaker make(std::array{"family", "pointSize", "bold", "italic"});
    return make(
        {font.family(), font.pointSize(), font.weight() > QFont::Medium, font.style() != QFont::StyleNormal});
}

/// The font is built anew, so whatever @a json does not say of bold and italic is off.
QFont fontFromJson(const QJsonObject &json, const QFont &current)
{
    const int pointSize = jsonInt(json, "pointSize", current.pointSize());
    const QString family = json.value(QLatin1String("family")).toString(current.family());
    QFont font(family, pointSize);
    font.setWeight(jsonBool(json, "bold", false) ? QFont::Bold : QFont::Normal);
    font.setStyle(jsonBool(json, "italic", false) ? QFont::StyleItalic : QFont::StyleNormal);
    return font;
}

} // namespace

bool gaugeData::isDefault() const
{
    return toJson() == gaugeData().toJson();
}

QJsonObject gaugeData::toJson() const
{
    static const ObjectMaker makeGauge(
        std::array{"startAngle", "angleLength", "bias", "midpointBias", "roundedTickCaps", "roundedArcCaps"});
    const QJsonObject gauge =
        makeGauge({startAngle, angleLength, bias, midpointBias, roundedTickCaps, roundedArcCaps});

    QJsonArray divisions;
    for (size_t ring = 0; ring < divisionCount.size(); ++ring) {
        divisions.append(divisionToJson(divisionCount[ring], divisionInnerRadius[ring],
                                        divisionOuterRadius[ring], divisionLineWidth[ring],
                                        divisionColor[ring]));
    }

    QJsonArray arcs;
    for (size_t arc = 0; arc < arcRadius.size(); ++arc) {
        arcs.append(
            arcToJson(arcStartAngle[arc], arcAngleLength[arc], arcRadius[arc], arcWidth[arc], arcColor[arc]));
    }

    static const ObjectMaker makeTicks(std::array{"enabled", "start", "increment", "decimalPlaces", "radius",
                                                  "rotate", "skipFirst", "font", "color"});
    const QJsonObject ticks = makeTicks(
        {tickCountEnabled, tickCountStart, tickCountIncrement, tickCountDecimalPlaces, tickCountRadius,
         tickCountRotate, tickCountSkipFirst, fontToJson(tickCountFont), tickCountColor.name()});

    static const ObjectMaker makeLayer(std::array{"gauge", "divisions", "arcs", "ticks"});
    return makeLayer({gauge, divisions, arcs, ticks});
}

void gaugeData::fromJson(const QJsonObject &json)
{
    const QJsonObject gauge = jsonObject(json, "gauge");
    startAngle = jsonDouble(gauge, "startAngle", startAngle);
    angleLength = jsonDouble(gauge, "angleLength", angleLength);
    bias = jsonDouble(gauge, "bias", bias);
    midpointBias = jsonBool(gauge, "midpointBias", midpointBias);
    roundedTickCaps = jsonBool(gauge, "roundedTickCaps", roundedTickCaps);
    roundedArcCaps = jsonBool(gauge, "roundedArcCaps", roundedArcCaps);

    const QJsonArray divisions = jsonArray(json, "divisions");
    const auto rings = std::min(static_cast<size_t>(divisions.size()), divisionCount.size());
    for (size_t ring = 0; ring < rings; ++ring) {
        const QJsonObject division = divisions.at(static_cast<qsizetype>(ring)).toObject();
        divisionCount[ring] = jsonInt(division, "count", divisionCount[ring]);
        divisionInnerRadius[ring] = jsonDouble(division, "innerRadius", divisionInnerRadius[ring]);
        divisionOuterRadius[ring] = jsonDouble(division, "outerRadius", divisionOuterRadius[ring]);
        divisionLineWidth[ring] = jsonDouble(division, "width", divisionLineWidth[ring]);
        divisionColor[ring] = jsonColor(division, "color", divisionColor[ring]);
    }

    const QJsonArray arcElements = jsonArray(json, "arcs");
    const auto arcs = std::min(static_cast<size_t>(arcElements.size()), arcRadius.size());
    for (size_t arc = 0; arc < arcs; ++arc) {
        const QJsonObject element = arcElements.at(static_cast<qsizetype>(arc)).toObject();
        arcStartAngle[arc] = jsonDouble(element, "startAngle", arcStartAngle[arc]);
        arcAngleLength[arc] = jsonDouble(element, "angleLength", arcAngleLength[arc]);
        arcRadius[arc] = jsonDouble(element, "radius", arcRadius[arc]);
        arcWidth[arc] = jsonDouble(element, "width", arcWidth[arc]);
        arcColor[arc] = jsonColor(element, "color", arcColor[arc]);
    }

    const QJsonObject ticks = jsonObject(json, "ticks");
    tickCountEnabled = jsonBool(ticks, "enabled", tickCountEnabled);
    tickCountStart = jsonDouble(ticks, "start", tickCountStart);
    tickCountIncrement = jsonDouble(ticks, "increment", tickCountIncrement);
    tickCountDecimalPlaces = jsonInt(ticks, "decimalPlaces", tickCountDecimalPlaces);
    tickCountRadius = jsonDouble(ticks, "radius", tickCountRadius);
    tickCountRotate = jsonBool(ticks, "rotate", tickCountRotate);
    tickCountSkipFirst = jsonBool(ticks, "skipFirst", tickCountSkipFirst);
    tickCountColor = jsonColor(ticks, "color", tickCountColor);
    tickCountFont = fontFromJson(jsonObject(ticks, "font"), tickCountFont);
}
