#include "gaugeoracle.h"

#include "support/records.h"

#include <QStringList>

#include <cmath>
#include <limits>

namespace {

bool fitsInt(double value)
{
    return value == std::trunc(value) && value >= std::numeric_limits<int>::min() &&
           value <= std::numeric_limits<int>::max();
}

/// @a value as a field of this kind. Invalid if it has another type.
QVariant converted(GaugeField::Kind kind, const QJsonValue &value)
{
    switch (kind) {
    case GaugeField::Number:
        return value.isDouble() ? value.toDouble() : QVariant();
    case GaugeField::Integer:
        return value.isDouble() && fitsInt(value.toDouble()) ? static_cast<int>(value.toDouble())
                                                             : QVariant();
    case GaugeField::Flag:
        return value.isBool() ? value.toBool() : QVariant();
    case GaugeField::Color: {
        const QColor color = QColor::fromString(value.toString());
        return color.isValid() ? color : QVariant();
    }
    case GaugeField::Text:
        return value.isString() ? value.toString() : QVariant();
    }
    return {};
}

QVariant converted(GaugeField::Kind kind, const QString &text)
{
    switch (kind) {
    case GaugeField::Number:
        return text.toDouble();
    case GaugeField::Integer:
        return text.toInt();
    case GaugeField::Flag:
        return text.toInt() != 0;
    default:
        return QColor::fromString(text);
    }
}

} // namespace

gaugeData expectedLayer(const QJsonObject &json)
{
    gaugeData layer;
    QMap<QByteArray, QVariant> font;
    for (const GaugeField &field : gaugeFields()) {
        const QVariant value = converted(field.kind, valueAt(json, field.path));
        if (field.position == GaugeField::insideFont)
            font[field.name] = value.isValid() ? value : field.initial;
        else if (value.isValid())
            field.set(layer, value);
    }
    layer.tickCountFont =
        QFont(font.value("tickCountFont.family").toString(), font.value("tickCountFont.pointSize").toInt());
    layer.tickCountFont.setBold(font.value("tickCountFont.bold").toBool());
    layer.tickCountFont.setItalic(font.value("tickCountFont.italic").toBool());
    return layer;
}

bool hasEnoughFields(const QString &text)
{
    return text.count(QLatin1Char(',')) >= 49;
}

gaugeData expectedLayer(const QString &text, gaugeData layer)
{
    const QStringList fields = text.split(QLatin1Char(','));
    for (const GaugeField &field : gaugeFields()) {
        if (field.position == GaugeField::lastPosition)
            field.set(layer, converted(field.kind, fields.last()));
        else if (field.position >= 0)
            field.set(layer, converted(field.kind, fields.at(field.position)));
    }
    if (!layer.tickCountFont.fromString(fields.mid(48, fields.size() - 49).join(QLatin1Char(','))))
        layer.tickCountFont = QFont(fields.at(48), fields.at(49).toInt());
    return layer;
}
