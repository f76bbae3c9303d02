#ifndef INPUTFILE_H
#define INPUTFILE_H

#include <QByteArray>
#include <QString>

/// Reads a regular file of at most @a maxSize MiB. Returns an empty text, or the reason for a failure.
[[nodiscard]] QString readInputFile(const QString &path, qint64 maxSize, QByteArray &bytes);

/// Reads standard input to its end, at most @a maxSize MiB. Returns an empty text, or the reason for a
/// failure.
[[nodiscard]] QString readStandardInput(qint64 maxSize, QByteArray &bytes);

/// Why @a bytes are no gauge file, although gaugeFile::read() may accept them: the older form has no
/// signature, and its reader takes any text with enough commas. Empty when there is no objection.
[[nodiscard]] QString checkIsGauge(const QByteArray &bytes);

#endif
