#ifndef DOWNLOADSERVER_H
#define DOWNLOADSERVER_H

#include <QSslConfiguration>
#include <QSslServer>
#include <QSslSocket>
#include <QStringList>
#include <QTcpServer>

#include <functional>

/// The project's download server: HTTPS on the loopback interface. The program reaches it through a proxy
/// that is set for the whole program during the server's lifetime, and connects every tunnel to the server.
class DownloadServer : public QObject
{
    Q_OBJECT

public:
    enum class Certificate { Trusted, Untrusted, OfOtherHost };
    /// Receives the path of a request and the connection to reply on.
    using Handler = std::function<void(const QString &path, QSslSocket &connection)>;

    /// The certificate, a new one, is the only one that the program trusts, or none is.
    explicit DownloadServer(Certificate certificate = Certificate::Trusted);
    ~DownloadServer() override;

    void setHandler(const Handler &handler) { m_handler = handler; }
    /// Sends this body to every request.
    void serve(const QByteArray &body);

    /// The requests to the server as "GET /path".
    [[nodiscard]] QStringList requests() const { return m_requests; }
    /// The requests to the proxy as "CONNECT host:port".
    [[nodiscard]] QStringList proxyRequests() const { return m_proxyRequests; }

    /// Sends status, headers and body, and closes the connection.
    static void reply(QSslSocket &connection, const QByteArray &header, const QByteArray &body = {});

private:
    void acceptConnections();
    void acceptTunnels();

    QSslServer m_server;
    QTcpServer m_proxy;
    QSslConfiguration m_originalConfiguration = QSslConfiguration::defaultConfiguration();
    Handler m_handler;
    QStringList m_requests;
    QStringList m_proxyRequests;
};

#endif
