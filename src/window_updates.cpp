// The update check. Its texts are not translated.

#include "window.h"

#include "projectinfo.h"
#include "versiondescription.h"

#include <QDesktopServices>
#include <QMessageBox>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QPointer>
#include <QPushButton>
#include <QScopeGuard>

const QUrl Window::VERSION_XML_URL(projectInfo::versionXmlUrl.toString(), QUrl::TolerantMode);

void Window::checkForUpdatesButton()
{
    manualUpdateCheck = true;
    checkForUpdates();
}

void Window::checkForUpdates()
{
    QNetworkRequest request(VERSION_XML_URL);
    request.setTransferTimeout(5000);
    updateReply = networkManager->get(request);
    // A larger body is not read any further, until the transfer timeout ends the request.
    updateReply->setReadBufferSize(maxVersionDescriptionSize);
    // Each check adds a connection. When two checks are outstanding, both connections fire for the first
    // reply; only the first call can report as a manual check, and the second reply is not handled.
    connect(networkManager, &QNetworkAccessManager::finished, this, &Window::onUpdateCheckFinished,
            Qt::SingleShotConnection);
}

void Window::onUpdateCheckFinished(QNetworkReply *reply)
{
    const bool manual = manualUpdateCheck;
    manualUpdateCheck = false;
    // Released at scope exit. The message boxes run nested event loops, which may destroy the window and the
    // reply.
    const auto release = qScopeGuard([guarded = QPointer<QNetworkReply>(reply)] {
        if (!guarded.isNull())
            guarded->deleteLater();
    });

    if (reply->error() != QNetworkReply::NoError) {
        if (!manual)
            return;
        const QString message =
            reply->error() == QNetworkReply::TimeoutError
                ? QStringLiteral("Request timed out. Please check your internet connection.")
                : QLatin1String("Could not check for updates:\n") + reply->errorString();
        QMessageBox::warning(this, QStringLiteral("Update Check Failed"), message, QMessageBox::Ok);
        return;
    }

    const auto published = readVersionDescription(reply->readAll());
    if (!published) {
        if (manual) {
            QMessageBox::warning(
                this, QStringLiteral("Version info Invalid"),
                QStringLiteral("Could not check for updates:\nVersion info invalid, contact Author."),
                QMessageBox::Ok);
        }
        return;
    }

    const QString ownVersion = projectInfo::version.toString();
    if (isNewerVersion(published->version, ownVersion)) {
        offerUpdate(published->version, published->notes, published->downloadUrl);
    } else if (manual) {
        QMessageBox::information(
            this, QStringLiteral("No Update Available"),
            QStringLiteral("Corvalence %1 is up to date.\n\nThank you for using Corvalence!").arg(ownVersion),
            QMessageBox::Ok);
    }
}

void Window::offerUpdate(const QString &version, const QString &notes, const QString &downloadUrl)
{
    // On the heap: the window may be destroyed while the box is shown, and deletes its children.
    const QPointer<QMessageBox> offer = new QMessageBox(this);
    offer->setWindowTitle(QStringLiteral("Update Available"));
    // The texts come from the network, so markup in them is not interpreted.
    offer->setTextFormat(Qt::PlainText);
    offer->setText(QStringLiteral("A new version (%1) is available!\n\n%2").arg(version, notes));
    offer->setIcon(QMessageBox::Information);
    const QPushButton *download = offer->addButton(QStringLiteral("Download"), QMessageBox::AcceptRole);
    const QPushButton *visitSite = offer->addButton(QStringLiteral("Visit Site"), QMessageBox::AcceptRole);
    offer->addButton(QMessageBox::Close);
    offer->exec();
    if (offer.isNull())
        return;

    if (offer->clickedButton() == download)
        QDesktopServices::openUrl(QUrl(downloadUrl, QUrl::TolerantMode));
    else if (offer->clickedButton() == visitSite)
        QDesktopServices::openUrl(QUrl(projectInfo::webPageUrl.toString(), QUrl::TolerantMode));
    delete offer;
}
