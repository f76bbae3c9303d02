#include "support/testmain.h"

#include <QProcess>
#include <QProcessEnvironment>
#include <QRegularExpression>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

/// The built program, started where there is no network.
class tst_QuietStart : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void saysNothingWithoutANetwork();
};

void tst_QuietStart::saysNothingWithoutANetwork()
{
    // The way out, which leads nowhere: each connection is closed as soon as it is asked for something.
    QTcpServer proxy;
    QVERIFY(proxy.listen(QHostAddress::LocalHost));
    int attempts = 0;
    connect(&proxy, &QTcpServer::newConnection, this, [&proxy, &attempts] {
        QTcpSocket *client = proxy.nextPendingConnection();
        connect(client, &QIODevice::readyRead, client, [client, &attempts] {
            ++attempts;
            client->abort();
        });
    });

    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    const QString way = QStringLiteral("http://127.0.0.1:%1").arg(proxy.serverPort());
    environment.insert(QStringLiteral("https_proxy"), way);
    environment.insert(QStringLiteral("http_proxy"), way);
    environment.remove(QStringLiteral("no_proxy"));
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    QProcess program;
    program.setProcessEnvironment(environment);
    program.start(QStringLiteral(CORVALENCE_PROGRAM), QStringList());
    QVERIFY(program.waitForStarted());
    QTRY_VERIFY_WITH_TIMEOUT(attempts > 0, 20'000);

    // It keeps running, and prints nothing but what the platform reports.
    QVERIFY(!program.waitForFinished(1000));
    program.kill();
    QVERIFY(program.waitForFinished());
    QCOMPARE(program.readAllStandardOutput(), QByteArray());
    static const QRegularExpression known(
        QStringLiteral("^(This plugin does not support propagateSizeHints\\(\\)"
                       "|QStandardPaths: XDG_RUNTIME_DIR not set, .*)?$"));
    const QString said = QString::fromLocal8Bit(program.readAllStandardError());
    const QStringList lines = said.split(QLatin1Char('\n'));
    for (const QString &line : lines)
        QVERIFY2(known.match(line).hasMatch(), qPrintable(line));
}

ADD_TEST_CLASS(tst_QuietStart)
#include "tst_quietstart.moc"
