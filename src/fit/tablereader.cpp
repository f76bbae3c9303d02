#include "fit/tablereader.h"

#include "fit/tablerow.h"

#include <algorithm>
#include <cmath>

namespace {

QString numberText(double number)
{
    return QString::number(number, 'g', 10);
}

/// Puts the rows into ascending order of values and removes repeated points. Returns the reason for a
/// failure.
QString sortRows(QList<TableRow> &rows)
{
    std::ranges::stable_sort(rows, {}, &TableRow::value);
    for (qsizetype row = 1; row < rows.size(); ++row) {
        const TableRow &before = rows.at(row - 1);
        const TableRow &after = rows.at(row);
        if (before.value == after.value && before.reading != after.reading) {
            return QStringLiteral("%1: the value %2 has the angle %3 here and %4 at %5")
                .arg(after.place, numberText(after.value), numberText(after.reading),
                     numberText(before.reading), before.place);
        }
    }
    const auto isRepeated = [](const TableRow &a, const TableRow &b) { return a.value == b.value; };
    rows.erase(std::unique(rows.begin(), rows.end(), isRepeated), rows.end());
    return {};
}

/// Slopes between values that hardly differ would overflow or be rounding errors.
QString checkDistances(const QList<TableRow> &rows)
{
    constexpr double minDistance = 1e-12; // times the largest value, if that is above 1
    const double size = std::max({1.0, std::abs(rows.constFirst().value), std::abs(rows.constLast().value)});
    for (qsizetype row = 1; row < rows.size(); ++row) {
        const TableRow &after = rows.at(row);
        if (after.value - rows.at(row - 1).value < minDistance * size)
            return QStringLiteral("%1: the value %2 is too close to that at %3")
                .arg(after.place, QString::number(after.value, 'g', 17), rows.at(row - 1).place);
    }
    return {};
}

QString checkDirection(const QList<TableRow> &rows)
{
    const auto step = [&rows](qsizetype row) { return rows.at(row).reading - rows.at(row - 1).reading; };
    double direction = rows.constLast().reading - rows.constFirst().reading;
    for (qsizetype row = 1; row < rows.size() && direction == 0.0; ++row)
        direction = step(row);
    if (direction == 0.0)
        return QStringLiteral("%1: all angles are the same").arg(rows.constLast().place);
    for (qsizetype row = 1; row < rows.size(); ++row) {
        if (step(row) * direction < 0.0) {
            const TableRow &after = rows.at(row);
            const TableRow &before = rows.at(row - 1);
            return QStringLiteral("%1: the angles turn back, from %2 at the value %3 to %4 at %5")
                .arg(after.place, numberText(before.reading), numberText(before.value),
                     numberText(after.reading), numberText(after.value));
        }
    }
    return {};
}

QString checkRows(TableRows &table)
{
    QString failure = sortRows(table.rows);
    if (!failure.isEmpty())
        return failure;
    if (table.rows.size() < 2) {
        return QStringLiteral("%1: the file ends after %2; a scale needs two points at least")
            .arg(table.lastPlace,
                 table.rows.isEmpty() ? QStringLiteral("no point") : QStringLiteral("one point"));
    }
    failure = checkDistances(table.rows);
    return failure.isEmpty() ? checkDirection(table.rows) : failure;
}

TableRows readRows(QByteArray bytes)
{
    if (bytes.startsWith("\xff\xfe") || bytes.startsWith("\xfe\xff"))
        return {.failure = QStringLiteral("line 1: the text is in UTF-16; a table must be in UTF-8")};
    if (bytes.startsWith("\xef\xbb\xbf")) // the byte-order mark of UTF-8, which spreadsheets write
        bytes.remove(0, 3);
    const qsizetype nul = bytes.indexOf('\0');
    if (nul >= 0)
        return {.failure = QStringLiteral("line %1: a NUL byte, which is no text")
                               .arg(bytes.first(nul).count('\n') + 1)};
    const QByteArray start = bytes.first(std::min<qsizetype>(bytes.size(), 1000)).trimmed();
    if (start.startsWith('<'))
        return readXmlRows(bytes);
    return start.startsWith('{') ? readJsonRows(bytes) : readTextRows(bytes);
}

} // namespace

MeasuredTable readTable(const QByteArray &bytes)
{
    TableRows table = readRows(bytes);
    if (table.failure.isEmpty())
        table.failure = checkRows(table);
    MeasuredTable result{.points = {}, .places = {}, .failure = table.failure};
    if (!result.failure.isEmpty())
        return result;
    result.points.reserve(table.rows.size());
    for (const TableRow &row : std::as_const(table.rows)) {
        result.points.append({row.value, row.reading});
        result.places.append(row.place);
    }
    return result;
}
