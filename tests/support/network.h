#ifndef NETWORK_H
#define NETWORK_H

#include <QTcpServer>

/// Keeps the update checks of a test's windows on this machine: they go to a proxy on the loopback interface
/// that takes them and never answers. Applies to the whole program while it exists.
class SilentProxy
{
public:
    SilentProxy();
    ~SilentProxy();

    SilentProxy(const SilentProxy &) = delete;
    SilentProxy &operator=(const SilentProxy &) = delete;

private:
    QTcpServer m_server;
};

#endif
