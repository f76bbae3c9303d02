#ifndef INPUTFILE_H
#define INPUTFILE_H

#include <QByteArray>
#include <QString>

/// Reads a regular file of at most @a maxSize MiB. Returns an empty text, or the reason for a failure. The
/// reason for too large a file names @a limitOption, the option that raises the limit, if there is one.
[[nodiscard]] QString readInputFile(const QString &path, qint64 maxSize, QByteArray &bytes,
                                    const QString &limitOption = {});

/// Reads standard input to its end in the same way.
[[nodiscard]] QString readStandardInput(qint64 maxSize, QByteArray &bytes, const QString &limitOption = {});

/// Returns why @a bytes are not a gauge file, although gaugeFile::read() may accept them: the older form has
/// no signature, and its reader takes any text with enough commas. Empty when there is no objection.
[[nodiscard]] QString checkIsGauge(const QByteArray &bytes);

#endif
