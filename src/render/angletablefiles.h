#ifndef ANGLETABLEFILES_H
#define ANGLETABLEFILES_H

#include <QByteArray>
#include <QList>
#include <QString>

struct AngleTable;

/// Formats a number with the fewest digits that read back as the same number. 0 has no sign.
[[nodiscard]] QByteArray shortestNumber(double number);

/// Returns @a text as a JSON string in quotation marks, UTF-8. Halves of surrogate pairs become U+FFFD.
[[nodiscard]] QByteArray jsonString(const QString &text);

/// Returns a table as a JSON object on several lines, without a line end: name, layers, min, max, maxError,
/// and points, a list of [value, angle]. @a indent is put before each line but the first.
[[nodiscard]] QByteArray angleTableJson(const AngleTable &table, const QByteArray &indent = {});

/// Returns a table as an XML property list with one "interpolation": an "entry" of "ind" (the value) and
/// "dep" (the angle) for each point. The names are in a comment; what a comment cannot hold becomes U+FFFD.
[[nodiscard]] QByteArray angleTableXml(const QString &gaugeName, const AngleTable &table);

/// By how many degrees angleTableHeader() moves the lines of a table: half of a tenth for the angles, a
/// hundredth for the values.
inline constexpr double headerRounding = 0.06;

/// Why the tables cannot be written as a C header: numbers that are too large for integers. Empty when they
/// can.
[[nodiscard]] QString checkAngleTableHeader(const QList<AngleTable> &tables);

/// Returns the tables as a C header (C99 and C++) with integers only: for each a constant table and an inline
/// function from a value to tenths of a degree that stops at the ends. Values are integers, too: multiples of
/// a power of ten that the header names, fine enough that rounding a value moves the needle by at most a
/// hundredth of a degree, as far as integers allow.
///
/// All names in the header are made from the gauge's and the tables' names, in ASCII letters, digits and
/// underscores, and are different. The result is not defined when checkAngleTableHeader() gives a reason.
[[nodiscard]] QByteArray angleTableHeader(const QString &gaugeName, const QList<AngleTable> &tables);

#endif
