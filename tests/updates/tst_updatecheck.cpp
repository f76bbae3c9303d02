#include "fakereply.h"
#include "support/dialogs.h"
#include "support/network.h"
#include "support/testmain.h"
#include "support/warnings.h"
#include "updates.h"
#include "window.h"

#include <QSignalSpy>
#include <QTest>
#include <QTranslator>

#include <optional>

namespace {

enum class Asked { ByTheProgram, ByTheUser };

/// Turns every text of the window into another.
class Translator : public QTranslator
{
public:
    [[nodiscard]] bool isEmpty() const override { return false; }
    [[nodiscard]] QString translate(const char *context, const char *, const char *, int) const override
    {
        return qstrcmp(context, "Window") == 0 ? QStringLiteral("translated") : QString();
    }
};

} // namespace

/// What the user is told of an update check, and that the answer is released whatever came of it.
class tst_UpdateCheck : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { m_proxy.emplace(); }
    void init() { failOnUnexpectedWarnings(); }
    void cleanupTestCase() { m_proxy.reset(); }

    void tellsOfAFailureOnlyWhenAsked_data();
    void tellsOfAFailureOnlyWhenAsked();
    void tellsOfAnUnreadableAnswerOnlyWhenAsked_data();
    void tellsOfAnUnreadableAnswerOnlyWhenAsked();
    void tellsThatNothingIsNewerOnlyWhenAsked_data();
    void tellsThatNothingIsNewerOnlyWhenAsked();
    void offersANewerVersionAskedOrNot_data();
    void offersANewerVersionAskedOrNot();
    void forgetsThatTheUserAskedBeforeItSpeaks();
    void forgetsThatTheUserAskedWithEveryAnswer_data();
    void forgetsThatTheUserAskedWithEveryAnswer();
    void speaksPlainStrings();

private:
    /// Hands the window an answer and lets it go; fails when it is not released.
    static void answer(Window &window, Asked asked, FakeReply *reply);

    std::optional<SilentProxy> m_proxy;
};

void tst_UpdateCheck::answer(Window &window, Asked asked, FakeReply *reply)
{
    if (asked == Asked::ByTheUser)
        pressCheckForUpdates(window);
    const QSignalSpy destroyed(reply, &QObject::destroyed);
    QVERIFY(QMetaObject::invokeMethod(&window, "onUpdateCheckFinished", Qt::DirectConnection,
                                      Q_ARG(QNetworkReply *, reply)));
    QCOMPARE(destroyed.size(), 0); // whoever sent the signal may still use it
    QCoreApplication::sendPostedEvents(reply, QEvent::DeferredDelete);
    QCOMPARE(destroyed.size(), 1);
}

void tst_UpdateCheck::tellsOfAFailureOnlyWhenAsked_data()
{
    QTest::addColumn<QNetworkReply::NetworkError>("error");
    QTest::addColumn<QString>("reason");
    QTest::addColumn<QString>("text");

    const auto row = [](const char *name, QNetworkReply::NetworkError error, const char *reason) {
        QTest::newRow(name) << error << QString::fromUtf8(reason)
                            << QString::fromUtf8("Could not check for updates:\n") +
                                   QString::fromUtf8(reason);
    };
    row("no connection", QNetworkReply::ConnectionRefusedError, "Connection refused");
    row("no such host", QNetworkReply::HostNotFoundError, "Host downloads.corvalence.example not found");
    row("no network", QNetworkReply::TemporaryNetworkFailureError, "Network session error.");
    row("connection lost", QNetworkReply::RemoteHostClosedError, "Connection closed");
    row("no trust", QNetworkReply::SslHandshakeFailedError, "SSL handshake failed");
    row("cancelled", QNetworkReply::OperationCanceledError, "Operation canceled");
    row("proxy", QNetworkReply::ProxyTimeoutError, "Proxy server connection timed out");
    row("insecure redirect", QNetworkReply::InsecureRedirectError, "Insecure redirect");
    row("not found", QNetworkReply::ContentNotFoundError, "server replied: Not Found");
    row("server error", QNetworkReply::InternalServerError, "server replied: Internal Server Error");
    row("unknown", QNetworkReply::UnknownNetworkError, "Unknown error");
    row("places in the reason", QNetworkReply::UnknownServerError, "server replied: %1 %2");
    row("markup in the reason", QNetworkReply::UnknownServerError, "server replied: <b>&amp;</b>");
    QTest::newRow("timeout") << QNetworkReply::TimeoutError << QStringLiteral("Socket operation timed out")
                             << QStringLiteral("Request timed out. Please check your internet connection.");
}

void tst_UpdateCheck::tellsOfAFailureOnlyWhenAsked()
{
    QFETCH(const QNetworkReply::NetworkError, error);
    QFETCH(const QString, reason);
    QFETCH(const QString, text);
    Window window;
    DialogAnswers answers;

    answer(window, Asked::ByTheProgram, new FakeReply(error, reason));
    QCOMPARE(answers.problems(), QStringList());

    answers.expectMessage(&window, QMessageBox::Warning, QStringLiteral("Update Check Failed"), text);
    answer(window, Asked::ByTheUser, new FakeReply(error, reason));
    QCOMPARE(answers.problems(), QStringList());
}

void tst_UpdateCheck::tellsOfAnUnreadableAnswerOnlyWhenAsked_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("text") << QByteArray("3.0.0");
    QTest::newRow("cut off") << describe(QStringLiteral("3.0.0")).chopped(1);
    QTest::newRow("web page") << QByteArray("<!DOCTYPE html><html><p>Moved<br></html>");
    QTest::newRow("more than a mebibyte") << describe(QStringLiteral("3.0.0"), QString(1'100'000, u'n'));
    QTest::newRow("entities") << QByteArray(
        "<!DOCTYPE d [<!ENTITY a '3.0.0'>]><d><version>&a;</version></d>");
}

void tst_UpdateCheck::tellsOfAnUnreadableAnswerOnlyWhenAsked()
{
    QFETCH(const QByteArray, body);
    Window window;
    DialogAnswers answers;

    answer(window, Asked::ByTheProgram, new FakeReply(body));
    QCOMPARE(answers.problems(), QStringList());

    answers.expectMessage(
        &window, QMessageBox::Warning, QStringLiteral("Version info Invalid"),
        QStringLiteral("Could not check for updates:\nVersion info invalid, contact Author."));
    answer(window, Asked::ByTheUser, new FakeReply(body));
    QCOMPARE(answers.problems(), QStringList());
}

void tst_UpdateCheck::tellsThatNothingIsNewerOnlyWhenAsked_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("equal") << describe(QStringLiteral("2.2.0"));
    QTest::newRow("two segments") << describe(QStringLiteral("2.2"));
    QTest::newRow("older") << describe(QStringLiteral("2.1.9"));
    QTest::newRow("words") << describe(QStringLiteral("newest"));
    QTest::newRow("empty") << describe(QString());
    QTest::newRow("missing") << QByteArray("<d><notes>no version</notes></d>");
    QTest::newRow("some other document") << QByteArray("<feed><entry>3.0.0</entry></feed>");
}

void tst_UpdateCheck::tellsThatNothingIsNewerOnlyWhenAsked()
{
    QFETCH(const QByteArray, body);
    Window window;
    DialogAnswers answers;

    answer(window, Asked::ByTheProgram, new FakeReply(body));
    QCOMPARE(answers.problems(), QStringList());

    answers.expectMessage(&window, QMessageBox::Information, QStringLiteral("No Update Available"),
                          upToDate());
    answer(window, Asked::ByTheUser, new FakeReply(body));
    QCOMPARE(answers.problems(), QStringList());
}

void tst_UpdateCheck::offersANewerVersionAskedOrNot_data()
{
    QTest::addColumn<QString>("version");
    for (const char *version : {"2.2.1", "2.10", "3", "2.2.0.1", "2.3.0-beta"})
        QTest::newRow(version) << QString::fromLatin1(version);
}

void tst_UpdateCheck::offersANewerVersionAskedOrNot()
{
    QFETCH(const QString, version);
    Window window;
    DialogAnswers answers;

    for (const Asked asked : {Asked::ByTheProgram, Asked::ByTheUser}) {
        answers.expect<QMessageBox>([version](QMessageBox &box) {
            QCOMPARE(box.windowTitle(), QStringLiteral("Update Available"));
            QCOMPARE(box.text(), QStringLiteral("A new version (") + version +
                                     QStringLiteral(") is available!\n\nFirst.\nSecond."));
            box.reject();
        });
        answer(window, asked, new FakeReply(describe(version, QStringLiteral("First.\nSecond."))));
        QCOMPARE(answers.problems(), QStringList());
    }
}

void tst_UpdateCheck::forgetsThatTheUserAskedBeforeItSpeaks()
{
    Window window;
    DialogAnswers answers;
    // Another check fails while the user still reads the message of this one.
    answers.expect<QMessageBox>([&window](QMessageBox &box) {
        answer(window, Asked::ByTheProgram,
               new FakeReply(QNetworkReply::HostNotFoundError, QStringLiteral("Host not found")));
        box.accept();
    });
    answer(window, Asked::ByTheUser, new FakeReply(describe(QStringLiteral("2.2.0"))));
    QCOMPARE(answers.problems(), QStringList());
}

void tst_UpdateCheck::forgetsThatTheUserAskedWithEveryAnswer_data()
{
    QTest::addColumn<QNetworkReply::NetworkError>("error");
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("failure") << QNetworkReply::HostNotFoundError << QByteArray();
    QTest::newRow("unreadable") << QNetworkReply::NoError << QByteArray("no XML");
    QTest::newRow("equal") << QNetworkReply::NoError << describe(QStringLiteral("2.2.0"));
    QTest::newRow("newer") << QNetworkReply::NoError << describe(QStringLiteral("3"));
}

void tst_UpdateCheck::forgetsThatTheUserAskedWithEveryAnswer()
{
    QFETCH(const QNetworkReply::NetworkError, error);
    QFETCH(const QByteArray, body);
    Window window;
    DialogAnswers answers;
    answers.expectAndCancel<QMessageBox>();
    answer(window, Asked::ByTheUser,
           error == QNetworkReply::NoError ? new FakeReply(body)
                                           : new FakeReply(error, QStringLiteral("no")));
    answer(window, Asked::ByTheProgram, new FakeReply(error, QStringLiteral("no")));
    answer(window, Asked::ByTheProgram, new FakeReply(describe(QStringLiteral("2.2.0"))));
    QCOMPARE(answers.problems(), QStringList());
}

void tst_UpdateCheck::speaksPlainStrings()
{
    Window window;
    DialogAnswers answers;
    Translator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));

    answers.expectMessage(&window, QMessageBox::Information, QStringLiteral("No Update Available"),
                          upToDate());
    answer(window, Asked::ByTheUser, new FakeReply(describe(QStringLiteral("2.2.0"))));
    answers.expectMessage(&window, QMessageBox::Warning, QStringLiteral("Update Check Failed"),
                          QStringLiteral("Could not check for updates:\nno"));
    answer(window, Asked::ByTheUser, new FakeReply(QNetworkReply::UnknownNetworkError, QStringLiteral("no")));
    answers.expect<QMessageBox>([](QMessageBox &box) {
        QCOMPARE(box.windowTitle(), QStringLiteral("Update Available"));
        QCOMPARE(box.buttons().first()->text(), QStringLiteral("Download"));
        box.reject();
    });
    answer(window, Asked::ByTheProgram, new FakeReply(describe(QStringLiteral("3"))));
    QCOMPARE(answers.problems(), QStringList());
}

ADD_TEST_CLASS(tst_UpdateCheck)
#include "tst_updatecheck.moc"
