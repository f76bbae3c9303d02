#include "certificates.h"
#include "downloadserver.h"
#include "support/dialogs.h"
#include "support/testmain.h"
#include "support/warnings.h"
#include "updates.h"
#include "window.h"

#include <QElapsedTimer>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSignalSpy>
#include <QTest>

#include <optional>

namespace {

/// Longer than the check waits for a server that says nothing.
constexpr int patience = 20'000;

/// What the proxy is asked for by two checks in a row, and not a word outside of these tunnels.
QStringList twoTunnels()
{
    return QStringList(2, QStringLiteral("CONNECT %1:443").arg(Window::VERSION_XML_URL.host()));
}

QNetworkAccessManager *networkOf(const Window &window)
{
    return window.findChild<QNetworkAccessManager *>();
}

/// The error of the check under way, read when it is over.
struct Outcome
{
    QNetworkReply::NetworkError error = QNetworkReply::NoError;
    QString text;
};

/// Waits until a check of the window is over, messages and all.
Outcome waitForAnswer(const Window &window)
{
    Outcome outcome;
    const QSignalSpy finished(networkOf(window), &QNetworkAccessManager::finished);
    const auto connection = QObject::connect(networkOf(window), &QNetworkAccessManager::finished,
                                             [&outcome](const QNetworkReply *reply) {
                                                 outcome = {reply->error(), reply->errorString()};
                                             });
    if (!QTest::qWaitFor([&finished] { return !finished.isEmpty(); }, patience))
        qWarning("No answer came."); // which fails the test
    QObject::disconnect(connection);
    return outcome;
}

} // namespace

/// The update check against a real server: HTTPS over the loopback interface, at the address that is built
/// in.
class tst_UpdateCheckTls : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

    void asksForTheDescriptionAtEveryStart();
    void offersANewerVersionAtStart();
    void saysNothingOfAnEqualVersionUntilAsked();
    void saysNothingOfAnUnreadableDescriptionUntilAsked_data();
    void saysNothingOfAnUnreadableDescriptionUntilAsked();
    void saysNothingOfAMissingDescriptionUntilAsked();
    void followsARedirectToAnotherPath();
    void doesNotFollowARedirectOutOfEncryption();
    void doesNotTrustAStranger_data();
    void doesNotTrustAStranger();
    void failsWhenTheConnectionClosesHalfWay();
    void failsWhenNothingAnswers();
    void showsTheWindowBeforeAnythingAnswers();

private:
    /// Serves the same to every request.
    void serve(const QByteArray &status, const QByteArray &body, const QByteArray &moreHeader = {});
    /// Has a new window check at its start, then once more as the user asks. Expects it to be silent first
    /// and then to report this failure with Qt's own text.
    static void expectFailure(QNetworkReply::NetworkError error);

    std::optional<TrustedAuthority> m_authority;
    TestAuthority::Identity m_identity;
    std::optional<DownloadServer> m_server;
};

void tst_UpdateCheckTls::initTestCase()
{
    QVERIFY(QSslSocket::supportsSsl());
    m_authority.emplace();
    m_identity = m_authority->identityFor(Window::VERSION_XML_URL.host());
    QVERIFY2(!m_identity.certificate.isNull() && !m_identity.key.isNull(), qPrintable(m_authority->error()));
}

void tst_UpdateCheckTls::init()
{
    failOnUnexpectedWarnings();
    m_server.emplace(m_identity);
}

void tst_UpdateCheckTls::cleanup()
{
    m_server.reset();
}

void tst_UpdateCheckTls::cleanupTestCase()
{
    m_authority.reset();
}

void tst_UpdateCheckTls::serve(const QByteArray &status, const QByteArray &body, const QByteArray &moreHeader)
{
    m_server->setHandler([=](const QString &, QSslSocket &connection) {
        DownloadServer::reply(connection, status, body, moreHeader);
    });
}

void tst_UpdateCheckTls::expectFailure(QNetworkReply::NetworkError error)
{
    DialogAnswers answers;
    Window window;
    QCOMPARE(waitForAnswer(window).error, error);
    QCOMPARE(answers.problems(), QStringList());

    QString text;
    answers.expect<QMessageBox>([&text](QMessageBox &box) {
        QCOMPARE(box.icon(), QMessageBox::Warning);
        QCOMPARE(box.windowTitle(), QStringLiteral("Update Check Failed"));
        text = box.text();
        box.accept();
    });
    pressCheckForUpdates(window);
    const Outcome outcome = waitForAnswer(window);
    QCOMPARE(outcome.error, error);
    QCOMPARE(text, QLatin1String("Could not check for updates:\n") + outcome.text);
    QCOMPARE(answers.problems(), QStringList());
}

void tst_UpdateCheckTls::asksForTheDescriptionAtEveryStart()
{
    QCOMPARE(Window::VERSION_XML_URL.scheme(), QStringLiteral("https"));
    QCOMPARE(Window::VERSION_XML_URL.path(), QStringLiteral("/downloads/Corvalence_version.xml"));

    serve("200 OK", describe(QStringLiteral("2.2.0")));
    DialogAnswers answers;
    for (int start = 1; start <= 2; ++start) {
        const Window window;
        QCOMPARE(waitForAnswer(window).error, QNetworkReply::NoError);
        QCOMPARE(m_server->requests().size(), start);
    }
    QCOMPARE(m_server->requests(), QStringList(2, QStringLiteral("GET /downloads/Corvalence_version.xml")));
    QCOMPARE(m_server->proxyRequests(), twoTunnels());
    QVERIFY(
        m_server->lastHeader().contains("\r\nHost: " + Window::VERSION_XML_URL.host().toLatin1() + "\r\n"));
    QCOMPARE(answers.problems(), QStringList());
}

void tst_UpdateCheckTls::offersANewerVersionAtStart()
{
    serve("200 OK", describe(QStringLiteral("2.10"), QStringLiteral("Faster.")));
    DialogAnswers answers;
    answers.expect<QMessageBox>([](QMessageBox &box) {
        QCOMPARE(box.windowTitle(), QStringLiteral("Update Available"));
        QCOMPARE(box.text(), QStringLiteral("A new version (2.10) is available!\n\nFaster."));
        box.reject();
    });
    const Window window;
    waitForAnswer(window);
    QCOMPARE(answers.problems(), QStringList());
}

void tst_UpdateCheckTls::saysNothingOfAnEqualVersionUntilAsked()
{
    serve("200 OK", describe(QStringLiteral("2.2.0")));
    DialogAnswers answers;
    Window window;
    waitForAnswer(window);
    QCOMPARE(answers.problems(), QStringList());

    answers.expectMessage(&window, QMessageBox::Information, QStringLiteral("No Update Available"),
                          upToDate());
    pressCheckForUpdates(window);
    waitForAnswer(window);
    QCOMPARE(answers.problems(), QStringList());
}

void tst_UpdateCheckTls::saysNothingOfAnUnreadableDescriptionUntilAsked_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("cut off") << describe(QStringLiteral("3")).chopped(4);
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("50 MB") << describe(QStringLiteral("3"), QString(50'000'000, QLatin1Char('n')));
}

void tst_UpdateCheckTls::saysNothingOfAnUnreadableDescriptionUntilAsked()
{
    QFETCH(const QByteArray, body);
    serve("200 OK", body);
    DialogAnswers answers;
    Window window;
    QCOMPARE(waitForAnswer(window).error, QNetworkReply::NoError);
    QCOMPARE(answers.problems(), QStringList());

    answers.expectMessage(
        &window, QMessageBox::Warning, QStringLiteral("Version info Invalid"),
        QStringLiteral("Could not check for updates:\nVersion info invalid, contact Author."));
    pressCheckForUpdates(window);
    QCOMPARE(waitForAnswer(window).error, QNetworkReply::NoError);
    QCOMPARE(answers.problems(), QStringList());
}

void tst_UpdateCheckTls::saysNothingOfAMissingDescriptionUntilAsked()
{
    // Even when the page that says so would be a description.
    serve("404 Not Found", describe(QStringLiteral("3")));
    expectFailure(QNetworkReply::ContentNotFoundError);
}

void tst_UpdateCheckTls::followsARedirectToAnotherPath()
{
    m_server->setHandler([](const QString &path, QSslSocket &connection) {
        if (path == QLatin1String("/elsewhere.xml"))
            DownloadServer::reply(connection, "200 OK", describe(QStringLiteral("3")));
        else
            DownloadServer::reply(connection, "302 Found", {}, "Location: /elsewhere.xml\r\n");
    });
    DialogAnswers answers;
    answers.expect<QMessageBox>([](QMessageBox &box) {
        QCOMPARE(box.windowTitle(), QStringLiteral("Update Available"));
        box.reject();
    });
    const Window window;
    waitForAnswer(window);
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(m_server->requests().last(), QStringLiteral("GET /elsewhere.xml"));
}

void tst_UpdateCheckTls::doesNotFollowARedirectOutOfEncryption()
{
    serve("302 Found", {},
          "Location: http://" + Window::VERSION_XML_URL.host().toLatin1() + "/elsewhere.xml\r\n");
    expectFailure(QNetworkReply::InsecureRedirectError);
    QCOMPARE(m_server->proxyRequests(), twoTunnels());
}

void tst_UpdateCheckTls::doesNotTrustAStranger_data()
{
    QTest::addColumn<bool>("knownAuthority");
    QTest::addColumn<QString>("hostName");
    QTest::newRow("another authority") << false << Window::VERSION_XML_URL.host();
    QTest::newRow("another host") << true << QStringLiteral("elsewhere.example");
}

void tst_UpdateCheckTls::doesNotTrustAStranger()
{
    QFETCH(const bool, knownAuthority);
    QFETCH(const QString, hostName);
    TestAuthority stranger;
    const TestAuthority::Identity identity =
        (knownAuthority ? static_cast<TestAuthority &>(*m_authority) : stranger).identityFor(hostName);
    QVERIFY(!identity.certificate.isNull());
    m_server.emplace(identity);
    serve("200 OK", describe(QStringLiteral("3")));
    expectFailure(QNetworkReply::SslHandshakeFailedError);
    QCOMPARE(m_server->requests(), QStringList());
}

void tst_UpdateCheckTls::failsWhenTheConnectionClosesHalfWay()
{
    m_server->setHandler([](const QString &, QSslSocket &connection) {
        const QByteArray body = describe(QStringLiteral("3"));
        connection.write("HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(body.size()) +
                         "\r\n\r\n" + body.left(body.size() / 2));
        connection.disconnectFromHost();
    });
    expectFailure(QNetworkReply::RemoteHostClosedError);
}

void tst_UpdateCheckTls::failsWhenNothingAnswers()
{
    serve("200 OK", describe(QStringLiteral("2.2.0")));
    DialogAnswers answers;
    Window window;
    waitForAnswer(window);

    m_server->setHandler([](const QString &, QSslSocket &) {});
    QString text;
    answers.expect<QMessageBox>([&text](QMessageBox &box) {
        QCOMPARE(box.windowTitle(), QStringLiteral("Update Check Failed"));
        text = box.text();
        box.accept();
    });
    QElapsedTimer timer;
    timer.start();
    pressCheckForUpdates(window);
    const Outcome outcome = waitForAnswer(window);
    // 5000 ms by a timer that may be early by a twentieth.
    QCOMPARE_GE(timer.elapsed(), 4750);
    QCOMPARE(text, outcome.error == QNetworkReply::TimeoutError
                       ? QStringLiteral("Request timed out. Please check your internet connection.")
                       : QLatin1String("Could not check for updates:\n") + outcome.text);
    QVERIFY(outcome.error != QNetworkReply::NoError);
    QCOMPARE(answers.problems(), QStringList());
}

void tst_UpdateCheckTls::showsTheWindowBeforeAnythingAnswers()
{
    m_server->setHandler([](const QString &, QSslSocket &) {});
    DialogAnswers answers;
    Window window;
    const QSignalSpy finished(networkOf(window), &QNetworkAccessManager::finished);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QCOMPARE(finished.size(), 0);
    QCOMPARE(answers.problems(), QStringList());
}

ADD_TEST_CLASS(tst_UpdateCheckTls)
#include "tst_updatecheck_tls.moc"
