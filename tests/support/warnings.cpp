#include "support/warnings.h"

#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

void failOnUnexpectedWarnings(const QString &alsoExpected)
{
    QString expected = u"Could not parse stylesheet of object Q(ToolButton|Label)\\("
                       "|Unknown property lineHeight$"
                       "|This plugin does not support "_s;
    if (!alsoExpected.isEmpty())
        expected += u'|' + alsoExpected;
    QTest::failOnWarning(QRegularExpression(u"^(?!"_s + expected + u')'));
}
