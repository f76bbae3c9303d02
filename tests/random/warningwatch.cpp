#include "warningwatch.h"

#include <QRegularExpression>

namespace {

QStringList &warnings()
{
    static QStringList all;
    return all;
}

void remember(QtMsgType type, const QMessageLogContext & /*context*/, const QString &message)
{
    // The colour buttons' style sheets with their lone brace, the about label's, what an offscreen platform
    // has no window manager for, and the font descriptions of broken documents.
    static const QRegularExpression expected(
        QStringLiteral("^(Could not parse stylesheet of object Q(ToolButton|Label)\\("
                       "|Unknown property lineHeight$"
                       "|QFont::fromString: Invalid description "
                       "|This plugin does not support )"));
    if (type != QtDebugMsg && type != QtInfoMsg && !expected.match(message).hasMatch())
        warnings().append(message);
}

} // namespace

WarningWatch::WarningWatch()
    : m_previous(qInstallMessageHandler(remember))
{
    warnings().clear();
}

WarningWatch::~WarningWatch()
{
    qInstallMessageHandler(m_previous);
}

const QStringList &WarningWatch::unexpected()
{
    return warnings();
}
