#ifndef UPDATES_H
#define UPDATES_H

#include <QByteArray>
#include <QString>

class QWidget;

/// A version description as the project publishes it.
[[nodiscard]] QByteArray describe(const QString &version, const QString &notes = {},
                                  const QString &downloadUrl = {});

/// Presses "Check For Updates".
void pressCheckForUpdates(const QWidget &window);

/// What the user is told in answer to "Check For Updates" when there is nothing newer.
[[nodiscard]] QString upToDate();

#endif
