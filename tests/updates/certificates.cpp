#include "certificates.h"

#include <QFile>
#include <QProcess>

namespace {

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

TestAuthority::TestAuthority()
{
    openssl({QStringLiteral("req"), QStringLiteral("-x509"), QStringLiteral("-newkey"), QStringLiteral("ec"),
             QStringLiteral("-pkeyopt"), QStringLiteral("ec_paramgen_curve:prime256v1"),
             QStringLiteral("-nodes"), QStringLiteral("-days"), QStringLiteral("2"), QStringLiteral("-subj"),
             QStringLiteral("/CN=Corvalence test authority"), QStringLiteral("-keyout"),
             QStringLiteral("authority.key"), QStringLiteral("-out"), QStringLiteral("authority.pem")});
}

QSslCertificate TestAuthority::certificate() const
{
    return QSslCertificate(contentOf(m_folder.filePath(QStringLiteral("authority.pem"))));
}

TestAuthority::Identity TestAuthority::identityFor(const QString &hostName)
{
    QFile extensions(m_folder.filePath(QStringLiteral("extensions")));
    if (extensions.open(QIODevice::WriteOnly))
        extensions.write("subjectAltName=DNS:" + hostName.toUtf8() + "\nbasicConstraints=CA:FALSE\n");
    extensions.close();
    const bool made =
        openssl({QStringLiteral("req"), QStringLiteral("-new"), QStringLiteral("-newkey"),
                 QStringLiteral("ec"), QStringLiteral("-pkeyopt"),
                 QStringLiteral("ec_paramgen_curve:prime256v1"), QStringLiteral("-nodes"),
                 QStringLiteral("-subj"), QStringLiteral("/CN=Corvalence test server"),
                 QStringLiteral("-keyout"), QStringLiteral("server.key"), QStringLiteral("-out"),
                 QStringLiteral("server.csr")}) &&
        openssl({QStringLiteral("x509"), QStringLiteral("-req"), QStringLiteral("-in"),
                 QStringLiteral("server.csr"), QStringLiteral("-CA"), QStringLiteral("authority.pem"),
                 QStringLiteral("-CAkey"), QStringLiteral("authority.key"), QStringLiteral("-CAcreateserial"),
                 QStringLiteral("-days"), QStringLiteral("2"), QStringLiteral("-extfile"),
                 QStringLiteral("extensions"), QStringLiteral("-out"), QStringLiteral("server.pem")});
    if (!made)
        return Identity();
    return {QSslCertificate(contentOf(m_folder.filePath(QStringLiteral("server.pem")))),
            QSslKey(contentOf(m_folder.filePath(QStringLiteral("server.key"))), QSsl::Ec)};
}

bool TestAuthority::openssl(const QStringList &arguments)
{
    QProcess process;
    process.setWorkingDirectory(m_folder.path());
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(QStringLiteral("openssl"), arguments);
    if (!process.waitForFinished() || process.exitStatus() != QProcess::NormalExit ||
        process.exitCode() != 0) {
        m_error = QLatin1String("openssl: ") + process.errorString() + QLatin1Char('\n') +
                  QString::fromLocal8Bit(process.readAll());
        return false;
    }
    return true;
}

TrustedAuthority::TrustedAuthority()
{
    QSslConfiguration trusting = m_original;
    trusting.setCaCertificates({certificate()});
    QSslConfiguration::setDefaultConfiguration(trusting);
}

TrustedAuthority::~TrustedAuthority()
{
    QSslConfiguration::setDefaultConfiguration(m_original);
}
