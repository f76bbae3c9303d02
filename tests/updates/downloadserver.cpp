#include "downloadserver.h"

#include "support/files.h"
#include "window.h"

#include <QHostAddress>
#include <QNetworkProxy>
#include <QProcess>
#include <QSslKey>
#include <QTemporaryDir>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

/// Calls @a received once with the first line, when the whole header is there.
void onHeader(QTcpSocket *socket, const std::function<void(const QString &firstLine)> &received)
{
    const auto header = std::make_shared<QByteArray>();
    const auto connection = std::make_shared<QMetaObject::Connection>();
    const auto read = [=] {
        *header += socket->readAll();
        if (!header->contains("\r\n\r\n"))
            return;
        QObject::disconnect(*connection);
        received(QString::fromLatin1(header->left(header->indexOf("\r\n"))));
    };
    *connection = QObject::connect(socket, &QIODevice::readyRead, socket, read);
    if (socket->bytesAvailable() > 0)
        read();
}

/// Passes on what arrives, but no faster than the receiver takes it.
void forward(QTcpSocket *from, QTcpSocket *to)
{
    constexpr qint64 bufferSize = 65536;
    from->setReadBufferSize(bufferSize);
    const auto move = [from, to] {
        if (to->bytesToWrite() < bufferSize)
            to->write(from->read(bufferSize));
    };
    QObject::connect(from, &QIODevice::readyRead, to, move);
    QObject::connect(to, &QIODevice::bytesWritten, from, move);
    QObject::connect(from, &QAbstractSocket::disconnected, to, [from, to] {
        to->write(from->readAll());
        to->disconnectFromHost();
    });
}

/// Makes a certificate for a host that is signed by itself, and its key.
std::pair<QSslCertificate, QSslKey> makeCertificate(const QString &hostName)
{
    const QTemporaryDir folder;
    const QString key = folder.filePath(u"key.pem"_s);
    const QString certificate = folder.filePath(u"certificate.pem"_s);
    QProcess openssl;
    openssl.start(u"openssl"_s,
                  u"req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes -days 2"_s.split(u' ') +
                      QStringList{u"-subj"_s, u"/CN=Corvalence test server"_s, u"-addext"_s,
                                  u"subjectAltName=DNS:"_s + hostName, u"-keyout"_s, key, u"-out"_s,
                                  certificate});
    if (!openssl.waitForFinished() || openssl.exitCode() != 0)
        qFatal("openssl: %s", openssl.readAllStandardError().constData());
    return {QSslCertificate(readFile(certificate)), QSslKey(readFile(key), QSsl::Ec)};
}

} // namespace

DownloadServer::DownloadServer(Certificate certificate)
{
    const QString host =
        certificate == Certificate::OfOtherHost ? u"other.example"_s : Window::VERSION_XML_URL.host();
    const auto [ownCertificate, key] = makeCertificate(host);
    QSslConfiguration serving = m_originalConfiguration;
    serving.setLocalCertificate(ownCertificate);
    serving.setPrivateKey(key);
    serving.setPeerVerifyMode(QSslSocket::VerifyNone);
    m_server.setSslConfiguration(serving);

    QSslConfiguration trusting = m_originalConfiguration;
    trusting.setCaCertificates(certificate == Certificate::Untrusted ? QList<QSslCertificate>()
                                                                     : QList{ownCertificate});
    QSslConfiguration::setDefaultConfiguration(trusting);

    connect(&m_server, &QTcpServer::pendingConnectionAvailable, this, &DownloadServer::acceptConnections);
    connect(&m_proxy, &QTcpServer::newConnection, this, &DownloadServer::acceptTunnels);
    if (!m_server.listen(QHostAddress::LocalHost) || !m_proxy.listen(QHostAddress::LocalHost))
        qFatal("No port on the loopback interface");
    QNetworkProxy::setApplicationProxy(
        QNetworkProxy(QNetworkProxy::HttpProxy, m_proxy.serverAddress().toString(), m_proxy.serverPort()));
}

DownloadServer::~DownloadServer()
{
    QNetworkProxy::setApplicationProxy(QNetworkProxy());
    QSslConfiguration::setDefaultConfiguration(m_originalConfiguration);
}

void DownloadServer::serve(const QByteArray &body)
{
    setHandler([body](const QString &, QSslSocket &connection) { reply(connection, "200 OK", body); });
}

void DownloadServer::reply(QSslSocket &connection, const QByteArray &header, const QByteArray &body)
{
    connection.write("HTTP/1.1 " + header + "\r\n\r\n" + body);
    connection.disconnectFromHost();
}

void DownloadServer::acceptConnections()
{
    while (auto *connection = qobject_cast<QSslSocket *>(m_server.nextPendingConnection())) {
        onHeader(connection, [this, connection](const QString &firstLine) {
            const QString request = firstLine.section(u' ', 0, 1);
            m_requests.append(request);
            m_handler(request.section(u' ', 1), *connection);
        });
    }
}

void DownloadServer::acceptTunnels()
{
    while (QTcpSocket *client = m_proxy.nextPendingConnection()) {
        onHeader(client, [this, client](const QString &firstLine) {
            m_proxyRequests.append(firstLine.section(u' ', 0, 1));
            if (!firstLine.startsWith("CONNECT "_L1)) {
                client->disconnectFromHost();
                return;
            }
            auto *server = new QTcpSocket(client);
            server->setProxy(QNetworkProxy::NoProxy);
            connect(server, &QAbstractSocket::connected, client, [client, server] {
                forward(client, server);
                forward(server, client);
                client->write("HTTP/1.1 200 Connection established\r\n\r\n");
            });
            server->connectToHost(m_server.serverAddress(), m_server.serverPort());
        });
    }
}
