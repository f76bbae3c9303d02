#ifndef FAKEREPLY_H
#define FAKEREPLY_H

#include <QNetworkReply>

/// An answer that came from nowhere: finished, with an error or a body.
class FakeReply : public QNetworkReply
{
    Q_OBJECT

public:
    /// An answer that arrived whole.
    explicit FakeReply(const QByteArray &body);
    /// An answer that did not arrive.
    FakeReply(NetworkError error, const QString &errorString);

    void abort() override {}
    [[nodiscard]] qint64 bytesAvailable() const override;

protected:
    qint64 readData(char *data, qint64 maxSize) override;

private:
    QByteArray m_body;
};

#endif
