#include "fit/tablereader.h"

#include "fit/tablerow.h"

#include <QLocale>

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
    rows.resize(std::unique(rows.begin(), rows.end(), isRepeated) - rows.begin());
    return {};
}

/// The smallest distance between values for which a slope is no rounding error.
double minDistance(const QList<TableRow> &rows)
{
    return 1e-12 * std::max({1.0, std::abs(rows.constFirst().value), std::abs(rows.constLast().value)});
}

bool isJump(const TableRow &before, const TableRow &after, double distance)
{
    return after.value - before.value < distance;
}

/// Whether the angles rise (positive) or fall (negative) from the first to the last row. 0 when all are the
/// same.
double directionOf(const QList<TableRow> &rows)
{
    double direction = rows.constLast().reading - rows.constFirst().reading;
    for (qsizetype row = 1; row < rows.size() && direction == 0.0; ++row)
        direction = rows.at(row).reading - rows.at(row - 1).reading;
    return direction;
}

/// Whether the angles turn back, where @a direction is that of the table. Compares without a product, which
/// could be rounded to 0.
bool turnsBack(const TableRow &before, const TableRow &after, double direction)
{
    return direction > 0.0 ? after.reading < before.reading : after.reading > before.reading;
}

/// Exported tables depart from their scale by up to 0.1 degrees, so that they may turn back by twice as much.
/// Makes these parts flat.
void flattenTurns(QList<TableRow> &rows)
{
    constexpr double maxTurn = 0.2; // degrees
    const double direction = directionOf(rows);
    for (qsizetype row = 1; row < rows.size(); ++row) {
        const TableRow &before = rows.at(row - 1);
        TableRow &after = rows[row];
        if (turnsBack(before, after, direction) && std::abs(after.reading - before.reading) <= maxTurn)
            after.reading = before.reading;
    }
}

/// Exported tables have two points at a jump, which are as close together as doubles can be. Removes the
/// second point where only rounding errors are between the angles of both.
void removeRounding(QList<TableRow> &rows)
{
    constexpr double rounding = 1e-9; // degrees
    const double distance = minDistance(rows);
    const auto isSame = [distance](const TableRow &before, const TableRow &after) {
        return isJump(before, after, distance) && std::abs(after.reading - before.reading) <= rounding;
    };
    rows.resize(std::unique(rows.begin(), rows.end(), isSame) - rows.begin());
}

/// Returns the first fault where values are close to each other. Where the angle may not jump, the slope
/// would be a rounding error; a jump can be so steep that the curve's formulas overflow or underflow.
QString checkDistances(const TableRows &table)
{
    constexpr double minJump = 1e-240;
    const QList<TableRow> &rows = table.rows;
    const double distance = table.isExported ? minJump : minDistance(rows);
    for (qsizetype row = 1; row < rows.size(); ++row) {
        const TableRow &after = rows.at(row);
        if (isJump(rows.at(row - 1), after, distance))
            return QStringLiteral("%1: the value %2 is too close to that at %3")
                .arg(after.place, QString::number(after.value, 'g', QLocale::FloatingPointShortest),
                     rows.at(row - 1).place);
    }
    return {};
}

QString checkDirection(const QList<TableRow> &rows)
{
    const double direction = directionOf(rows);
    if (direction == 0.0)
        return QStringLiteral("%1: all angles are the same").arg(rows.constLast().place);
    for (qsizetype row = 1; row < rows.size(); ++row) {
        const TableRow &after = rows.at(row);
        const TableRow &before = rows.at(row - 1);
        if (turnsBack(before, after, direction)) {
            const QString hint = isJump(before, after, minDistance(rows))
                                     ? QStringLiteral(", where layers meet; remove one of both points")
                                     : QString();
            return QStringLiteral("%1: the angles turn back, from %2 at the value %3 to %4 at %5%6")
                .arg(after.place, numberText(before.reading), numberText(before.value),
                     numberText(after.reading), numberText(after.value), hint);
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
    if (table.isExported) {
        flattenTurns(table.rows);
        removeRounding(table.rows);
    }
    failure = checkDistances(table);
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
