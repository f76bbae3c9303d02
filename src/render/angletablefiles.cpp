#include "render/angletablefiles.h"

#include "render/angletable.h"

#include <QLocale>

namespace {

/// Makes U+FFFD of everything that @a isAllowed refuses, and of halves of surrogate pairs.
template <typename Predicate>
QString withAllowed(const QString &text, const Predicate &isAllowed)
{
    QString allowed;
    const QList<uint> characters = text.toUcs4();
    for (const uint character : characters) {
        const bool isCharacter = character < 0xd800 || (character > 0xdfff && character <= 0x10ffff);
        const char32_t shown = isCharacter && isAllowed(character) ? character : U'\ufffd';
        allowed += QString::fromUcs4(&shown, 1);
    }
    return allowed;
}

/// The text of an XML comment: two hyphens in a row would end it.
QByteArray xmlComment(const QString &text)
{
    QString comment = withAllowed(text, [](uint character) {
        return (character >= 0x20 && character != 0xfffe && character != 0xffff) || character == '\t';
    });
    return comment.replace(QLatin1Char('-'), QStringLiteral("\u2010")).toUtf8();
}

} // namespace

QByteArray shortestNumber(double number)
{
    return QByteArray::number(number + 0.0, 'g', QLocale::FloatingPointShortest);
}

QByteArray jsonString(const QString &text)
{
    QByteArray json = "\"";
    const QByteArray bytes = withAllowed(text, [](uint) { return true; }).toUtf8();
    for (const char byte : bytes) {
        if (byte == '"' || byte == '\\')
            (json += '\\') += byte;
        else if (static_cast<unsigned char>(byte) < 0x20 || byte == 0x7f)
            json += "\\u" + QByteArray::number(byte, 16).rightJustified(4, '0');
        else
            json += byte;
    }
    return json + '"';
}

QByteArray angleTableJson(const AngleTable &table, const QByteArray &indent)
{
    QByteArrayList layers;
    for (const QString &layer : table.layers)
        layers.append(jsonString(layer));
    QByteArrayList points;
    for (const QPointF &point : table.points)
        points.append('[' + shortestNumber(point.x()) + ", " + shortestNumber(point.y()) + ']');
    const QByteArray line = ",\n" + indent + "  ";
    return "{\n" + indent + "  \"name\": " + jsonString(table.name) + line + "\"layers\": [" +
           layers.join(", ") + ']' + line + "\"min\": " + shortestNumber(table.points.constFirst().x()) +
           line + "\"max\": " + shortestNumber(table.points.constLast().x()) + line +
           "\"maxError\": " + shortestNumber(table.maxError) + line + "\"points\": [\n" + indent + "    " +
           points.join(",\n" + indent + "    ") + '\n' + indent + "  ]\n" + indent + '}';
}

QByteArray angleTableXml(const QString &gaugeName, const AngleTable &table)
{
    QByteArray xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!-- " + xmlComment(table.name) + " of " +
                     xmlComment(gaugeName) +
                     ". ind: value. dep: degrees clockwise from 12 o'clock. -->\n<PropertyList>\n"
                     "  <interpolation>\n";
    for (const QPointF &point : table.points) {
        xml += "    <entry><ind>" + shortestNumber(point.x()) + "</ind><dep>" + shortestNumber(point.y()) +
               "</dep></entry>\n";
    }
    return xml + "  </interpolation>\n</PropertyList>\n";
}
