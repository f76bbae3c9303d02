#ifndef TABLEROW_H
#define TABLEROW_H

#include <QByteArray>
#include <QList>
#include <QString>

/// A point of a table, with its place in the file.
struct TableRow
{
    double value = 0.0;
    double reading = 0.0;
    QString place; ///< Such as "line 3".
};

/// The points of a file in the order of the file, not checked against each other.
struct TableRows
{
    QList<TableRow> rows = {};
    QString lastPlace = {}; ///< Where the file ends.
    QString failure = {};   ///< The first fault, with its place. Empty when all rows were read.
    /// Whether it has the form of an exported table, whose angles may jump.
    bool isExported = false;
};

/// Reads one number. Empty failure, or what is wrong with it.
[[nodiscard]] QString readTableNumber(const QString &text, double &number);

/// Reads lines of two columns.
[[nodiscard]] TableRows readTextRows(const QByteArray &text);

/// Reads the points of an angle table in XML: the elements "ind" and "dep" of each "entry" of the
/// "interpolation" of a "PropertyList".
[[nodiscard]] TableRows readXmlRows(const QByteArray &xml);

/// Reads the points of the only scale of an angle table in JSON: the array "points" of the only element of
/// "scales".
[[nodiscard]] TableRows readJsonRows(const QByteArray &json);

#endif
