#ifndef TERMINAL_H
#define TERMINAL_H

#include <QByteArray>
#include <QString>

#include <string>

/// Opens standard streams that are closed on the null device. Otherwise the first file that is opened would
/// be taken for the stream, and messages would be written into it. Call it before any file is opened.
void openStandardStreams();

/// Writes to standard output at once. Returns an empty text, or the reason for a failure, such as a stream
/// that was closed before openStandardStreams().
[[nodiscard]] QString writeStandardOutput(const QByteArray &bytes);

[[nodiscard]] bool isStandardOutputTerminal();

/// The width of the terminal on standard output in characters. 80 when it is not known.
[[nodiscard]] int terminalWidth();

/// The text in UTF-8 with a question mark for each control character, which could move the cursor or begin a
/// second line.
[[nodiscard]] std::string maskControlCharacters(QString text);

#endif
