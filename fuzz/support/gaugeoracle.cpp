#include "gaugeoracle.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QStringList>

#include <bit>
#include <cmath>
#include <limits>

namespace {

constexpr auto defaultRecord = R"({
    "gauge": {"startAngle": 0, "angleLength": 120, "bias": 0.5, "midpointBias": false,
              "roundedTickCaps": false, "roundedArcCaps": false},
    "divisions": [{"count": 4, "innerRadius": 0.8, "outerRadius": 1, "width": 0, "color": "#ffffff"},
                  {"count": 1, "innerRadius": 0.9, "outerRadius": 1, "width": 0, "color": "#ffffff"},
                  {"count": 1, "innerRadius": 0.95, "outerRadius": 1, "width": 0, "color": "#ffffff"}],
    "arcs": [{"startAngle": 0, "angleLength": 120, "radius": 1, "width": 0, "color": "#00ff00"},
             {"startAngle": 0, "angleLength": 0, "radius": 1, "width": 0, "color": "#ffff00"},
             {"startAngle": 0, "angleLength": 0, "radius": 1, "width": 0, "color": "#ff0000"},
             {"startAngle": 0, "angleLength": 0, "radius": 1, "width": 0, "color": "#ffffff"}],
    "ticks": {"enabled": true, "start": 0, "increment": 1, "decimalPlaces": 0, "radius": 0.74,
              "rotate": false, "skipFirst": false, "color": "#ffffff",
              "font": {"family": "Sans Serif", "pointSize": 10, "bold": false, "italic": false}}
})";

bool fitsInt(double value)
{
    return value == std::trunc(value) && value >= std::numeric_limits<int>::min() &&
           value <= std::numeric_limits<int>::max();
}

/// The value that stands for @a key in the record: the one given if it is of the right kind, else the
/// default.
QJsonValue expectedValue(const QString &key, const QJsonValue &given, const QJsonValue &byDefault)
{
    if (byDefault.isBool())
        return given.isBool() ? given : byDefault;
    if (byDefault.isDouble()) {
        const bool integer = key == QLatin1String("count") || key == QLatin1String("decimalPlaces") ||
                             key == QLatin1String("pointSize");
        const double number = given.toDouble(std::numeric_limits<double>::quiet_NaN());
        const bool taken = std::isfinite(number) && (!integer || fitsInt(number));
        const double value = taken ? number : byDefault.toDouble();
        // A font makes its own of a size that is none.
        return key == QLatin1String("pointSize")
                   ? QJsonValue(QFont(QString(), static_cast<int>(value)).pointSize())
                   : QJsonValue(value);
    }
    if (key == QLatin1String("family"))
        return QFont(given.toString(byDefault.toString()), 1).family();
    const QColor color = QColor::fromString(given.toString());
    return color.isValid() ? QJsonValue(color.name()) : byDefault;
}

/// The default object with what @a given carries: objects and arrays are those of the default, however many
/// elements or other members are given.
QJsonObject expectedObject(const QJsonObject &given, const QJsonObject &byDefault)
{
    QJsonObject result = byDefault;
    for (const QString &key : byDefault.keys()) {
        const QJsonValue usual = byDefault.value(key);
        const QJsonValue value = given.value(key);
        if (usual.isObject()) {
            result.insert(key, expectedObject(value.toObject(), usual.toObject()));
        } else if (usual.isArray()) {
            const QJsonArray elements = value.toArray();
            QJsonArray expected;
            for (qsizetype i = 0; i < usual.toArray().size(); ++i)
                expected.append(expectedObject(elements.at(i).toObject(), usual.toArray().at(i).toObject()));
            result.insert(key, expected);
        } else {
            result.insert(key, expectedValue(key, value, usual));
        }
    }
    return result;
}

bool sameBits(double a, double b)
{
    return std::bit_cast<quint64>(a) == std::bit_cast<quint64>(b) || (std::isnan(a) && std::isnan(b));
}

template <size_t count>
bool sameBits(const std::array<double, count> &a, const std::array<double, count> &b)
{
    return std::equal(a.begin(), a.end(), b.begin(), [](double x, double y) { return sameBits(x, y); });
}

} // namespace

QJsonObject expectedRecord(const QJsonObject &layer)
{
    static const QJsonObject byDefault = QJsonDocument::fromJson(defaultRecord).object();
    return expectedObject(layer, byDefault);
}

bool isOlderForm(const QString &text)
{
    return text.count(QLatin1Char(',')) >= 49;
}

gaugeData expectedRecord(const QString &text, const gaugeData &before)
{
    const QStringList fields = text.split(QLatin1Char(','));
    const auto number = [&fields](qsizetype field) { return fields.at(field).toDouble(); };
    const auto integer = [&fields](qsizetype field) { return fields.at(field).toInt(); };
    const auto flag = [&integer](qsizetype field) { return integer(field) != 0; };
    const auto color = [&fields](qsizetype field) { return QColor::fromString(fields.at(field)); };

    gaugeData record = before;
    record.startAngle = number(0);
    record.angleLength = number(1);
    record.bias = number(2);
    record.midpointBias = flag(3);
    record.roundedTickCaps = flag(4);
    record.divisionCount = {integer(5), integer(6), integer(7)};
    record.divisionInnerRadius = {number(8), number(9), number(10)};
    record.divisionOuterRadius = {number(11), number(12), number(13)};
    record.divisionLineWidth = {number(14), number(15), number(16)};
    record.divisionColor = {color(17), color(18), color(19)};
    record.roundedArcCaps = flag(20);
    record.arcStartAngle = {number(21), number(22), number(23), number(24)};
    record.arcAngleLength = {number(25), number(26), number(27), number(28)};
    record.arcRadius = {number(29), number(30), number(31), number(32)};
    record.arcWidth = {number(33), number(34), number(35), number(36)};
    record.arcColor = {color(37), color(38), color(39), color(40)};
    record.tickCountEnabled = flag(41);
    record.tickCountStart = number(42);
    record.tickCountIncrement = number(43);
    record.tickCountDecimalPlaces = integer(44);
    record.tickCountRadius = number(45);
    record.tickCountSkipFirst = flag(46);
    record.tickCountRotate = flag(47);
    record.tickCountColor = color(fields.size() - 1);
    if (!record.tickCountFont.fromString(fields.mid(48, fields.size() - 49).join(QLatin1Char(','))))
        record.tickCountFont = QFont(fields.at(48), integer(49));
    return record;
}

bool sameRecord(const gaugeData &a, const gaugeData &b)
{
    return sameBits(a.startAngle, b.startAngle) && sameBits(a.angleLength, b.angleLength) &&
           sameBits(a.bias, b.bias) && a.midpointBias == b.midpointBias &&
           a.roundedTickCaps == b.roundedTickCaps && a.divisionCount == b.divisionCount &&
           sameBits(a.divisionInnerRadius, b.divisionInnerRadius) &&
           sameBits(a.divisionOuterRadius, b.divisionOuterRadius) &&
           sameBits(a.divisionLineWidth, b.divisionLineWidth) && a.divisionColor == b.divisionColor &&
           a.roundedArcCaps == b.roundedArcCaps && sameBits(a.arcStartAngle, b.arcStartAngle) &&
           sameBits(a.arcAngleLength, b.arcAngleLength) && sameBits(a.arcRadius, b.arcRadius) &&
           sameBits(a.arcWidth, b.arcWidth) && a.arcColor == b.arcColor &&
           a.tickCountEnabled == b.tickCountEnabled && sameBits(a.tickCountStart, b.tickCountStart) &&
           sameBits(a.tickCountIncrement, b.tickCountIncrement) &&
           a.tickCountDecimalPlaces == b.tickCountDecimalPlaces &&
           sameBits(a.tickCountRadius, b.tickCountRadius) && a.tickCountRotate == b.tickCountRotate &&
           a.tickCountSkipFirst == b.tickCountSkipFirst && a.tickCountFont == b.tickCountFont &&
           a.tickCountColor == b.tickCountColor;
}
