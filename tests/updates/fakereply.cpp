#include "fakereply.h"

#include <algorithm>

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
    if (m_body.isEmpty())
        return -1;
    const qint64 size = std::min<qint64>(maxSize, m_body.size());
    std::copy_n(m_body.cbegin(), size, data);
    m_body.remove(0, size);
    return size;
}
