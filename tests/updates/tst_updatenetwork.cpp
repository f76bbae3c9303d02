#include "downloadserver.h"
#include "support/testmain.h"
#include "support/warnings.h"
#include "updates.h"
#include "versiondescription.h"
#include "window.h"

#include <QElapsedTimer>
#include <QNetworkProxy>
#include <QProcess>
#include <QProcessEnvironment>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <array>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

/// Longer than the transfer timeout of 5 seconds.
constexpr int maxWait = 20'000;

/// The next reply to a window's check.
class NextReply
{
public:
    explicit NextReply(const Window &window)
        : m_finished(networkOf(window), &QNetworkAccessManager::finished)
    {
        QObject::connect(networkOf(window), &QNetworkAccessManager::finished, &m_context,
                         [this](const QNetworkReply *reply) {
                             error = reply->error();
                             errorString = reply->errorString();
                         });
    }

    /// Waits until the reply has come, and the window has dealt with it.
    [[nodiscard]] bool wait() { return !m_finished.isEmpty() || m_finished.wait(maxWait); }

    QNetworkReply::NetworkError error = QNetworkReply::NoError;
    QString errorString;

private:
    QSignalSpy m_finished;
    QObject m_context;
};

QByteArray chunked(const QByteArray &body)
{
    return QByteArray::number(body.size(), 16) + "\r\n" + body + "\r\n";
}

/// A version description of exactly @a size bytes.
QByteArray descriptionOfSize(qsizetype size)
{
    const QString blank(size - describe(u"3"_s).size(), u' ');
    return describe(u"3"_s, blank);
}

/// Expects the message that a check failed, and stores its text.
void expectFailure(DialogAnswers &answers, QString &text)
{
    answers.expect<QMessageBox>([&text](QMessageBox &box) {
        QCOMPARE(box.icon(), QMessageBox::Warning);
        QCOMPARE(box.windowTitle(), u"Update Check Failed"_s);
        text = box.text();
        box.accept();
    });
}

} // namespace

/// The update check over HTTPS, at the compiled-in address, and in the program.
class tst_UpdateNetwork : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_server.reset(); }

    void requestsTheDescriptionAtEveryStart();
    void readsADescriptionOfTheMaxSize_data();
    void readsADescriptionOfTheMaxSize();
    void followsARedirectToAnotherPath();
    void reportsAFailureOnlyWhenAsked_data();
    void reportsAFailureOnlyWhenAsked();
    void timesOutWhenTheBodyStalls();
    void programPrintsNothingWhenTheCheckFails();

private:
    std::optional<DownloadServer> m_server;
};

void tst_UpdateNetwork::init()
{
    failOnUnexpectedWarnings();
    m_server.emplace();
}

void tst_UpdateNetwork::requestsTheDescriptionAtEveryStart()
{
    m_server->serve(describe(u"2.2.0"_s));
    const DialogAnswers answers;
    for (int start = 1; start <= 2; ++start) {
        const Window window;
        QVERIFY(NextReply(window).wait());
        QCOMPARE(m_server->requests(), QStringList(start, u"GET /downloads/Corvalence_version.xml"_s));
    }
    QCOMPARE(m_server->proxyRequests(),
             QStringList(2, u"CONNECT %1:443"_s.arg(Window::VERSION_XML_URL.host())));
    QCOMPARE(answers.problems(), QStringList());
}

void tst_UpdateNetwork::readsADescriptionOfTheMaxSize_data()
{
    QTest::addColumn<QByteArray>("header");
    QTest::addColumn<QByteArray>("body");
    const QByteArray body = descriptionOfSize(maxVersionDescriptionSize);
    QTest::newRow("in one piece") << "Content-Length: " + QByteArray::number(body.size()) << body;
    QTest::newRow("until the connection closes") << QByteArray("Connection: close") << body;
    QTest::newRow("chunked") << QByteArray("Transfer-Encoding: chunked")
                             << chunked(body.first(1)) + chunked(body.sliced(1)) + chunked("");
}

void tst_UpdateNetwork::readsADescriptionOfTheMaxSize()
{
    QFETCH(const QByteArray, header);
    QFETCH(const QByteArray, body);
    m_server->setHandler([&](const QString &, QSslSocket &connection) {
        DownloadServer::reply(connection, "200 OK\r\n" + header, body);
    });
    DialogAnswers answers;
    expectOffer(answers);
    const Window window;
    QVERIFY(NextReply(window).wait());
    QCOMPARE(answers.problems(), QStringList());
}

void tst_UpdateNetwork::followsARedirectToAnotherPath()
{
    m_server->setHandler([](const QString &path, QSslSocket &connection) {
        if (path == "/other.xml"_L1)
            DownloadServer::reply(connection, "200 OK", describe(u"3"_s));
        else
            DownloadServer::reply(connection, "302 Found\r\nContent-Length: 0\r\nLocation: /other.xml");
    });
    DialogAnswers answers;
    expectOffer(answers);
    const Window window;
    QVERIFY(NextReply(window).wait());
    QCOMPARE(answers.problems(), QStringList());
}

void tst_UpdateNetwork::reportsAFailureOnlyWhenAsked_data()
{
    using Certificate = DownloadServer::Certificate;
    QTest::addColumn<Certificate>("certificate");
    QTest::addColumn<QByteArray>("header");
    QTest::addColumn<QNetworkReply::NetworkError>("error");
    const auto row = [](const char *name, Certificate certificate, const QByteArray &header,
                        QNetworkReply::NetworkError error) {
        QTest::newRow(name) << certificate << header << error;
    };
    row("not found", Certificate::Trusted, "404 Not Found\r\nContent-Length: 200",
        QNetworkReply::ContentNotFoundError);
    row("redirect to an unencrypted address", Certificate::Trusted,
        "302 Found\r\nLocation: http://" + Window::VERSION_XML_URL.host().toLatin1() + "/other.xml",
        QNetworkReply::InsecureRedirectError);
    row("connection closed early", Certificate::Trusted, "200 OK\r\nContent-Length: 1000",
        QNetworkReply::RemoteHostClosedError);
    row("unknown authority", Certificate::Untrusted, "200 OK", QNetworkReply::SslHandshakeFailedError);
    row("certificate of another host", Certificate::OfOtherHost, "200 OK",
        QNetworkReply::SslHandshakeFailedError);
}

void tst_UpdateNetwork::reportsAFailureOnlyWhenAsked()
{
    QFETCH(const DownloadServer::Certificate, certificate);
    QFETCH(const QByteArray, header);
    QFETCH(const QNetworkReply::NetworkError, error);
    m_server.reset();
    m_server.emplace(certificate);
    m_server->setHandler([&](const QString &, QSslSocket &connection) {
        DownloadServer::reply(connection, header, describe(u"3"_s));
    });
    DialogAnswers answers;
    const Window window;
    NextReply automatic(window);
    QVERIFY(automatic.wait());
    QCOMPARE(automatic.error, error);
    QCOMPARE(answers.problems(), QStringList());

    QString text;
    expectFailure(answers, text);
    NextReply manual(window);
    pressCheckForUpdates(window);
    QVERIFY(manual.wait());
    QCOMPARE(manual.error, error);
    QCOMPARE(text, "Could not check for updates:\n"_L1 + manual.errorString);
    QCOMPARE(answers.problems(), QStringList());
    // Nothing was requested without trust or encryption.
    QCOMPARE(m_server->requests().size(), certificate == DownloadServer::Certificate::Trusted ? 2 : 0);
    // Qt may open a spare connection, depending on timing.
    QVERIFY(m_server->proxyRequests().size() >= 2);
}

void tst_UpdateNetwork::timesOutWhenTheBodyStalls()
{
    // Three windows check at the same time, so that the test waits only once for the timeout.
    m_server->serve(describe(u"2.2.0"_s));
    DialogAnswers answers;
    std::array<std::optional<Window>, 3> windows;
    for (std::optional<Window> &window : windows)
        QVERIFY(NextReply(window.emplace()).wait());

    // No body, and two bodies without end. Of these the server has 64 MiB ready.
    const std::array<QByteArray, 3> headers{"Content-Length: 1000", "Content-Length: 1000000000000",
                                            "Transfer-Encoding: chunked"};
    qsizetype count = 0;
    m_server->setHandler([&](const QString &, QSslSocket &connection) {
        connection.write("HTTP/1.1 200 OK\r\n" + headers.at(static_cast<size_t>(count++)) + "\r\n\r\n");
        if (count == 1)
            return;
        const auto send = [&connection, left = 1024]() mutable {
            if (left > 0 && connection.encryptedBytesToWrite() == 0) {
                --left;
                connection.write(chunked(QByteArray(65536, ' ')));
            }
        };
        connect(&connection, &QSslSocket::encryptedBytesWritten, this, send);
        connection.flush();
    });

    std::array<std::optional<NextReply>, 3> replies;
    std::array<qint64, 3> received{};
    QString text;
    QElapsedTimer timer;
    timer.start();
    for (size_t i = 0; i < windows.size(); ++i) {
        expectFailure(answers, text);
        replies.at(i).emplace(*windows.at(i));
        pressCheckForUpdates(*windows.at(i));
        connect(networkOf(*windows.at(i))->findChildren<QNetworkReply *>().last(),
                &QNetworkReply::downloadProgress, this,
                [&size = received.at(i)](qint64 bytesReceived) { size = bytesReceived; });
    }
    for (std::optional<NextReply> &reply : replies)
        QVERIFY(reply->wait());
    QCOMPARE_GE(timer.elapsed(), 4750); // the timer for 5 seconds may be early by 5 %
    QCOMPARE_LE(*std::max_element(received.begin(), received.end()), maxVersionDescriptionSize);
    QCOMPARE(answers.problems(), QStringList());
}

void tst_UpdateNetwork::programPrintsNothingWhenTheCheckFails()
{
    m_server.reset();
    m_server.emplace(DownloadServer::Certificate::Untrusted);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(u"no_proxy"_s);
    environment.insert(u"https_proxy"_s,
                       u"http://127.0.0.1:%1"_s.arg(QNetworkProxy::applicationProxy().port()));
    environment.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
    QProcess program;
    program.setProcessEnvironment(environment);
    program.start(u"" CORVALENCE_PROGRAM ""_s, {});
    QTRY_COMPARE_WITH_TIMEOUT(m_server->proxyRequests().size(), 1, maxWait);
    QVERIFY(!QTest::qWaitFor([&program] { return program.state() == QProcess::NotRunning; }, 1000));
    program.kill();
    QVERIFY(program.waitForFinished());

    QCOMPARE(program.readAllStandardOutput(), QByteArray());
    // The platform reports these.
    static const QRegularExpression expected(
        u"^(This plugin does not support propagateSizeHints\\(\\)|QStandardPaths: XDG_RUNTIME_DIR .*)\n"_s,
        QRegularExpression::MultilineOption);
    QCOMPARE(QString::fromLocal8Bit(program.readAllStandardError()).remove(expected), QString());
}

ADD_TEST_CLASS(tst_UpdateNetwork)
#include "tst_updatenetwork.moc"
