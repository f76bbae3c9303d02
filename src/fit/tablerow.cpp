#include "fit/tablerow.h"

#include "fit/tablereader.h"

#include <QStringList>

#include <algorithm>
#include <cmath>

namespace {

/// The text as part of a message, which is one line.
QString quoted(const QString &text)
{
    constexpr qsizetype maxSize = 30;
    const QString line = text.simplified(); // without the line breaks that XML can have in a number
    return QStringLiteral("\"%1\"").arg(line.size() > maxSize ? line.first(maxSize) + u'…' : line);
}

QStringList columnsOf(const QString &line)
{
    for (const char16_t separator : {u';', u'\t', u','}) {
        if (!line.contains(separator))
            continue;
        QStringList columns = line.split(separator);
        for (QString &column : columns) {
            column = column.trimmed();
            if (separator == u';' && !column.contains(u'.'))
                column.replace(u',', u'.');
        }
        return columns;
    }
    return line.simplified().split(u' ');
}

/// Whether a text is meant as a number, even if it is a wrong one.
bool resemblesNumber(const QString &text)
{
    double number = 0.0;
    if (readTableNumber(text, number).isEmpty())
        return true;
    const QString lower = text.toLower();
    const auto *const start = std::ranges::find_if_not(
        lower, [](QChar c) { return c == u'+' || c == u'-' || c == u'.' || c == u',' || c == u'"'; });
    const QString rest = lower.sliced(start - lower.constBegin());
    return (!rest.isEmpty() && rest.front().isDigit()) || rest == QLatin1String("nan") ||
           rest.startsWith(QLatin1String("inf"));
}

QString readColumns(const QString &line, TableRow &row)
{
    const QStringList columns = columnsOf(line);
    if (columns.size() != 2) {
        const QString found = columns.size() == 1 ? QStringLiteral("one column")
                                                  : QStringLiteral("%1 columns").arg(columns.size());
        QString failure = QStringLiteral("%1 instead of two, value and angle").arg(found);
        if (columns.size() > 2 && !line.contains(u';') && line.contains(u','))
            failure += QLatin1String(" (decimal commas need semicolons between the columns)");
        return failure;
    }
    const QString failure = readTableNumber(columns.constFirst(), row.value);
    return failure.isEmpty() ? readTableNumber(columns.constLast(), row.reading) : failure;
}

} // namespace

QString readTableNumber(const QString &text, double &number)
{
    bool isNumber = false;
    number = text.toDouble(&isNumber);
    if (text.isEmpty())
        return QStringLiteral("a number is missing");
    // Numbers that are too large for a double give infinity, but are no numbers for Qt.
    if (!isNumber && !std::isinf(number))
        return QStringLiteral("%1 is not a number").arg(quoted(text));
    if (!std::isfinite(number))
        return QStringLiteral("%1 is not a finite number").arg(quoted(text));
    if (std::abs(number) > maxTableNumber)
        return QStringLiteral("%1 is too large; numbers are limited to 1e15").arg(quoted(text));
    return {};
}

TableRows readTextRows(const QByteArray &text)
{
    TableRows table;
    QByteArray bytes = text;
    bytes.replace("\r\n", "\n").replace('\r', '\n');
    bool canBeHeading = true;
    qsizetype number = 0;
    for (const QByteArray &bytesOfLine : bytes.split('\n')) {
        ++number;
        const QString line = QString::fromUtf8(bytesOfLine).section(u'#', 0, 0).trimmed();
        if (line.isEmpty())
            continue;
        TableRow row;
        row.place = QStringLiteral("line %1").arg(number);
        table.lastPlace = row.place;
        const bool isHeading = canBeHeading && !std::ranges::any_of(columnsOf(line), resemblesNumber);
        canBeHeading = false;
        if (isHeading)
            continue;
        const QString failure = readColumns(line, row);
        if (!failure.isEmpty()) {
            table.failure = row.place + QLatin1String(": ") + failure;
            return table;
        }
        table.rows.append(row);
    }
    if (table.lastPlace.isEmpty())
        table.lastPlace = QStringLiteral("line 1");
    return table;
}
