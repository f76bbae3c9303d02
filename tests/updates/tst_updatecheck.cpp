#include "projectinfo.h"
#include "support/network.h"
#include "support/testmain.h"
#include "support/translator.h"
#include "support/warnings.h"
#include "updates.h"
#include "window.h"

#include <QDesktopServices>
#include <QLabel>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>

#include <functional>
#include <memory>
#include <optional>

using namespace Qt::StringLiterals;

using CloseBox = std::function<void(QMessageBox &)>;

namespace {

/// Finishes a window's outstanding checks with this reply.
void finish(const Window &window, QNetworkReply *reply)
{
    Q_EMIT networkOf(window)->finished(reply);
}

} // namespace

/// The messages of the update check, and the offer of a newer version. The replies do not come from the
/// network.
class tst_UpdateCheck : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void open(const QUrl &url) { m_opened.append(url); }

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanupTestCase();

    void reportsOnlyWhenAsked_data();
    void reportsOnlyWhenAsked();
    void offersANewerVersionAtStartAndWhenAsked();
    void firstOfTwoRepliesIsTheManualOne_data();
    void firstOfTwoRepliesIsTheManualOne();
    void nextCheckIsAutomaticWhileAMessageIsShown();
    void offerShowsPlainText_data();
    void offerShowsPlainText();
    void buttonsOpenAddresses_data();
    void buttonsOpenAddresses();
    void windowCanBeDestroyedWhileTheOfferIsShown();
    void replyCanBeDestroyedWhileTheOfferIsShown();

private:
    std::optional<SilentProxy> m_proxy;
    std::optional<BracketTranslator> m_translator;
    QList<QUrl> m_opened;
};

void tst_UpdateCheck::initTestCase()
{
    m_proxy.emplace();
    // The messages are not translated, so no test shows an effect.
    m_translator.emplace("Window");
    for (const auto scheme : {"https"_L1, "http"_L1, "file"_L1, "javascript"_L1})
        QDesktopServices::setUrlHandler(scheme, this, "open");
}

void tst_UpdateCheck::init()
{
    failOnUnexpectedWarnings();
    m_opened.clear();
}

void tst_UpdateCheck::cleanupTestCase()
{
    for (const auto scheme : {"https"_L1, "http"_L1, "file"_L1, "javascript"_L1})
        QDesktopServices::unsetUrlHandler(scheme);
    m_translator.reset();
    m_proxy.reset();
}

void tst_UpdateCheck::reportsOnlyWhenAsked_data()
{
    using MakeReply = std::function<QNetworkReply *()>;
    QTest::addColumn<MakeReply>("makeReply");
    QTest::addColumn<QMessageBox::Icon>("icon");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("text");

    const auto failure = [](const char *name, QNetworkReply::NetworkError error, const QString &errorString,
                            const QString &text) {
        QTest::newRow(name) << MakeReply([=] { return new FakeReply(error, errorString); })
                            << QMessageBox::Warning << u"Update Check Failed"_s << text;
    };
    failure("timeout", QNetworkReply::TimeoutError, u"Socket operation timed out"_s,
            u"Request timed out. Please check your internet connection."_s);
    failure("refused", QNetworkReply::ConnectionRefusedError, u"Connection refused"_s,
            u"Could not check for updates:\nConnection refused"_s);
    failure("cancelled", QNetworkReply::OperationCanceledError, u"Operation canceled"_s,
            u"Could not check for updates:\nOperation canceled"_s);
    failure("placeholders and markup", QNetworkReply::UnknownServerError, u"%1 <b>&amp;</b>"_s,
            u"Could not check for updates:\n%1 <b>&amp;</b>"_s);

    const auto invalid = [](const char *name, const QByteArray &body) {
        QTest::newRow(name) << MakeReply([=] { return new FakeReply(body); }) << QMessageBox::Warning
                            << u"Version info Invalid"_s
                            << u"Could not check for updates:\nVersion info invalid, contact Author."_s;
    };
    invalid("empty", {});
    invalid("cut off", describe(u"3"_s).chopped(1));
    invalid("too large", describe(u"3"_s, QString(100'000, u'n')));

    const auto notNewer = [](const char *name, const QByteArray &body) {
        QTest::newRow(name) << MakeReply([=] { return new FakeReply(body); }) << QMessageBox::Information
                            << u"No Update Available"_s
                            << u"Corvalence 2.2.0 is up to date.\n\nThank you for using Corvalence!"_s;
    };
    notNewer("equal", describe(u"2.2.0"_s));
    notNewer("two segments", describe(u"2.2"_s));
    notNewer("not a version", describe(u"newest"_s));
    notNewer("no version", "<d><notes>3</notes></d>");
}

void tst_UpdateCheck::reportsOnlyWhenAsked()
{
    QFETCH(const std::function<QNetworkReply *()>, makeReply);
    QFETCH(const QMessageBox::Icon, icon);
    QFETCH(const QString, title);
    QFETCH(const QString, text);
    const Window window;
    DialogAnswers answers;
    const QPointer<QNetworkReply> automatic = makeReply();
    finish(window, automatic);
    QVERIFY(automatic); // not deleted at once: the sender of the signal may still use it
    QCOMPARE(answers.problems(), QStringList());

    answers.expectMessage(&window, icon, title, text);
    pressCheckForUpdates(window);
    const QPointer<QNetworkReply> manual = makeReply();
    finish(window, manual);
    QCOMPARE(answers.problems(), QStringList());

    QVERIFY(manual);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!automatic && !manual);
}

void tst_UpdateCheck::offersANewerVersionAtStartAndWhenAsked()
{
    const Window window;
    for (int check = 1; check <= 2; ++check) {
        DialogAnswers answers;
        expectOffer(answers, [&](QMessageBox &box) {
            QCOMPARE(box.parentWidget(), &window);
            QVERIFY(box.isModal());
            QCOMPARE(box.icon(), QMessageBox::Information);
            QCOMPARE(box.text(), u"A new version (2.10) is available!\n\nFaster.\n  Smaller."_s);
            const QList<QAbstractButton *> buttons = box.buttons();
            QCOMPARE(buttons.size(), 3);
            QCOMPARE(buttons.at(0)->text(), u"Download"_s);
            QCOMPARE(box.buttonRole(buttons.at(0)), QMessageBox::AcceptRole);
            QCOMPARE(buttons.at(1)->text(), u"Visit Site"_s);
            QCOMPARE(box.buttonRole(buttons.at(1)), QMessageBox::AcceptRole);
            QCOMPARE(box.standardButton(buttons.at(2)), QMessageBox::Close);
            QCOMPARE(box.defaultButton(), nullptr);
            box.reject();
        });
        finish(window, new FakeReply(describe(u"2.10"_s, u"Faster.\n  Smaller."_s)));
        QCOMPARE(answers.problems(), QStringList());
        pressCheckForUpdates(window);
    }
}

void tst_UpdateCheck::firstOfTwoRepliesIsTheManualOne_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("title");
    QTest::newRow("newer") << describe(u"3"_s) << u"Update Available"_s;
    QTest::newRow("equal") << describe(u"2.2.0"_s) << u"No Update Available"_s;
    QTest::newRow("invalid") << QByteArray("no XML") << u"Version info Invalid"_s;
}

void tst_UpdateCheck::firstOfTwoRepliesIsTheManualOne()
{
    QFETCH(const QByteArray, body);
    QFETCH(const QString, title);
    const Window window;
    pressCheckForUpdates(window); // while the automatic check is outstanding
    DialogAnswers answers;
    answers.expect<QMessageBox>([title](QMessageBox &box) {
        QCOMPARE(box.windowTitle(), title);
        box.reject();
    });
    finish(window, new FakeReply(body));
    QCOMPARE(answers.problems(), QStringList());

    // The second reply has no handler, so it is not deleted either.
    const auto second = std::make_unique<FakeReply>(describe(u"3"_s));
    finish(window, second.get());
    QVERIFY(second->bytesAvailable() > 0);
    QCOMPARE(answers.problems(), QStringList());
}

void tst_UpdateCheck::nextCheckIsAutomaticWhileAMessageIsShown()
{
    Window window;
    finish(window, new FakeReply(describe(u"2.2.0"_s)));
    pressCheckForUpdates(window);
    DialogAnswers answers;
    answers.expect<QMessageBox>([&window](QMessageBox &box) {
        QVERIFY(QMetaObject::invokeMethod(&window, "onUpdateCheckFinished",
                                          Q_ARG(QNetworkReply *, new FakeReply(QByteArray()))));
        box.accept();
    });
    finish(window, new FakeReply(describe(u"2.2.0"_s)));
    QCOMPARE(answers.problems(), QStringList());
}

void tst_UpdateCheck::offerShowsPlainText_data()
{
    QTest::addColumn<QString>("version");
    QTest::addColumn<QString>("notes");
    QTest::newRow("markup") << u"3<b>!</b>"_s << u"<img src=\"file:///picture.png\"> &lt;"_s;
    QTest::newRow("placeholders") << u"3%2"_s << u"%1 %2 %3"_s;
}

void tst_UpdateCheck::offerShowsPlainText()
{
    QFETCH(const QString, version);
    QFETCH(const QString, notes);
    const Window window;
    DialogAnswers answers;
    expectOffer(answers, [&](QMessageBox &box) {
        const auto *label = box.findChild<QLabel *>(u"qt_msgbox_label"_s);
        QCOMPARE(label->textFormat(), Qt::PlainText);
        QCOMPARE(label->text(), "A new version ("_L1 + version + ") is available!\n\n"_L1 + notes);
        box.reject();
    });
    finish(window, new FakeReply(describe(version, notes)));
    QCOMPARE(answers.problems(), QStringList());
}

void tst_UpdateCheck::buttonsOpenAddresses_data()
{
    QTest::addColumn<CloseBox>("close");
    QTest::addColumn<QString>("published");
    QTest::addColumn<QString>("opened");
    const CloseBox download([](QMessageBox &box) { box.buttons().at(0)->click(); });
    // The published address is not checked: HTTPS has shown who published it.
    for (const auto &published :
         {u"https://corvalence.example/d?a=1&b=%20x#lin"_s, u"http://corvalence.example/the newest zähler"_s,
          u"file:///usr/bin/true"_s, u"javascript:alert(1)"_s, QString()})
        QTest::addRow("Download: %s", qPrintable(published)) << download << published << published;

    const QString published = u"https://corvalence.example/download"_s;
    QTest::newRow("Visit Site") << CloseBox([](QMessageBox &box) { box.buttons().at(1)->click(); })
                                << published << projectInfo::webPageUrl.toString();
    QTest::newRow("Close") << CloseBox([](QMessageBox &box) { box.button(QMessageBox::Close)->click(); })
                           << published << QString();
    QTest::newRow("Escape") << CloseBox([](QMessageBox &box) { QTest::keyClick(&box, Qt::Key_Escape); })
                            << published << QString();
    QTest::newRow("title bar") << CloseBox([](QMessageBox &box) { box.close(); }) << published << QString();
}

void tst_UpdateCheck::buttonsOpenAddresses()
{
    QFETCH(const CloseBox, close);
    QFETCH(const QString, published);
    QFETCH(const QString, opened);
    const Window window;
    DialogAnswers answers;
    expectOffer(answers, close);
    finish(window, new FakeReply(describe(u"3"_s, {}, published)));
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(m_opened, opened.isEmpty() ? QList<QUrl>() : QList{QUrl(opened, QUrl::TolerantMode)});
}

void tst_UpdateCheck::windowCanBeDestroyedWhileTheOfferIsShown()
{
    auto window = std::make_unique<Window>();
    const QPointer<FakeReply> reply = new FakeReply(describe(u"3"_s));
    DialogAnswers answers;
    expectOffer(answers, [&window](QMessageBox &) { window.reset(); });
    // Not finish(): the sender of the signal is destroyed with the window.
    QVERIFY(QMetaObject::invokeMethod(window.get(), "onUpdateCheckFinished",
                                      Q_ARG(QNetworkReply *, reply.data())));
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(m_opened, QList<QUrl>());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!reply);
}

void tst_UpdateCheck::replyCanBeDestroyedWhileTheOfferIsShown()
{
    const Window window;
    const QPointer<FakeReply> reply = new FakeReply(describe(u"3"_s));
    DialogAnswers answers;
    expectOffer(answers, [reply](QMessageBox &box) {
        delete reply;
        box.reject();
    });
    finish(window, reply);
    QCOMPARE(answers.problems(), QStringList());
}

ADD_TEST_CLASS(tst_UpdateCheck)
#include "tst_updatecheck.moc"
