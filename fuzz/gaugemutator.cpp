#include "gaugemutator.h"

#include "support/records.h"
#include "values.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <array>

namespace {

QByteArray someValue(GaugeField::Kind kind, Random &random)
{
    switch (kind) {
    case GaugeField::Number:
        return someNumber(random);
    case GaugeField::Integer:
        return someInteger(random);
    case GaugeField::Flag:
        return random.oneIn(4) ? someInteger(random) : QByteArray::number(random.between(0, 1));
    case GaugeField::Color:
        return someColor(random);
    case GaugeField::Text:
        return someText(random);
    }
    return {};
}

QJsonValue someJson(GaugeField::Kind kind, Random &random)
{
    if (kind == GaugeField::Flag)
        return random.oneIn(2);
    const QByteArray value = someValue(kind, random);
    return kind == GaugeField::Number || kind == GaugeField::Integer ? QJsonValue(value.toDouble())
                                                                     : QJsonValue(QString::fromUtf8(value));
}

QJsonValue anyJson(Random &random)
{
    constexpr std::array kinds{GaugeField::Number, GaugeField::Integer, GaugeField::Flag, GaugeField::Color,
                               GaugeField::Text};
    switch (random.below(6)) {
    case 0:
        return QJsonValue::Null;
    case 1:
        return QJsonArray();
    case 2:
        return QJsonObject();
    default:
        return someJson(random.pick(kinds), random);
    }
}

/// Sets a field of a layer, sometimes in an additional ring or arc.
QJsonObject withSomeField(const QJsonObject &layer, const GaugeField &field, Random &random)
{
    QString path = field.path;
    if (random.oneIn(100))
        path.replace(QLatin1String("/3/"), QStringLiteral("/%1/").arg(random.between(3, 6)));
    return withValueAt(layer, path, random.oneIn(25) ? anyJson(random) : someJson(field.kind, random));
}

QJsonObject someLayer(Random &random)
{
    QJsonObject layer{{QStringLiteral("name"), someJson(GaugeField::Text, random)}};
    for (const GaugeField &field : gaugeFields()) {
        if (!random.oneIn(25))
            layer = withSomeField(layer, field, random);
    }
    return layer;
}

void damageLayers(QJsonArray &layers, Random &random)
{
    static const QStringList groups =
        QStringLiteral("name gauge divisions divisions/1 arcs arcs/3 ticks ticks/font")
            .split(QLatin1Char(' '));
    const auto any = [&] { return static_cast<qsizetype>(random.below(static_cast<size_t>(layers.size()))); };
    const qsizetype at = any();
    const QJsonObject layer = layers.at(at).toObject();
    switch (random.below(8)) {
    case 0:
        layers.insert(at, anyJson(random));
        break;
    case 1:
        layers.replace(at, anyJson(random));
        break;
    case 2:
        layers.append(someLayer(random));
        break;
    case 3: // a group that belongs to another place
        layers.replace(
            at, withValueAt(layer, random.pick(groups), valueAt(layers.at(any()), random.pick(groups))));
        break;
    case 4:
        layers.replace(at, withValueAt(layer, random.pick(groups), anyJson(random)));
        break;
    default:
        layers.replace(at, withSomeField(layer, random.pick(gaugeFields()), random));
        break;
    }
}

/// Replaces the value after a colon by any text, which need not be valid JSON.
void replaceSomeValue(QByteArray &document, Random &random)
{
    const qsizetype start = document.indexOf(':', random.between(0, static_cast<int>(document.size()))) + 1;
    qsizetype end = start;
    while (end < document.size() && !QByteArrayView(",]}").contains(document.at(end)))
        ++end;
    const int depth = random.between(1, 1500);
    const std::array<QByteArray, 5> texts{someNumber(random), '"' + someText(random) + '"',
                                          "\"\\ud800\\u0000\\x\"",
                                          QByteArray(depth, '[') + QByteArray(depth, ']'), "1,\"arcs\":[]"};
    document.replace(start, end - start, random.pick(texts));
}

QByteArray document(const QJsonArray &layers)
{
    return QJsonDocument(QJsonObject{{QStringLiteral("layers"), layers}}).toJson(QJsonDocument::Compact);
}

QJsonArray layersOf(const QByteArray &document)
{
    return QJsonDocument::fromJson(document.trimmed()).object().value(QLatin1String("layers")).toArray();
}

} // namespace

QByteArray someGaugeDocument(Random &random)
{
    QJsonArray layers;
    for (int i = random.between(1, 3); i > 0; --i)
        layers.append(someLayer(random));
    return document(layers);
}

QByteArray damagedGaugeDocument(const QByteArray &original, Random &random)
{
    QJsonArray layers = layersOf(original);
    if (layers.isEmpty())
        return someGaugeDocument(random);
    for (int i = random.between(1, 4); i > 0; --i)
        damageLayers(layers, random);
    QByteArray result = document(layers);
    if (random.oneIn(4))
        replaceSomeValue(result, random);
    return result;
}

QByteArray joinedGaugeDocuments(const QByteArray &first, const QByteArray &second, Random &random)
{
    QJsonArray layers = layersOf(first);
    for (const QJsonValue layer : layersOf(second)) {
        if (random.oneIn(2))
            layers.append(layer);
    }
    return document(layers);
}

QByteArray someGaugeText(Random &random)
{
    QByteArrayList fields(48);
    for (const GaugeField &field : gaugeFields()) {
        if (field.position >= 0)
            fields[field.position] = random.oneIn(30) ? someText(random) : someValue(field.kind, random);
    }
    // QFont::toString() has 10, 11, 16 or 17 fields, depending on the version of Qt.
    constexpr std::array fontSizes{1, 2, 3, 10, 11, 16, 17, 18};
    fields.append(someText(random));
    for (int i = random.pick(fontSizes); i > 1; --i)
        fields.append(someInteger(random));
    fields.append(someColor(random));
    return fields.join(',');
}

QByteArray damagedGaugeText(const QByteArray &text, Random &random)
{
    QByteArrayList fields = text.split(',');
    for (int i = random.between(1, 4); i > 0; --i)
        damagePieces(fields, random,
                     [&random] { return someValue(random.pick(gaugeFields()).kind, random); });
    if (random.oneIn(8))
        fields.resize(random.between(48, 52));
    return fields.join(',');
}

QByteArray joinedGaugeTexts(const QByteArray &first, const QByteArray &second, Random &random)
{
    const int cut = random.between(0, 60);
    return (first.split(',').mid(0, cut) + second.split(',').mid(cut)).join(',');
}
