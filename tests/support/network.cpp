#include "support/network.h"

#include <QHostAddress>
#include <QNetworkProxy>

SilentProxy::SilentProxy()
{
    if (!m_server.listen(QHostAddress::LocalHost))
        qFatal("No port on the loopback interface: %s", qPrintable(m_server.errorString()));
    QNetworkProxy::setApplicationProxy(
        QNetworkProxy(QNetworkProxy::HttpProxy, m_server.serverAddress().toString(), m_server.serverPort()));
}

SilentProxy::~SilentProxy()
{
    QNetworkProxy::setApplicationProxy(QNetworkProxy());
}
