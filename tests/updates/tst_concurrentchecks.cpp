#include "certificates.h"
#include "downloadserver.h"
#include "support/dialogs.h"
#include "support/testmain.h"
#include "support/warnings.h"
#include "updates.h"
#include "window.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>

#include <memory>
#include <optional>

namespace {

/// Far longer than anything here takes.
constexpr int patience = 20'000;

} // namespace

/// Two checks outstanding at once, and a window that goes while one is.
///
/// Each check has its own connection to whatever answer comes next. So the first answer of two is handled
/// twice, the first time as the one that the user asked for, and the second answer by nobody.
class tst_ConcurrentChecks : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

    void theFirstAnswerIsTheUsers_data();
    void theFirstAnswerIsTheUsers();
    void theNextCheckIsHeardAgain();
    void aWindowGoesWithItsCheckOutstanding_data();
    void aWindowGoesWithItsCheckOutstanding();
    void aWindowClosesWhileTheOfferIsShown();

private:
    /// Whether this many requests are waiting for their answer, after some time.
    [[nodiscard]] bool waitForRequests(qsizetype count) const;
    /// Answers the request that has waited longest.
    void answerOldest(const QByteArray &body);

    std::optional<TrustedAuthority> m_authority;
    TestAuthority::Identity m_identity;
    std::optional<DownloadServer> m_server;
    QList<QPointer<QSslSocket>> m_waiting;
};

void tst_ConcurrentChecks::initTestCase()
{
    m_authority.emplace();
    m_identity = m_authority->identityFor(Window::VERSION_XML_URL.host());
    QVERIFY2(!m_identity.certificate.isNull() && !m_identity.key.isNull(), qPrintable(m_authority->error()));
}

void tst_ConcurrentChecks::init()
{
    failOnUnexpectedWarnings();
    m_server.emplace(m_identity);
    m_server->setHandler([this](const QString &, QSslSocket &connection) { m_waiting.append(&connection); });
}

void tst_ConcurrentChecks::cleanup()
{
    m_waiting.clear();
    m_server.reset();
}

void tst_ConcurrentChecks::cleanupTestCase()
{
    m_authority.reset();
}

bool tst_ConcurrentChecks::waitForRequests(qsizetype count) const
{
    return QTest::qWaitFor([this, count] { return m_waiting.size() == count; }, patience);
}

void tst_ConcurrentChecks::answerOldest(const QByteArray &body)
{
    const QPointer<QSslSocket> connection = m_waiting.takeFirst();
    if (connection)
        DownloadServer::reply(*connection, "200 OK", body);
}

void tst_ConcurrentChecks::theFirstAnswerIsTheUsers_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("title");
    QTest::newRow("newer") << describe(QStringLiteral("3")) << QStringLiteral("Update Available");
    QTest::newRow("equal") << describe(QStringLiteral("2.2.0")) << QStringLiteral("No Update Available");
    QTest::newRow("unreadable") << QByteArray("no XML") << QStringLiteral("Version info Invalid");
}

void tst_ConcurrentChecks::theFirstAnswerIsTheUsers()
{
    QFETCH(const QByteArray, body);
    QFETCH(const QString, title);
    DialogAnswers answers;
    Window window; // which checks by itself
    const QSignalSpy finished(window.findChild<QNetworkAccessManager *>(), &QNetworkAccessManager::finished);
    pressCheckForUpdates(window);
    QVERIFY(waitForRequests(2));

    answers.expect<QMessageBox>([title](QMessageBox &box) {
        QCOMPARE(box.windowTitle(), title);
        box.reject();
    });
    answerOldest(body);
    QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 1, patience);
    QCOMPARE(answers.problems(), QStringList());

    // Nobody is left to hear this one, a newer version or not.
    answerOldest(describe(QStringLiteral("3")));
    QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 2, patience);
    QCOMPARE(answers.problems(), QStringList());
}

void tst_ConcurrentChecks::theNextCheckIsHeardAgain()
{
    DialogAnswers answers;
    Window window;
    const QSignalSpy finished(window.findChild<QNetworkAccessManager *>(), &QNetworkAccessManager::finished);
    pressCheckForUpdates(window);
    QVERIFY(waitForRequests(2));
    answers.expectMessage(&window, QMessageBox::Information, QStringLiteral("No Update Available"),
                          upToDate());
    answerOldest(describe(QStringLiteral("2.2.0")));
    QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 1, patience);
    answerOldest(describe(QStringLiteral("2.2.0")));
    QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 2, patience);

    answers.expectMessage(&window, QMessageBox::Information, QStringLiteral("No Update Available"),
                          upToDate());
    pressCheckForUpdates(window);
    QVERIFY(waitForRequests(1));
    answerOldest(describe(QStringLiteral("2.2.0")));
    QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 3, patience);
    QCOMPARE(answers.problems(), QStringList());
}

void tst_ConcurrentChecks::aWindowGoesWithItsCheckOutstanding_data()
{
    QTest::addColumn<bool>("asked");
    QTest::newRow("its own check") << false;
    QTest::newRow("the user's as well") << true;
}

void tst_ConcurrentChecks::aWindowGoesWithItsCheckOutstanding()
{
    QFETCH(const bool, asked);
    const qsizetype checks = asked ? 2 : 1;
    DialogAnswers answers;
    auto window = std::make_unique<Window>();
    if (asked)
        pressCheckForUpdates(*window);
    QVERIFY(waitForRequests(checks));
    window->close();
    window.reset();

    // The connections end, or the answers go nowhere; either way nobody speaks.
    while (!m_waiting.isEmpty())
        answerOldest(describe(QStringLiteral("3")));
    const Window next;
    QVERIFY(waitForRequests(1));
    QCOMPARE(answers.problems(), QStringList());
}

void tst_ConcurrentChecks::aWindowClosesWhileTheOfferIsShown()
{
    DialogAnswers answers;
    Window window;
    window.show();
    const QSignalSpy finished(window.findChild<QNetworkAccessManager *>(), &QNetworkAccessManager::finished);
    QVERIFY(waitForRequests(1));
    answers.expect<QMessageBox>([&window](QMessageBox &box) {
        QCOMPARE(box.windowTitle(), QStringLiteral("Update Available"));
        window.close();
        box.reject();
    });
    answerOldest(describe(QStringLiteral("3")));
    QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 1, patience);
    QCOMPARE(answers.problems(), QStringList());
}

ADD_TEST_CLASS(tst_ConcurrentChecks)
#include "tst_concurrentchecks.moc"
