#ifndef UPDATES_H
#define UPDATES_H

#include "support/dialogs.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>

#include <functional>

/// A version description as the project publishes it.
[[nodiscard]] QByteArray describe(const QString &version, const QString &notes = {},
                                  const QString &downloadUrl = {});

/// The network access of a window.
[[nodiscard]] QNetworkAccessManager *networkOf(const QWidget &window);

/// Presses "Check For Updates".
void pressCheckForUpdates(const QWidget &window);

/// Expects the offer of a newer version. @a answer must close it.
void expectOffer(
    DialogAnswers &answers,
    const std::function<void(QMessageBox &)> &answer = [](QMessageBox &box) { box.reject(); });

/// A finished reply, with a body or an error, that did not come from the network.
class FakeReply : public QNetworkReply
{
    Q_OBJECT

public:
    explicit FakeReply(const QByteArray &body);
    FakeReply(NetworkError error, const QString &errorString);

    void abort() override {}
    [[nodiscard]] qint64 bytesAvailable() const override;

protected:
    qint64 readData(char *data, qint64 maxSize) override;

private:
    QByteArray m_body;
};

#endif
