#ifndef PROGRAM_H
#define PROGRAM_H

#include <QByteArrayList>
#include <QString>
#include <QStringList>

/// The exit status of a command-line program.
enum ExitStatus { AllMade = 0, SomeFailed = 1, WrongUsage = 2 };

/// Prepares a command-line program. Call it first in main(), before the application object is made.
///
/// Opens closed standard streams, makes writing to a closed pipe or past a limit an error instead of the end
/// of the program, sets a platform that needs no display, and turns the messages of the libraries off.
/// Pictures do not depend on the user's settings for screens.
void prepareProgram();

/// The arguments in UTF-8, program name first, as far as they can be decoded.
[[nodiscard]] QByteArrayList programArguments(int argc, char **argv);

/// Decodes arguments from UTF-8. The first, the program's name, becomes the application's name. Those that
/// are not UTF-8 are appended to @a notUtf8 too, with replacement characters.
[[nodiscard]] QStringList decodedArguments(const QByteArrayList &arguments, QStringList &notUtf8);

/// The name of a file as Qt needs it: a name that begins with a colon would be a resource of the program.
[[nodiscard]] QString nativeName(const QString &name);

/// A number of things, such as "1 layer" and "2 layers".
[[nodiscard]] QString countText(qsizetype count, const QString &noun);

/// Prints that the command line is wrong and returns WrongUsage.
[[nodiscard]] ExitStatus failUsage(const QString &error);

/// Writes a text, such as the help, to standard output.
[[nodiscard]] ExitStatus showText(const QString &text);

/// Prints one line that names the program and the reason, and returns SomeFailed.
[[nodiscard]] ExitStatus fail(const QString &reason);

#endif
