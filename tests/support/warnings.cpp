#include "support/warnings.h"

#include <QRegularExpression>
#include <QTest>

void failOnUnexpectedWarnings()
{
    static const QRegularExpression unexpected(
        QStringLiteral("^(?!Could not parse stylesheet of object Q(ToolButton|Label)\\("
                       "|Unknown property lineHeight$"
                       "|This plugin does not support )"));
    QTest::failOnWarning(unexpected);
}
