#ifndef DOCUMENTS_H
#define DOCUMENTS_H

#include <QStringList>

/// Writes a collection of gauge files into a folder: plain, odd, of earlier versions, and broken ones.
/// Returns their paths.
QStringList writeDocuments(const QString &folder);

/// Why nobody would sit through editing this file, empty when it is fit for use: some documents ask for
/// thousands of millions of ticks, and paint for as long as they are shown.
[[nodiscard]] QString unfitForUse(const QString &path);

#endif
