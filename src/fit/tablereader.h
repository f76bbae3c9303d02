#ifndef TABLEREADER_H
#define TABLEREADER_H

#include <QByteArray>
#include <QList>
#include <QPointF>
#include <QString>
#include <QStringList>

/// A table of measured points, or the reason why there is none.
struct MeasuredTable
{
    /// x: value, ascending; y: angle or reading, which never turns back. At least two points that do not all
    /// have the same y. Empty after a failure.
    QList<QPointF> points;
    QStringList places; ///< Of the points in the file, such as "line 3".
    QString failure;    ///< One line that names the line of the file, where there is one.
};

/// The largest number of a table, without its sign.
inline constexpr double maxTableNumber = 1e15;

/// Reads a table of two columns, value and angle.
///
/// Text is in UTF-8. A semicolon, a tab, a comma or blanks separate the columns; numbers have a decimal point
/// or, between semicolons, a decimal comma. The first line may be a heading, and text after # is a comment.
/// Angle tables in XML and JSON are read too.
///
/// Points may be in any order. Refuses tables that give no monotone curve, and numbers that are not finite,
/// larger than maxTableNumber, or too close to each other for a slope. In XML and JSON, values as close as
/// doubles can be are a jump of the angle, and angles that turn back by at most 0.2 degrees are made flat.
[[nodiscard]] MeasuredTable readTable(const QByteArray &bytes);

#endif
