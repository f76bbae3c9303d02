#ifndef CNAMES_H
#define CNAMES_H

#include <QByteArray>
#include <QString>

/// The letters and digits of a name, with an underscore in place of all others between them. Other letters
/// than ASCII ones become their numbers.
[[nodiscard]] QByteArray identifierPart(const QString &name);

/// What the names of one gauge's header begin with. Never a keyword, because something follows. Gauges whose
/// names differ in more than case get different prefixes: a name that is not whole in its prefix is followed
/// by a part of its hash.
[[nodiscard]] QByteArray gaugePrefix(const QString &gaugeName);

/// A name for a comment in C: printable ASCII in quotation marks, without what ends a comment, begins
/// another, or is a trigraph or the end of a line.
[[nodiscard]] QByteArray commentText(const QString &name);

#endif
