#ifndef CERTIFICATES_H
#define CERTIFICATES_H

#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QString>
#include <QTemporaryDir>

/// A certification authority that lives as long as a test: its keys and certificates are made by the openssl
/// program when they are asked for.
class TestAuthority
{
public:
    /// A server's certificate with its key. Null when making it failed; error() tells why.
    struct Identity
    {
        QSslCertificate certificate;
        QSslKey key;
    };

    TestAuthority();

    /// The authority's own certificate. Null when making it failed.
    [[nodiscard]] QSslCertificate certificate() const;
    /// An identity for the host named, signed by this authority.
    [[nodiscard]] Identity identityFor(const QString &hostName);
    /// What went wrong last. Empty when all went well.
    [[nodiscard]] QString error() const { return m_error; }

private:
    bool openssl(const QStringList &arguments);

    QTemporaryDir m_folder;
    QString m_error;
};

/// An authority that the whole program trusts, as the only one, while this lives.
class TrustedAuthority : public TestAuthority
{
public:
    TrustedAuthority();
    ~TrustedAuthority();

    TrustedAuthority(const TrustedAuthority &) = delete;
    TrustedAuthority &operator=(const TrustedAuthority &) = delete;

private:
    QSslConfiguration m_original = QSslConfiguration::defaultConfiguration();
};

#endif
