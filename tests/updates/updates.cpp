#include "updates.h"

#include <QPushButton>

QByteArray describe(const QString &version, const QString &notes, const QString &downloadUrl)
{
    const auto element = [](const char *name, const QString &text) {
        return '<' + QByteArray(name) + '>' + text.toHtmlEscaped().toUtf8() + "</" + name + '>';
    };
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?><corvalence>" + element("version", version) +
           element("url_win", QStringLiteral("https://corvalence.example/windows")) +
           element("url_lin", downloadUrl) +
           element("url_mac", QStringLiteral("https://corvalence.example/mac")) + element("notes", notes) +
           "</corvalence>";
}

void pressCheckForUpdates(const QWidget &window)
{
    window.findChild<QPushButton *>(QStringLiteral("checkUpdatesButton"))->click();
}

QString upToDate()
{
    return QStringLiteral("Corvalence 2.2.0 is up to date.\n\nThank you for using Corvalence!");
}
