#include "render/angletable.h"
#include "render/angletablefiles.h"
#include "render/cnames.h"

#include <QHash>
#include <QLatin1StringView>
#include <QSet>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

// In these limits, no step of the functions in the header overflows 64 bits.
constexpr double maxScaledValue = 1e11;
constexpr double maxTenths = 1e7;
constexpr int maxDecimals = 9;
constexpr double maxValueRounding = 0.01; // degrees

double largestValue(const AngleTable &table)
{
    return std::max(std::abs(table.points.constFirst().x()), std::abs(table.points.constLast().x()));
}

/// The largest part of a degree by which a change of the value by @a step moves the needle. A jump counts as
/// the step that is next to it.
double rounding(const AngleTable &table, double step)
{
    double largest = 0.0;
    for (qsizetype index = 1; index < table.points.size(); ++index) {
        const QPointF change = table.points.at(index) - table.points.at(index - 1);
        largest = std::max(largest, std::abs(change.y()) * std::min(1.0, step / change.x()));
    }
    return largest;
}

/// The number of decimals of the values in the header.
int decimals(const AngleTable &table)
{
    int count = 0;
    while (count < maxDecimals && rounding(table, 0.5 * std::pow(10.0, -count)) > maxValueRounding &&
           largestValue(table) * std::pow(10.0, count + 1) <= maxScaledValue)
        ++count;
    return count;
}

/// Whether the values are too large to be written with the decimals that they need.
bool isTooCoarse(const AngleTable &table)
{
    const auto roundingAt = [&table](int count) { return rounding(table, 0.5 * std::pow(10.0, -count)); };
    // Where the angle jumps, no number of decimals suffices.
    return roundingAt(decimals(table)) > maxValueRounding && roundingAt(maxDecimals) <= maxValueRounding;
}

qint64 scaledValue(double value, int decimalCount)
{
    return std::llround(value * std::pow(10.0, decimalCount));
}

/// Makes the prefixes of a gauge's tables, each different from those before.
class TablePrefixes
{
public:
    explicit TablePrefixes(QByteArray gauge)
        : m_gauge(std::move(gauge))
    {
    }

    QByteArray next(const AngleTable &table)
    {
        QByteArray part = identifierPart(table.name);
        if (part.isEmpty())
            part = "scale";
        QByteArray prefix = part == m_gauge ? m_gauge : m_gauge + '_' + part;
        int number = m_nextNumbers.value(part, 2);
        while (m_used.contains(prefix))
            prefix = m_gauge + '_' + part + '_' + QByteArray::number(number++);
        m_nextNumbers.insert(part, number);
        m_used.insert(prefix);
        return prefix;
    }

private:
    QByteArray m_gauge;
    QSet<QByteArray> m_used;
    QHash<QByteArray, int> m_nextNumbers; ///< Of parts that several tables have.
};

/// Integers as the elements of an array, in lines that are not too long.
QByteArray arrayElements(const QList<qint64> &numbers)
{
    constexpr qsizetype numbersInLine = 8;
    QByteArray elements;
    for (qsizetype index = 0; index < numbers.size(); ++index) {
        const bool startsLine = index % numbersInLine == 0;
        elements += (index == 0 ? "" : ",") + QByteArray(startsLine ? "\n    " : " ") +
                    QByteArray::number(numbers.at(index));
    }
    return elements + "\n};\n";
}

constexpr QLatin1StringView functionBody(R"({
    int first = 0;
    int last = @LAST@;
    int64_t span, rise, part;
    if (value <= @NAME@_values[first])
        return @NAME@_angles[first];
    if (value >= @NAME@_values[last])
        return @NAME@_angles[last];
    while (last - first > 1) {
        const int middle = first + (last - first) / 2;
        if (value < @NAME@_values[middle])
            last = middle;
        else
            first = middle;
    }
    span = (int64_t)@NAME@_values[last] - @NAME@_values[first];
    rise = (int64_t)@NAME@_angles[last] - @NAME@_angles[first];
    part = 2 * rise * ((int64_t)value - @NAME@_values[first]);
    part += part < 0 ? -span : span;
    return (int32_t)(@NAME@_angles[first] + part / (2 * span));
}
)");

QByteArray tableCode(const QByteArray &prefix, const AngleTable &table)
{
    const int decimalCount = decimals(table);
    QList<qint64> values;
    QList<qint64> angles;
    for (const QPointF &point : table.points) {
        values.append(scaledValue(point.x(), decimalCount));
        angles.append(std::llround(point.y() * 10.0));
    }
    const bool needs64Bits = largestValue(table) * std::pow(10.0, decimalCount) > 2e9;
    const QByteArray type = needs64Bits ? "int64_t" : "int32_t";
    const QByteArray unit = "1" + QByteArray(decimalCount, '0');
    QByteArray body(functionBody.data(), functionBody.size());
    body.replace("@NAME@", prefix).replace("@LAST@", QByteArray::number(table.points.size() - 1));
    // 64-bit constants need no suffix: an integer literal has the first type that holds it.
    return "\n/* The scale " + commentText(table.name) + ": from " +
           shortestNumber(table.points.constFirst().x()) + " to " +
           shortestNumber(table.points.constLast().x()) + ", to " + shortestNumber(table.maxError) +
           " degrees and rounding to tenths. */\n\n/* How much a value of 1 is in the functions and tables "
           "below. "
           "*/\n#define " +
           prefix.toUpper() + "_UNIT " + unit + "\n\nstatic const " + type + ' ' + prefix + "_values[] = {" +
           arrayElements(values) + "\nstatic const int32_t " + prefix + "_angles[] = {" +
           arrayElements(angles) + "\n/* Tenths of a degree clockwise from 12 o'clock for a value times " +
           prefix.toUpper() + "_UNIT. */\nstatic inline int32_t " + prefix + "_tenths(" + type + " value)\n" +
           body;
}

} // namespace

QString checkAngleTableHeader(const QList<AngleTable> &tables)
{
    for (const AngleTable &table : tables) {
        const bool isSmall = std::ranges::all_of(table.points, [](const QPointF &point) {
            return std::abs(point.x()) <= maxScaledValue && std::abs(point.y()) * 10.0 <= maxTenths;
        });
        if (!isSmall) {
            return QStringLiteral(
                       "The scale \"%1\" cannot be written in C: its values or angles are too large.")
                .arg(table.name);
        }
        if (isTooCoarse(table) || scaledValue(table.points.constFirst().x(), decimals(table)) >=
                                      scaledValue(table.points.constLast().x(), decimals(table))) {
            return QStringLiteral(
                       "The scale \"%1\" cannot be written in C: its values are too close together.")
                .arg(table.name);
        }
    }
    return {};
}

QByteArray angleTableHeader(const QString &gaugeName, const QList<AngleTable> &tables)
{
    const QByteArray gauge = gaugePrefix(gaugeName);
    TablePrefixes prefixes(gauge);
    QByteArray code;
    for (const AngleTable &table : tables)
        code += tableCode(prefixes.next(table), table);
    const QByteArray guard = gauge.toUpper() + "_ANGLES_H";
    return "/* The needle's angles of the gauge " + commentText(gaugeName) + ". C99 and C++. */\n#ifndef " +
           guard + "\n#define " + guard + "\n\n#include <stdint.h>\n" + code + "\n#endif\n";
}
