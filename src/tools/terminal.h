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

/// Returns the text in UTF-8 with a question mark for each character that could move the cursor, begin a
/// second line or change the direction of text: control and format characters, and separators of lines and
/// paragraphs.
[[nodiscard]] std::string maskControlCharacters(QString text);

#endif
