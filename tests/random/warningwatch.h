#ifndef WARNINGWATCH_H
#define WARNINGWATCH_H

#include <QStringList>

/// While it lives, keeps Qt's warnings out of the log and remembers those that nobody expects. (Thousands of
/// the expected ones, one for each colour shown, would hide everything else.)
class WarningWatch
{
public:
    WarningWatch();
    ~WarningWatch();
    WarningWatch(const WarningWatch &) = delete;
    WarningWatch &operator=(const WarningWatch &) = delete;
    WarningWatch(WarningWatch &&) = delete;
    WarningWatch &operator=(WarningWatch &&) = delete;

    /// The unexpected warnings so far.
    [[nodiscard]] static const QStringList &unexpected();

private:
    QtMessageHandler m_previous;
};

#endif
