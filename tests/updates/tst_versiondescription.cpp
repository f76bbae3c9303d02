#include "support/testmain.h"
#include "support/warnings.h"
#include "versiondescription.h"

#include <QStringConverter>
#include <QTest>

/// What the program reads out of a published version description, and which version it takes for newer.
class tst_VersionDescription : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void readsTheThreeTexts();
    void takesTheFirstDirectChildOfAName_data();
    void takesTheFirstDirectChildOfAName();
    void takesTheTextOfAnElement_data();
    void takesTheTextOfAnElement();
    void keepsLineBreaksInTheNotes();
    void readsEveryUnicodeEncoding_data();
    void readsEveryUnicodeEncoding();
    void readsADeclaredEncoding();
    void readsADocumentTypeWithoutEntities_data();
    void readsADocumentTypeWithoutEntities();
    void refusesWhatIsNotWellFormed_data();
    void refusesWhatIsNotWellFormed();
    void comparesWithTheOwnVersion_data();
    void comparesWithTheOwnVersion();
};

void tst_VersionDescription::readsTheThreeTexts()
{
    const auto description =
        readVersionDescription("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                               "<corvalence>\n"
                               "  <version>2.3.0</version>\n"
                               "  <url_win>https://corvalence.example/windows</url_win>\n"
                               "  <url_lin>https://corvalence.example/linux?a=1&amp;b=2</url_lin>\n"
                               "  <url_mac>https://corvalence.example/mac</url_mac>\n"
                               "  <notes>Faster drawing.</notes>\n"
                               "</corvalence>\n");
    QVERIFY(description);
    QCOMPARE(description->version, QStringLiteral("2.3.0"));
    QCOMPARE(description->downloadUrl, QStringLiteral("https://corvalence.example/linux?a=1&b=2"));
    QCOMPARE(description->notes, QStringLiteral("Faster drawing."));
}

void tst_VersionDescription::takesTheFirstDirectChildOfAName_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<QString>("version");

    const auto row = [](const char *name, const char *xml, const char *version) {
        QTest::newRow(name) << QByteArray(xml) << QString::fromLatin1(version);
    };
    row("root of another name", "<anything><version>3</version></anything>", "3");
    row("root of the same name", "<version><version>3</version></version>", "3");
    row("the root itself is no child", "<version>3</version>", "");
    row("missing", "<d><notes>n</notes></d>", "");
    row("empty root", "<d/>", "");
    row("empty element", "<d><version/></d>", "");
    row("repeated", "<d><version>3</version><version>4</version></d>", "3");
    row("repeated, the first one empty", "<d><version/><version>4</version></d>", "");
    row("last of all", "<d><notes>n</notes><url_lin>u</url_lin><version>3</version></d>", "3");
    row("nested only", "<d><release><version>3</version></release></d>", "");
    row("nested before a direct child", "<d><release><version>9</version></release><version>3</version></d>",
        "3");
    row("other case", "<d><Version>9</Version><VERSION>8</VERSION></d>", "");
    row("longer name", "<d><version2>9</version2><version>3</version></d>", "3");
    row("in the default namespace", "<d xmlns=\"urn:d\"><version>3</version></d>", "3");
    row("in a namespace of its own", "<d><version xmlns=\"urn:v\">3</version></d>", "3");
    row("with a prefix", "<d xmlns:p=\"urn:p\"><p:version>9</p:version></d>", "");
    row("with a prefix before one without",
        "<d xmlns:p=\"urn:p\"><p:version>9</p:version><version>3</version></d>", "3");
    row("root with a prefix", "<p:d xmlns:p=\"urn:p\"><version>3</version></p:d>", "3");
    row("undeclared prefixes", "<p:d><q:notes>n</q:notes><version>3</version></p:d>", "3");
    row("in a comment", "<d><!-- <version>9</version> --><version>3</version></d>", "3");
    row("in a CDATA section", "<d><![CDATA[<version>9</version>]]><version>3</version></d>", "3");
    row("in a processing instruction", "<d><?x <version>9</version>?><version>3</version></d>", "3");
    row("among loose text", "<d>some<version>3</version>text</d>", "3");
    row("instructions and comments around the root",
        "<?style sheet?><!-- before --><d><version>3</version></d><!-- after --><?last one?>\n", "3");
}

void tst_VersionDescription::takesTheFirstDirectChildOfAName()
{
    QFETCH(const QByteArray, xml);
    QFETCH(const QString, version);
    const auto description = readVersionDescription(xml);
    QVERIFY(description);
    QCOMPARE(description->version, version);
}

void tst_VersionDescription::takesTheTextOfAnElement_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("text");

    const auto row = [](const char *name, const char *content, const char *text) {
        QTest::newRow(name) << QByteArray(content) << QString::fromUtf8(text);
    };
    row("plain", "2.3.0", "2.3.0");
    row("blanks around it", " 2.3.0 ", " 2.3.0 ");
    row("character references", "&#50;.&#x33;.0", "2.3.0");
    row("built-in entities", "&lt;b&gt;&amp;&quot;&apos;", "<b>&\"'");
    row("CDATA section", "<![CDATA[2.3.0]]>", "2.3.0");
    row("CDATA section between texts", "2.<![CDATA[3]]>.0", "2.3.0");
    row("markup in a CDATA section", "<![CDATA[<b>new</b> &amp;]]>", "<b>new</b> &amp;");
    row("entity declaration in a CDATA section", "<![CDATA[<!ENTITY a 'b'>]]>", "<!ENTITY a 'b'>");
    row("comment inside", "2.<!-- not this -->3.0", "2.3.0");
    row("entity declaration in a comment", "2.3.0<!-- <!ENTITY a 'b'> -->", "2.3.0");
    row("processing instruction inside", "2.<?not this?>3.0", "2.3.0");
    row("elements inside", "2.<b>3<i>.0</i></b>", "2.3.0");
    row("beyond ASCII", "Z\xC3\xA4hler \xE2\x80\x94 \xF0\x9F\x95\xB0", "Zähler — 🕰");
}

void tst_VersionDescription::takesTheTextOfAnElement()
{
    QFETCH(const QByteArray, content);
    QFETCH(const QString, text);
    const auto description = readVersionDescription("<d><version>" + content + "</version><url_lin>" +
                                                    content + "</url_lin><notes>" + content + "</notes></d>");
    QVERIFY(description);
    QCOMPARE(description->version, text);
    QCOMPARE(description->downloadUrl, text);
    QCOMPARE(description->notes, text);
}

void tst_VersionDescription::keepsLineBreaksInTheNotes()
{
    const auto description =
        readVersionDescription("<d><notes>First\n  second\r\n\nfourth &#10;end</notes></d>");
    QVERIFY(description);
    // XML itself makes one line feed of a carriage return and a line feed.
    QCOMPARE(description->notes, QStringLiteral("First\n  second\n\nfourth \nend"));
}

void tst_VersionDescription::readsEveryUnicodeEncoding_data()
{
    QTest::addColumn<QStringConverter::Encoding>("encoding");
    QTest::newRow("UTF-8") << QStringConverter::Utf8;
    QTest::newRow("UTF-16, low byte first") << QStringConverter::Utf16LE;
    QTest::newRow("UTF-16, high byte first") << QStringConverter::Utf16BE;
}

void tst_VersionDescription::readsEveryUnicodeEncoding()
{
    QFETCH(const QStringConverter::Encoding, encoding);
    QStringEncoder encoder(encoding, QStringConverter::Flag::WriteBom);
    const QByteArray xml = encoder(QStringLiteral("<d><version>3</version><notes>Zähler 🕰</notes></d>"));
    const auto description = readVersionDescription(xml);
    QVERIFY(description);
    QCOMPARE(description->version, QStringLiteral("3"));
    QCOMPARE(description->notes, QStringLiteral("Zähler 🕰"));
}

void tst_VersionDescription::readsADeclaredEncoding()
{
    const auto description = readVersionDescription("<?xml version='1.0' encoding='ISO-8859-1'?>"
                                                    "<d><notes>Z\xE4hler</notes></d>");
    QVERIFY(description);
    QCOMPARE(description->notes, QStringLiteral("Zähler"));
}

void tst_VersionDescription::readsADocumentTypeWithoutEntities_data()
{
    QTest::addColumn<QByteArray>("documentType");
    QTest::newRow("name only") << QByteArray("<!DOCTYPE d>");
    // Nothing is fetched for these: the address is not one that could be.
    QTest::newRow("system identifier") << QByteArray("<!DOCTYPE d SYSTEM \"https://corvalence.invalid/d\">");
    QTest::newRow("public identifier")
        << QByteArray("<!DOCTYPE d PUBLIC \"d\" \"https://corvalence.invalid/d\">");
    QTest::newRow("elements and attributes")
        << QByteArray("<!DOCTYPE d [<!ELEMENT d ANY><!ATTLIST d a CDATA 'b'>]>");
    QTest::newRow("entity declaration in a comment") << QByteArray("<!DOCTYPE d [<!-- <!ENTITY a 'b'> -->]>");
    QTest::newRow("entity declaration in a processing instruction")
        << QByteArray("<!DOCTYPE d [<?x <!ENTITY a 'b'> ?>]>");
}

void tst_VersionDescription::readsADocumentTypeWithoutEntities()
{
    QFETCH(const QByteArray, documentType);
    const auto description = readVersionDescription(documentType + "<d><version>3</version></d>");
    QVERIFY(description);
    QCOMPARE(description->version, QStringLiteral("3"));
}

void tst_VersionDescription::refusesWhatIsNotWellFormed_data()
{
    QTest::addColumn<QByteArray>("xml");

    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("blanks") << QByteArray(" \n\t ");
    QTest::newRow("text") << QByteArray("2.3.0");
    QTest::newRow("declaration only") << QByteArray("<?xml version=\"1.0\"?>");
    QTest::newRow("comment only") << QByteArray("<!-- <d/> -->");
    QTest::newRow("JSON") << QByteArray("{\"version\": \"2.3.0\"}");
    QTest::newRow("web page") << QByteArray("<!DOCTYPE html><html><body>Not found<br></body></html>");
    QTest::newRow("cut off in the root") << QByteArray("<d><version>2.3.0</version>");
    QTest::newRow("cut off in a tag") << QByteArray("<d><version>2.3.0</vers");
    QTest::newRow("cut off in an attribute") << QByteArray("<d a=");
    QTest::newRow("crossed tags") << QByteArray("<d><version>2.3.0</d></version>");
    QTest::newRow("two roots") << QByteArray("<d><version>2.3.0</version></d><d/>");
    QTest::newRow("text after the root") << QByteArray("<d><version>2.3.0</version></d>more");
    QTest::newRow("blank before the declaration")
        << QByteArray(" <?xml version=\"1.0\"?><d><version>2.3.0</version></d>");
    QTest::newRow("undeclared entity") << QByteArray("<d><version>&latest;</version></d>");
    QTest::newRow("bare ampersand") << QByteArray("<d><notes>faster & better</notes></d>");
    QTest::newRow("attribute without quotes") << QByteArray("<d a=b><version>2.3.0</version></d>");
    QTest::newRow("attribute twice") << QByteArray("<d a='1' a='2'><version>2.3.0</version></d>");
    QTest::newRow("not UTF-8") << QByteArray("<d><notes>\xFF\xFE\xFD</notes></d>");
    QTest::newRow("unknown encoding")
        << QByteArray("<?xml version='1.0' encoding='x-gauge'?><d><version>2.3.0</version></d>");
    QTest::newRow("a zero byte") << QByteArray("<d><version>2.3\0.0</version></d>", 32);
}

void tst_VersionDescription::refusesWhatIsNotWellFormed()
{
    QFETCH(const QByteArray, xml);
    QVERIFY(!readVersionDescription(xml));
}

void tst_VersionDescription::comparesWithTheOwnVersion_data()
{
    QTest::addColumn<QString>("published");
    QTest::addColumn<bool>("newer");

    const auto row = [](const char *published, bool newer) {
        QTest::newRow(published) << QString::fromLatin1(published) << newer;
    };
    row("2.2.0", false);
    row("2.2.1", true);
    row("2.3.0", true);
    row("2.10", true); // numbers, not text
    row("2.10.0", true);
    row("3", true);
    row("10", true);
    row("2.2.0.1", true);
    row("2.2.0.0", true); // a longer version follows the shorter one that it begins with
    row("2.2", false);
    row("2", false);
    row("2.1.9", false);
    row("1.99.99", false);
    row("0", false);
    row("", false);
    row("newest", false);
    row("v2.3.0", false);
    row(".3", false);
    row("2.2.0-beta", false); // what follows the numbers does not count
    row("2.3.0-beta", true);
    row("99999999999999999999", false); // no number that a version can hold
}

void tst_VersionDescription::comparesWithTheOwnVersion()
{
    QFETCH(const QString, published);
    QFETCH(const bool, newer);
    QCOMPARE(isNewerVersion(published, QStringLiteral("2.2.0")), newer);
}

ADD_TEST_CLASS(tst_VersionDescription)
#include "tst_versiondescription.moc"
