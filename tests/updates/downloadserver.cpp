#include "downloadserver.h"

#include <QHostAddress>
#include <QNetworkProxy>
#include <QSslConfiguration>

#include <memory>

namespace {

/// Calls @a arrived with the first line and the whole header once it has come, then never again.
void onHeader(QTcpSocket *socket, QObject *context,
              const std::function<void(const QString &firstLine, const QByteArray &header)> &arrived)
{
    const auto header = std::make_shared<QByteArray>();
    const auto connection = std::make_shared<QMetaObject::Connection>();
    const auto read = [=] {
        *header += socket->readAll();
        if (!header->contains("\r\n\r\n"))
            return;
        QObject::disconnect(*connection);
        arrived(QString::fromLatin1(header->left(header->indexOf("\r\n"))), *header);
    };
    *connection = QObject::connect(socket, &QIODevice::readyRead, context, read);
    if (socket->bytesAvailable() > 0)
        read();
}

void pass(QTcpSocket *from, QTcpSocket *to)
{
    const auto move = [from, to] {
        if (from->isOpen() && to->isOpen())
            to->write(from->readAll());
    };
    QObject::connect(from, &QIODevice::readyRead, to, move);
    QObject::connect(from, &QAbstractSocket::disconnected, to, [to, move] {
        move();
        to->disconnectFromHost();
    });
}

} // namespace

DownloadServer::DownloadServer(const TestAuthority::Identity &identity)
{
    QSslConfiguration configuration = m_server.sslConfiguration();
    configuration.setLocalCertificate(identity.certificate);
    configuration.setPrivateKey(identity.key);
    configuration.setPeerVerifyMode(QSslSocket::VerifyNone);
    m_server.setSslConfiguration(configuration);
    connect(&m_server, &QTcpServer::pendingConnectionAvailable, this, &DownloadServer::serve);
    connect(&m_proxy, &QTcpServer::newConnection, this, &DownloadServer::tunnel);
    if (!m_server.listen(QHostAddress::LocalHost) || !m_proxy.listen(QHostAddress::LocalHost))
        qFatal("No port on the loopback interface");
    QNetworkProxy::setApplicationProxy(
        QNetworkProxy(QNetworkProxy::HttpProxy, m_proxy.serverAddress().toString(), m_proxy.serverPort()));
}

DownloadServer::~DownloadServer()
{
    QNetworkProxy::setApplicationProxy(QNetworkProxy());
}

void DownloadServer::reply(QSslSocket &connection, const QByteArray &status, const QByteArray &body,
                           const QByteArray &moreHeader)
{
    connection.write("HTTP/1.1 " + status + "\r\nContent-Length: " + QByteArray::number(body.size()) +
                     "\r\nConnection: close\r\n" + moreHeader + "\r\n" + body);
    connection.disconnectFromHost();
}

void DownloadServer::serve()
{
    while (auto *connection = qobject_cast<QSslSocket *>(m_server.nextPendingConnection())) {
        onHeader(connection, this, [this, connection](const QString &firstLine, const QByteArray &header) {
            const QString request = firstLine.section(QLatin1Char(' '), 0, 1);
            m_requests.append(request);
            m_lastHeader = header;
            m_handler(request.section(QLatin1Char(' '), 1), *connection);
            Q_EMIT requested();
        });
    }
}

void DownloadServer::tunnel()
{
    while (QTcpSocket *client = m_proxy.nextPendingConnection()) {
        onHeader(client, this, [this, client](const QString &firstLine, const QByteArray &) {
            m_proxyRequests.append(firstLine.section(QLatin1Char(' '), 0, 1));
            if (!firstLine.startsWith(QLatin1String("CONNECT "))) {
                client->disconnectFromHost();
                return;
            }
            auto *target = new QTcpSocket(client);
            target->setProxy(QNetworkProxy::NoProxy);
            connect(target, &QAbstractSocket::connected, client, [client, target] {
                pass(client, target);
                pass(target, client);
                client->write("HTTP/1.1 200 Connection established\r\n\r\n");
            });
            target->connectToHost(m_server.serverAddress(), m_server.serverPort());
        });
    }
}
