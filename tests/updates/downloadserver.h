#ifndef DOWNLOADSERVER_H
#define DOWNLOADSERVER_H

#include "certificates.h"

#include <QPointer>
#include <QSslServer>
#include <QSslSocket>
#include <QStringList>
#include <QTcpServer>

#include <functional>

/// The project's download server as the program meets it: HTTPS on the loopback interface, reached through a
/// proxy that is set for the whole program while this lives. The proxy takes every tunnel, to whatever host,
/// to the server, and refuses everything else.
class DownloadServer : public QObject
{
    Q_OBJECT

public:
    /// What becomes of a request, given its path and the connection it came over.
    using Handler = std::function<void(const QString &path, QSslSocket &connection)>;

    explicit DownloadServer(const TestAuthority::Identity &identity);
    ~DownloadServer() override;

    void setHandler(const Handler &handler) { m_handler = handler; }

    /// The requests that came to the server, without their header: "GET /path".
    [[nodiscard]] QStringList requests() const { return m_requests; }
    /// The header of the last request that came to the server.
    [[nodiscard]] QByteArray lastHeader() const { return m_lastHeader; }
    /// What the proxy was asked for: "CONNECT host:port", and "GET http://..." were something not encrypted.
    [[nodiscard]] QStringList proxyRequests() const { return m_proxyRequests; }

    /// Answers a request and closes the connection.
    static void reply(QSslSocket &connection, const QByteArray &status, const QByteArray &body,
                      const QByteArray &moreHeader = {});

Q_SIGNALS:
    void requested();

private:
    void serve();
    void tunnel();

    QSslServer m_server;
    QTcpServer m_proxy;
    Handler m_handler;
    QStringList m_requests;
    QByteArray m_lastHeader;
    QStringList m_proxyRequests;
};

#endif
