// The angle tables in XML and JSON that the exporter writes.

#include "fit/tablerow.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QXmlStreamReader>

#include <utility>

namespace {

QString lineOf(const QXmlStreamReader &reader)
{
    return QStringLiteral("line %1").arg(reader.lineNumber());
}

/// Reads an "entry". Returns the reason for a failure.
QString readEntry(QXmlStreamReader &reader, TableRow &row)
{
    QString value;
    QString reading;
    while (reader.readNextStartElement()) {
        if (reader.name() == QLatin1String("ind"))
            value = reader.readElementText().trimmed();
        else if (reader.name() == QLatin1String("dep"))
            reading = reader.readElementText().trimmed();
        else
            reader.skipCurrentElement();
    }
    if (reader.hasError())
        return {};
    if (value.isEmpty() || reading.isEmpty())
        return QStringLiteral("an entry needs a number in \"ind\" and in \"dep\"");
    const QString failure = readTableNumber(value, row.value);
    return failure.isEmpty() ? readTableNumber(reading, row.reading) : failure;
}

/// Reads the entries of an "interpolation".
void readEntries(QXmlStreamReader &reader, TableRows &table)
{
    while (reader.readNextStartElement()) {
        if (reader.name() != QLatin1String("entry")) {
            reader.skipCurrentElement();
            continue;
        }
        TableRow row;
        row.place = lineOf(reader);
        const QString failure = readEntry(reader, row);
        if (!failure.isEmpty()) {
            table.failure = row.place + QLatin1String(": ") + failure;
            return;
        }
        table.rows.append(row);
    }
}

TableRows failedTable(const QString &failure)
{
    return {.failure = failure};
}

} // namespace

TableRows readXmlRows(const QByteArray &xml)
{
    QXmlStreamReader reader(xml);
    reader.setNamespaceProcessing(false);
    TableRows table{.isExported = true};
    int interpolationCount = 0;
    if (reader.readNextStartElement() && reader.name() != QLatin1String("PropertyList"))
        return failedTable(QStringLiteral("%1: the XML is no angle table: its root is not \"PropertyList\"")
                               .arg(lineOf(reader)));
    while (reader.readNextStartElement()) {
        if (reader.name() != QLatin1String("interpolation")) {
            reader.skipCurrentElement();
            continue;
        }
        if (++interpolationCount > 1)
            return failedTable(
                QStringLiteral("%1: a second \"interpolation\"; a table has one").arg(lineOf(reader)));
        readEntries(reader, table);
        if (!table.failure.isEmpty())
            return table;
    }
    if (reader.hasError())
        return failedTable(QStringLiteral("%1: %2").arg(lineOf(reader), reader.errorString()));
    table.lastPlace = lineOf(reader);
    return table;
}

TableRows readJsonRows(const QByteArray &json)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError) {
        return failedTable(QStringLiteral("line %1: %2")
                               .arg(json.left(error.offset).count('\n') + 1)
                               .arg(error.errorString()));
    }
    const QJsonArray scales = document.object().value(QLatin1String("scales")).toArray();
    if (scales.size() != 1) {
        const QString hint =
            scales.size() > 1 ? QStringLiteral(" (corvalence-export --scale writes one of them)") : QString();
        return failedTable(
            QStringLiteral("line 1: the JSON is no table of one scale: \"scales\" has %1 elements%2")
                .arg(QString::number(scales.size()), hint));
    }
    TableRows table{.isExported = true};
    table.lastPlace = QStringLiteral("\"points\"");
    const QJsonArray points = scales.first().toObject().value(QLatin1String("points")).toArray();
    for (const auto &element : points) {
        const QJsonArray point = element.toArray();
        TableRow row;
        row.place = QStringLiteral("point %1").arg(table.rows.size() + 1);
        if (point.size() != 2 || !point.at(0).isDouble() || !point.at(1).isDouble()) {
            return failedTable(
                QStringLiteral("%1: it is not a pair of numbers, value and angle").arg(row.place));
        }
        for (const auto &[number, value] :
             {std::pair(&row.value, point.at(0)), {&row.reading, point.at(1)}}) {
            const QString text = QString::number(value.toDouble(), 'g', QLocale::FloatingPointShortest);
            const QString failure = readTableNumber(text, *number);
            if (!failure.isEmpty())
                return failedTable(row.place + QLatin1String(": ") + failure);
        }
        table.rows.append(row);
    }
    return table;
}
