#ifndef FILES_H
#define FILES_H

#include <QByteArray>
#include <QString>

/// Ends the test program when the file cannot be written.
void writeFile(const QString &path, const QByteArray &content);

/// The content of a file. Null when it cannot be read.
[[nodiscard]] QByteArray readFile(const QString &path);

/// The file of this name in the folder of the tests' documents.
[[nodiscard]] QString testDataPath(const QString &name);

#endif
