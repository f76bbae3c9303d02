#include "support/testmain.h"
#include "support/warnings.h"
#include "versiondescription.h"

#include <QElapsedTimer>
#include <QStringEncoder>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// A description of exactly @a size bytes.
QByteArray documentOfSize(qsizetype size)
{
    const QByteArray start = "<d><version>3</version><notes>";
    const QByteArray end = "</notes></d>";
    return start + QByteArray(size - start.size() - end.size(), 'n') + end;
}

/// Elements nested @a depth levels deep.
QByteArray nested(qsizetype depth)
{
    return QByteArray("<a>").repeated(depth) + QByteArray("</a>").repeated(depth);
}

/// An element with as many attributes as fit in the maximum size.
QByteArray manyAttributes()
{
    QByteArray xml = "<d";
    for (int i = 0; xml.size() < maxVersionDescriptionSize - 20; ++i)
        xml += " a" + QByteArray::number(i, 36) + "=''";
    return xml + "/>";
}

/// A document whose twelve entities each expand to ten of the previous one.
QByteArray nestedEntities()
{
    QByteArray xml = "<!DOCTYPE d [<!ENTITY a0 'aaaaaaaaaa'>";
    for (int i = 1; i <= 12; ++i) {
        xml += "<!ENTITY a" + QByteArray::number(i) + " '" +
               QByteArray("&a" + QByteArray::number(i - 1) + ";").repeated(10) + "'>";
    }
    return xml + "]><d>&a12;</d>";
}

} // namespace

/// Reading a published version description, also one that is made to take long, and comparing versions.
class tst_VersionDescription : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void readsTheThreeTexts();
    void readsTheVersion_data();
    void readsTheVersion();
    void readsOtherEncodings_data();
    void readsOtherEncodings();
    void rejectsUnsuitableXml_data();
    void rejectsUnsuitableXml();
    void readsUpToTheLimits_data();
    void readsUpToTheLimits();
    void takesLittleTime_data();
    void takesLittleTime();
    void comparesVersions_data();
    void comparesVersions();
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
                               "  <notes>Faster drawing.\n  Fewer errors. </notes>\n"
                               "</corvalence>\n");
    QVERIFY(description);
    QCOMPARE(description->version, u"2.3.0"_s);
    QCOMPARE(description->downloadUrl, u"https://corvalence.example/linux?a=1&b=2"_s);
    QCOMPARE(description->notes, u"Faster drawing.\n  Fewer errors. "_s);
}

void tst_VersionDescription::readsTheVersion_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<QString>("version");

    const auto row = [](const char *name, const QByteArray &xml, const QString &version) {
        QTest::newRow(name) << xml << version;
    };
    row("any root", "<version><version>3</version></version>", u"3"_s);
    row("root only", "<version>3</version>", {});
    row("missing", "<d><notes>n</notes></d>", {});
    row("twice", "<d><version/><version>4</version></d>", {});
    row("not a direct child", "<d><a><version>9</version></a><version>3</version></d>", u"3"_s);
    row("other names", "<d><Version>9</Version><version2>8</version2></d>", {});
    row("prefix", "<d xmlns:p='urn:p'><p:version>9</p:version><version>3</version></d>", u"3"_s);
    row("undeclared prefix", "<p:d><q:a/><version>3</version></p:d>", u"3"_s);
    row("references", "<d><version>&#50;&lt;&amp;</version></d>", u"2<&"_s);
    row("inner markup", "<d><version>2<!-- -->.<b>3</b><![CDATA[<c>]]></version></d>", u"2.3<c>"_s);
    row("document type", "<!DOCTYPE d><d><version>3</version></d>", u"3"_s);
    // The address of the external subset is not opened.
    row("external subset", "<!DOCTYPE d SYSTEM 'https://corvalence.invalid/d'><d><version>3</version></d>",
        u"3"_s);
}

void tst_VersionDescription::readsTheVersion()
{
    QFETCH(const QByteArray, xml);
    QFETCH(const QString, version);
    const auto description = readVersionDescription(xml);
    QVERIFY(description);
    QCOMPARE(description->version, version);
}

void tst_VersionDescription::readsOtherEncodings_data()
{
    QTest::addColumn<QByteArray>("xml");
    const QString xml = u"<d><notes>Zähler</notes></d>"_s;
    QStringEncoder utf16(QStringConverter::Utf16BE, QStringConverter::Flag::WriteBom);
    QTest::newRow("UTF-8") << xml.toUtf8();
    QTest::newRow("UTF-16") << QByteArray(utf16(xml));
    QTest::newRow("declared") << "<?xml version='1.0' encoding='ISO-8859-1'?>" + xml.toLatin1();
}

void tst_VersionDescription::readsOtherEncodings()
{
    QFETCH(const QByteArray, xml);
    const auto description = readVersionDescription(xml);
    QVERIFY(description);
    QCOMPARE(description->notes, u"Zähler"_s);
}

void tst_VersionDescription::rejectsUnsuitableXml_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("text") << QByteArray("2.3.0");
    QTest::newRow("web page") << QByteArray("<!DOCTYPE html><html><body>Not found<br></body></html>");
    QTest::newRow("cut off") << QByteArray("<d><version>2.3.0</version>");
    QTest::newRow("two roots") << QByteArray("<d><version>2.3.0</version></d><d/>");
    QTest::newRow("undeclared entity") << QByteArray("<d><version>&latest;</version></d>");
    QTest::newRow("not UTF-8") << QByteArray("<d><notes>\xFF\xFE\xFD</notes></d>");
    // Well-formed, but an internal subset is not accepted.
    QTest::newRow("empty subset") << QByteArray("<!DOCTYPE d []><d/>");
    QTest::newRow("attributes") << QByteArray("<!DOCTYPE d [<!ATTLIST d a CDATA 'b'>]><d/>");
    QTest::newRow("entity") << QByteArray("<!DOCTYPE d [<!ENTITY a SYSTEM 'file:///etc/hostname'>]><d/>");
}

void tst_VersionDescription::rejectsUnsuitableXml()
{
    QFETCH(const QByteArray, xml);
    QVERIFY(!readVersionDescription(xml));
}

void tst_VersionDescription::readsUpToTheLimits_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<bool>("isRead");
    QTest::newRow("max size") << documentOfSize(maxVersionDescriptionSize) << true;
    QTest::newRow("one byte more") << documentOfSize(maxVersionDescriptionSize + 1) << false;
    QTest::newRow("256 levels") << nested(256) << true;
    QTest::newRow("257 levels") << nested(257) << false;
    QTest::newRow("1000 elements side by side") << "<d>" + nested(2).repeated(1000) + "</d>" << true;
    // An undeclared prefix is not an error, so the depth is checked behind it.
    QTest::newRow("257 levels after an undeclared prefix") << "<d><p:e/>" + nested(256) + "</d>" << false;
}

void tst_VersionDescription::readsUpToTheLimits()
{
    QFETCH(const QByteArray, xml);
    QFETCH(const bool, isRead);
    QCOMPARE(readVersionDescription(xml).has_value(), isRead);
}

void tst_VersionDescription::takesLittleTime_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::newRow("attributes") << manyAttributes();
    QTest::newRow("elements") << "<d>" + QByteArray("<a b=''/>").repeated(6500) + "</d>";
    QTest::newRow("100,000 levels") << nested(100'000);
    QTest::newRow("entities") << nestedEntities();
}

void tst_VersionDescription::takesLittleTime()
{
    QFETCH(const QByteArray, xml);
    QElapsedTimer timer;
    timer.start();
    (void)readVersionDescription(xml);
    QCOMPARE_LT(timer.elapsed(), 10'000); // 20 times the measured time, for slow and busy machines
}

void tst_VersionDescription::comparesVersions_data()
{
    QTest::addColumn<bool>("isNewer");
    for (const char *version : {"2.2.1", "2.3.0", "2.10", "3", "2.2.0.0", "2.3.0-beta"})
        QTest::newRow(version) << true;
    // The number of the last one is too large for a version.
    for (const char *version : {"2.2.0", "2.2", "2.1.9", "1.99.99", "", "newest", "v2.3.0", ".3",
                                "2.2.0-beta", "99999999999999999999"})
        QTest::newRow(version) << false;
}

void tst_VersionDescription::comparesVersions()
{
    QFETCH(const bool, isNewer);
    QCOMPARE(isNewerVersion(QString::fromLatin1(QTest::currentDataTag()), u"2.2.0"_s), isNewer);
}

ADD_TEST_CLASS(tst_VersionDescription)
#include "tst_versiondescription.moc"
