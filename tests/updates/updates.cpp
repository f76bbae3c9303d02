#include "updates.h"

#include <QPushButton>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

QByteArray describe(const QString &version, const QString &notes, const QString &downloadUrl)
{
    return u"<?xml version=\"1.0\" encoding=\"UTF-8\"?><corvalence><version>%1</version>"
           "<url_win>https://corvalence.example/windows</url_win><url_lin>%2</url_lin>"
           "<url_mac>https://corvalence.example/mac</url_mac><notes>%3</notes></corvalence>"_s
               .arg(version.toHtmlEscaped(), downloadUrl.toHtmlEscaped(), notes.toHtmlEscaped())
               .toUtf8();
}

QNetworkAccessManager *networkOf(const QWidget &window)
{
    return window.findChild<QNetworkAccessManager *>();
}

void pressCheckForUpdates(const QWidget &window)
{
    window.findChild<QPushButton *>(u"checkUpdatesButton"_s)->click();
}

void expectOffer(DialogAnswers &answers, const std::function<void(QMessageBox &)> &answer)
{
    answers.expect<QMessageBox>([answer](QMessageBox &box) {
        QCOMPARE(box.windowTitle(), u"Update Available"_s);
        answer(box);
    });
}

FakeReply::FakeReply(const QByteArray &body)
    : m_body(body)
{
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    setFinished(true);
}

FakeReply::FakeReply(NetworkError error, const QString &errorString)
    : FakeReply(QByteArray())
{
    setError(error, errorString);
}

qint64 FakeReply::bytesAvailable() const
{
    return m_body.size() + QNetworkReply::bytesAvailable();
}

qint64 FakeReply::readData(char *data, qint64 maxSize)
{
    const qint64 size = std::min<qint64>(maxSize, m_body.size());
    std::copy_n(m_body.cbegin(), size, data);
    m_body.remove(0, size);
    return size > 0 ? size : -1;
}
