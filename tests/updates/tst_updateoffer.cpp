#include "fakereply.h"
#include "projectinfo.h"
#include "support/dialogs.h"
#include "support/network.h"
#include "support/testmain.h"
#include "support/warnings.h"
#include "updates.h"
#include "window.h"

#include <QDesktopServices>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include <array>
#include <functional>
#include <optional>

namespace {

/// The schemes that the desktop would open something for.
constexpr std::array schemes{"https", "http", "ftp", "file", "smb", "javascript", "mailto"};

} // namespace

/// The offer of a newer version: how it looks, and where its buttons lead.
class tst_UpdateOffer : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void open(const QUrl &url) { m_opened.append(url); }

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanupTestCase();

    void showsVersionAndNotes();
    void hasItsButtonsInOrder();
    void showsWhatCameFromOutsideAsPlainText_data();
    void showsWhatCameFromOutsideAsPlainText();
    void downloadOpensThePublishedAddress_data();
    void downloadOpensThePublishedAddress();
    void downloadOpensNothingWhenNoAddressIsPublished();
    void visitSiteOpensTheProjectsPage();
    void closingOpensNothing_data();
    void closingOpensNothing();
    void survivesTheWindowClosingUnderIt();
    void survivesTheWindowGoingUnderIt();
    void survivesTheAnswerGoingUnderIt();

private:
    static void answer(Window &window, QNetworkReply *reply);

    std::optional<SilentProxy> m_proxy;
    QList<QUrl> m_opened;
};

void tst_UpdateOffer::initTestCase()
{
    m_proxy.emplace();
    for (const char *scheme : schemes)
        QDesktopServices::setUrlHandler(QLatin1String(scheme), this, "open");
}

void tst_UpdateOffer::init()
{
    failOnUnexpectedWarnings();
    m_opened.clear();
}

void tst_UpdateOffer::cleanupTestCase()
{
    for (const char *scheme : schemes)
        QDesktopServices::unsetUrlHandler(QLatin1String(scheme));
    m_proxy.reset();
}

void tst_UpdateOffer::answer(Window &window, QNetworkReply *reply)
{
    QVERIFY(QMetaObject::invokeMethod(&window, "onUpdateCheckFinished", Qt::DirectConnection,
                                      Q_ARG(QNetworkReply *, reply)));
}

void tst_UpdateOffer::showsVersionAndNotes()
{
    Window window;
    DialogAnswers answers;
    answers.expect<QMessageBox>([&window](QMessageBox &box) {
        QCOMPARE(box.parentWidget(), &window);
        QVERIFY(box.isModal());
        QCOMPARE(box.windowTitle(), QStringLiteral("Update Available"));
        QCOMPARE(box.icon(), QMessageBox::Information);
        QCOMPARE(box.text(), QStringLiteral("A new version (2.10) is available!\n\nFaster.\n  Smaller."));
        QCOMPARE(box.informativeText(), QString());
        QCOMPARE(box.detailedText(), QString());
        box.reject();
    });
    answer(window, new FakeReply(describe(QStringLiteral("2.10"), QStringLiteral("Faster.\n  Smaller."))));
    QCOMPARE(answers.problems(), QStringList());
}

void tst_UpdateOffer::hasItsButtonsInOrder()
{
    Window window;
    DialogAnswers answers;
    answers.expect<QMessageBox>([](QMessageBox &box) {
        const QList<QAbstractButton *> buttons = box.buttons();
        QCOMPARE(buttons.size(), 3);
        QCOMPARE(buttons.at(0)->text(), QStringLiteral("Download"));
        QCOMPARE(box.buttonRole(buttons.at(0)), QMessageBox::AcceptRole);
        QCOMPARE(buttons.at(1)->text(), QStringLiteral("Visit Site"));
        QCOMPARE(box.buttonRole(buttons.at(1)), QMessageBox::AcceptRole);
        QCOMPARE(box.standardButton(buttons.at(2)), QMessageBox::Close);
        QCOMPARE(box.defaultButton(), nullptr);
        box.reject();
    });
    answer(window, new FakeReply(describe(QStringLiteral("3"))));
    QCOMPARE(answers.problems(), QStringList());
}

void tst_UpdateOffer::showsWhatCameFromOutsideAsPlainText_data()
{
    QTest::addColumn<QString>("version");
    QTest::addColumn<QString>("notes");
    QTest::newRow("markup in the notes")
        << QStringLiteral("3")
        << QStringLiteral("<b>Bold</b> <a href=\"https://corvalence.example\">link</a>");
    QTest::newRow("a whole page") << QStringLiteral("3")
                                  << QStringLiteral("<html><body><h1>New</h1></body></html>");
    QTest::newRow("a picture of this machine")
        << QStringLiteral("3") << QStringLiteral("<img src=\"file:///usr/share/pixmaps/picture.png\">");
    QTest::newRow("markup in the version") << QStringLiteral("3<b>!</b><br>") << QStringLiteral("");
    QTest::newRow("a picture in the version")
        << QStringLiteral("3<img src=\":/picture.png\">") << QStringLiteral("");
    QTest::newRow("character references") << QStringLiteral("3") << QStringLiteral("&lt;b&gt; &amp;");
    QTest::newRow("a place in the version") << QStringLiteral("3%2") << QStringLiteral("notes");
    QTest::newRow("places in the notes") << QStringLiteral("3") << QStringLiteral("%1 %2 %3");
}

void tst_UpdateOffer::showsWhatCameFromOutsideAsPlainText()
{
    QFETCH(const QString, version);
    QFETCH(const QString, notes);
    const QString text =
        QLatin1String("A new version (") + version + QLatin1String(") is available!\n\n") + notes;
    Window window;
    DialogAnswers answers;
    answers.expect<QMessageBox>([text](QMessageBox &box) {
        QCOMPARE(box.text(), text);
        const auto *label = box.findChild<QLabel *>(QStringLiteral("qt_msgbox_label"));
        QVERIFY(label != nullptr);
        QCOMPARE(label->textFormat(), Qt::PlainText);
        QCOMPARE(label->text(), text);
        box.reject();
    });
    answer(window, new FakeReply(describe(version, notes)));
    QCOMPARE(answers.problems(), QStringList());
}

void tst_UpdateOffer::downloadOpensThePublishedAddress_data()
{
    QTest::addColumn<QString>("published");
    const auto row = [](const char *name, const char *address) {
        QTest::newRow(name) << QString::fromUtf8(address);
    };
    row("https", "https://corvalence.example/downloads/corvalence-3.tar.gz");
    row("query and fragment", "https://corvalence.example/d?a=1&b=%20x#lin");
    row("another host and port", "https://mirror.example:8443/corvalence");
    row("a blank in the path", "https://corvalence.example/the newest");
    row("beyond ASCII", "https://corvalence.example/zähler");
    row("http", "http://corvalence.example/d");
    // The address is opened as published, whatever it is; who published it was told by HTTPS.
    row("file", "file:///usr/bin/true");
    row("share", "smb://corvalence.example/share");
    row("script", "javascript:alert(1)");
}

void tst_UpdateOffer::downloadOpensThePublishedAddress()
{
    QFETCH(const QString, published);
    Window window;
    DialogAnswers answers;
    answers.expect<QMessageBox>([](QMessageBox &box) { box.buttons().at(0)->click(); });
    answer(window, new FakeReply(describe(QStringLiteral("3"), QString(), published)));
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(m_opened, QList<QUrl>({QUrl(published, QUrl::TolerantMode)}));
}

void tst_UpdateOffer::downloadOpensNothingWhenNoAddressIsPublished()
{
    Window window;
    DialogAnswers answers;
    answers.expect<QMessageBox>([](QMessageBox &box) { box.buttons().at(0)->click(); });
    answer(window,
           new FakeReply("<d><version>3</version><url_win>https://corvalence.example/windows</url_win></d>"));
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(m_opened, QList<QUrl>());
}

void tst_UpdateOffer::visitSiteOpensTheProjectsPage()
{
    Window window;
    DialogAnswers answers;
    answers.expect<QMessageBox>([](QMessageBox &box) { box.buttons().at(1)->click(); });
    answer(window, new FakeReply(describe(QStringLiteral("3"), QString(),
                                          QStringLiteral("https://corvalence.example/download"))));
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(m_opened, QList<QUrl>({QUrl(projectInfo::webPageUrl.toString())}));
    QCOMPARE(m_opened.first().scheme(), QStringLiteral("https"));
}

void tst_UpdateOffer::closingOpensNothing_data()
{
    QTest::addColumn<std::function<void(QMessageBox &)>>("close");
    QTest::newRow("Close") << std::function(
        [](QMessageBox &box) { box.button(QMessageBox::Close)->click(); });
    QTest::newRow("Escape") << std::function([](QMessageBox &box) { QTest::keyClick(&box, Qt::Key_Escape); });
    QTest::newRow("the box's own frame") << std::function([](QMessageBox &box) { box.close(); });
}

void tst_UpdateOffer::closingOpensNothing()
{
    QFETCH(const std::function<void(QMessageBox &)>, close);
    Window window;
    DialogAnswers answers;
    answers.expect<QMessageBox>(close);
    answer(window, new FakeReply(describe(QStringLiteral("3"), QString(),
                                          QStringLiteral("https://corvalence.example/download"))));
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(m_opened, QList<QUrl>());
}

void tst_UpdateOffer::survivesTheWindowClosingUnderIt()
{
    Window window;
    window.show();
    DialogAnswers answers;
    answers.expect<QMessageBox>([&window](QMessageBox &box) {
        window.close();
        box.buttons().at(0)->click();
    });
    answer(window, new FakeReply(describe(QStringLiteral("3"), QString(),
                                          QStringLiteral("https://corvalence.example/download"))));
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(m_opened.size(), 1);
}

void tst_UpdateOffer::survivesTheWindowGoingUnderIt()
{
    auto *window = new Window;
    auto *reply = new FakeReply(describe(QStringLiteral("3")));
    const QSignalSpy destroyed(reply, &QObject::destroyed);
    DialogAnswers answers;
    answers.expect<QMessageBox>([window](QMessageBox &) { delete window; });
    answer(*window, reply);
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(m_opened, QList<QUrl>());
    QCoreApplication::sendPostedEvents(reply, QEvent::DeferredDelete);
    QCOMPARE(destroyed.size(), 1);
}

void tst_UpdateOffer::survivesTheAnswerGoingUnderIt()
{
    Window window;
    const QPointer<FakeReply> reply = new FakeReply(describe(QStringLiteral("3")));
    DialogAnswers answers;
    answers.expect<QMessageBox>([reply](QMessageBox &box) {
        delete reply;
        box.reject();
    });
    answer(window, reply);
    QCOMPARE(answers.problems(), QStringList());
}

ADD_TEST_CLASS(tst_UpdateOffer)
#include "tst_updateoffer.moc"
