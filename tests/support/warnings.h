#ifndef WARNINGS_H
#define WARNINGS_H

#include <QString>

/// Makes the running test fail when Qt prints a warning, except for these: the style sheets that Qt cannot
/// read by design, what the offscreen platform does not support, and warnings that match @a alsoExpected at
/// their start. Call it in init().
void failOnUnexpectedWarnings(const QString &alsoExpected = QString());

#endif
