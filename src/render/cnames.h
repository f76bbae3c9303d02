#ifndef CNAMES_H
#define CNAMES_H

#include <QByteArray>
#include <QString>

/// The letters and digits of a name, with an underscore in place of all others between them. Other letters
/// than ASCII ones become their numbers.
[[nodiscard]] QByteArray identifierPart(const QString &name);

/// The prefix of all names in a gauge's C files. It may be a keyword: it is never used alone. Gauges whose
/// names differ in more than case get different prefixes: a prefix that does not hold the whole name ends in
/// a part of the name's hash.
///
/// Names of two gauges can still be the same where one gauge's name begins with the other's: the table
/// "level" of the gauge "fuel" and the table "fuel level" of the gauge "fuel level".
[[nodiscard]] QByteArray gaugePrefix(const QString &gaugeName);

/// A name for a comment in C: printable ASCII in quotation marks, without what ends a comment, begins
/// another, or is a trigraph or the end of a line.
[[nodiscard]] QByteArray commentText(const QString &name);

#endif
