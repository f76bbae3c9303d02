#include "model/gaugedata.h"

#include <QJsonArray>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QJsonObject divisionToJson(int count, double innerRadius, double outerRadius, double width,
                           const QColor &color)
{
    return {{u"count"_s, count},
            {u"innerRadius"_s, innerRadius},
            {u"outerRadius"_s, outerRadius},
            {u"width"_s, width},
            {u"color"_s, color.name()}};
}

QJsonObject arcToJson(double startAngle, double angleLength, double radius, double width, const QColor &color)
{
    return {{u"startAngle"_s, startAngle},
            {u"angleLength"_s, angleLength},
            {u"radius"_s, radius},
            {u"width"_s, width},
            {u"color"_s, color.name()}};
}

QJsonObject fontToJson(const QFont &font)
{
    return {{u"family"_s, font.family()},
            {u"pointSize"_s, font.pointSize()},
            {u"bold"_s, font.weight() > QFont::Medium},
            {u"italic"_s, font.style() != QFont::StyleNormal}};
}

// The readers return the fallback when the key is missing or its value has another type.

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

/// Builds a new font, so "bold" and "italic" are off unless @a json sets them.
QFont fontFromJson(const QJsonObject &json, const QFont &current)
{
    const int pointSize = jsonInt(json, "pointSize", current.pointSize());
    const QString family = json.value("family"_L1).toString(current.family());
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
    const QJsonObject gauge{{u"startAngle"_s, startAngle},
                            {u"angleLength"_s, angleLength},
                            {u"bias"_s, bias},
                            {u"midpointBias"_s, midpointBias},
                            {u"roundedTickCaps"_s, roundedTickCaps},
                            {u"roundedArcCaps"_s, roundedArcCaps}};

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

    const QJsonObject ticks{
        {u"enabled"_s, tickCountEnabled},     {u"start"_s, tickCountStart},
        {u"increment"_s, tickCountIncrement}, {u"decimalPlaces"_s, tickCountDecimalPlaces},
        {u"radius"_s, tickCountRadius},       {u"rotate"_s, tickCountRotate},
        {u"skipFirst"_s, tickCountSkipFirst}, {u"font"_s, fontToJson(tickCountFont)},
        {u"color"_s, tickCountColor.name()}};

    return {{u"gauge"_s, gauge}, {u"divisions"_s, divisions}, {u"arcs"_s, arcs}, {u"ticks"_s, ticks}};
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
