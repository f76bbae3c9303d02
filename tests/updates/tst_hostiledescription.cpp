#include "support/testmain.h"
#include "support/warnings.h"
#include "versiondescription.h"

#include <QElapsedTimer>
#include <QFile>
#include <QStringEncoder>
#include <QTemporaryDir>
#include <QTest>

namespace {

constexpr qsizetype mebibyte = 1024 * 1024;

/// A description of exactly @a size bytes, filled up inside its notes.
QByteArray descriptionOfSize(qsizetype size)
{
    const QByteArray head = "<d><version>3</version><notes>";
    const QByteArray tail = "</notes></d>";
    return head + QByteArray(size - head.size() - tail.size(), 'n') + tail;
}

/// @a levels elements, each inside the one before.
QByteArray nested(qsizetype levels)
{
    return QByteArray("<a>").repeated(levels) + QByteArray("</a>").repeated(levels);
}

/// A description with @a count attributes, all in one tag, each written as @a pattern with its number for %1.
QByteArray withAttributes(int count, const char *pattern)
{
    QByteArray tag;
    for (int i = 0; i < count; ++i)
        tag += QByteArray(pattern).replace("%1", QByteArray::number(i));
    return "<d" + tag + "><version>3</version></d>";
}

} // namespace

/// Descriptions made to exhaust the reader, and those at the edge of what it takes.
class tst_HostileDescription : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void readsUpToAMebibyte_data();
    void readsUpToAMebibyte();
    void reads256Levels_data();
    void reads256Levels();
    void countsLevelsNotElements();
    void reads5000Attributes_data();
    void reads5000Attributes();
    void readsAttributesInEveryEncoding_data();
    void readsAttributesInEveryEncoding();
    void countsDeclaredAttributesInEachElement_data();
    void countsDeclaredAttributesInEachElement();
    void refusesEntities_data();
    void refusesEntities();
    void neverReadsAnExternalEntity();
    void refusesAtOnce_data();
    void refusesAtOnce();
};

void tst_HostileDescription::readsUpToAMebibyte_data()
{
    QTest::addColumn<qsizetype>("size");
    QTest::addColumn<bool>("read");
    QTest::newRow("a byte less") << mebibyte - 1 << true;
    QTest::newRow("exactly") << mebibyte << true;
    QTest::newRow("a byte more") << mebibyte + 1 << false;
}

void tst_HostileDescription::readsUpToAMebibyte()
{
    QFETCH(const qsizetype, size);
    QFETCH(const bool, read);
    const QByteArray xml = descriptionOfSize(size);
    QCOMPARE(xml.size(), size);
    QCOMPARE(readVersionDescription(xml).has_value(), read);
}

void tst_HostileDescription::reads256Levels_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<int>("levels");
    QTest::addColumn<bool>("read");
    const QByteArray plain = "<d><version>3</version>";
    const QByteArray prefixed = "<p:d><q:r/><version>3</version>";
    // The root is the first level.
    QTest::newRow("255") << plain << 255 << true;
    QTest::newRow("256") << plain << 256 << true;
    QTest::newRow("257") << plain << 257 << false;
    QTest::newRow("256 after undeclared prefixes") << prefixed << 256 << true;
    QTest::newRow("257 after undeclared prefixes") << prefixed << 257 << false;
}

void tst_HostileDescription::reads256Levels()
{
    QFETCH(const QByteArray, before);
    QFETCH(const int, levels);
    QFETCH(const bool, read);
    const QByteArray end = before.startsWith("<p:") ? "</p:d>" : "</d>";
    const auto description = readVersionDescription(before + nested(levels - 1) + end);
    QCOMPARE(description.has_value(), read);
    if (read)
        QCOMPARE(description->version, QStringLiteral("3"));
}

void tst_HostileDescription::countsLevelsNotElements()
{
    const auto description =
        readVersionDescription("<d>" + QByteArray("<a><b/></a>").repeated(1000) + "<version>3</version></d>");
    QVERIFY(description);
    QCOMPARE(description->version, QStringLiteral("3"));
}

void tst_HostileDescription::reads5000Attributes_data()
{
    QTest::addColumn<QByteArray>("pattern");
    QTest::newRow("double quotes") << QByteArray(" a%1=\"\"");
    QTest::newRow("single quotes") << QByteArray(" a%1=''");
    QTest::newRow("blanks") << QByteArray(" a%1 = ''");
    QTest::newRow("line breaks") << QByteArray("\na%1\n=\r\n''");
}

void tst_HostileDescription::reads5000Attributes()
{
    QFETCH(const QByteArray, pattern);
    const auto description = readVersionDescription(withAttributes(5000, pattern.constData()));
    QVERIFY(description);
    QCOMPARE(description->version, QStringLiteral("3"));
    QVERIFY(!readVersionDescription(withAttributes(5001, pattern.constData())));
}

void tst_HostileDescription::readsAttributesInEveryEncoding_data()
{
    QTest::addColumn<QStringConverter::Encoding>("encoding");
    QTest::addColumn<QStringConverter::Flag>("mark");
    for (const auto encoding : {QStringConverter::Utf16LE, QStringConverter::Utf16BE}) {
        const char *const name = QStringConverter::nameForEncoding(encoding);
        QTest::addRow("%s with a mark", name) << encoding << QStringConverter::Flag::WriteBom;
        QTest::addRow("%s without a mark", name) << encoding << QStringConverter::Flag::Default;
    }
}

void tst_HostileDescription::readsAttributesInEveryEncoding()
{
    QFETCH(const QStringConverter::Encoding, encoding);
    QFETCH(const QStringConverter::Flag, mark);
    const auto encoded = [encoding, mark](int count) -> QByteArray {
        return QStringEncoder(encoding, mark)(QString::fromLatin1(withAttributes(count, " a%1=''")));
    };
    QVERIFY(readVersionDescription(encoded(5000)));
    QVERIFY(!readVersionDescription(encoded(5001)));
}

void tst_HostileDescription::countsDeclaredAttributesInEachElement_data()
{
    QTest::addColumn<int>("elements");
    QTest::addColumn<bool>("read");
    QTest::newRow("some") << 10 << true;
    QTest::newRow("many") << 1000 << false;
}

void tst_HostileDescription::countsDeclaredAttributesInEachElement()
{
    QFETCH(const int, elements);
    QFETCH(const bool, read);
    QByteArray declared;
    for (int i = 0; i < 100; ++i)
        declared += " a" + QByteArray::number(i) + " CDATA 'b'";
    const QByteArray xml = "<!DOCTYPE d [<!ATTLIST e" + declared + ">]><d><version>3</version>" +
                           QByteArray("<e/>").repeated(elements) + "</d>";
    QCOMPARE(readVersionDescription(xml).has_value(), read);
}

void tst_HostileDescription::refusesEntities_data()
{
    QTest::addColumn<QByteArray>("declarations");

    QTest::newRow("general") << QByteArray("<!ENTITY a '3'>");
    QTest::newRow("external, system") << QByteArray("<!ENTITY a SYSTEM 'file:///etc/hostname'>");
    QTest::newRow("external, public") << QByteArray("<!ENTITY a PUBLIC 'a' 'file:///etc/hostname'>");
    QTest::newRow("unparsed") << QByteArray("<!NOTATION n SYSTEM 'n'><!ENTITY a SYSTEM 'a' NDATA n>");
    QTest::newRow("parameter, unused") << QByteArray("<!ENTITY % a '<!ELEMENT d ANY>'>");
    QTest::newRow("parameter, used") << QByteArray("<!ENTITY % a '<!ELEMENT d ANY>'> %a;");
    QTest::newRow("parameter, external") << QByteArray("<!ENTITY % a SYSTEM 'file:///etc/hostname'> %a;");
    QTest::newRow("after a comment") << QByteArray("<!-- a comment --><!ENTITY a '3'>");
    QTest::newRow("after elements") << QByteArray("<!ELEMENT d ANY>\n<!ENTITY\na\n'3'>");
}

void tst_HostileDescription::refusesEntities()
{
    QFETCH(const QByteArray, declarations);
    // The document is well-formed and does not use what is declared.
    QVERIFY(!readVersionDescription("<!DOCTYPE d [" + declarations + "]><d><version>3</version></d>"));
}

void tst_HostileDescription::neverReadsAnExternalEntity()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("secret")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("9.9.9");
    file.close();
    const auto description =
        readVersionDescription("<!DOCTYPE d [<!ENTITY a SYSTEM 'file://" + file.fileName().toUtf8() +
                               "'>]><d><version>&a;</version></d>");
    QVERIFY(!description);
}

void tst_HostileDescription::refusesAtOnce_data()
{
    QTest::addColumn<QByteArray>("xml");

    QTest::newRow("100,000 levels") << "<d><version>3</version>" + nested(100'000) + "</d>";
    QTest::newRow("100,000 levels after undeclared prefixes")
        << "<p:d><q:r s:t=''/>" + nested(100'000) + "</p:d>";
    QTest::newRow("100,000 levels that never close") << QByteArray("<a>").repeated(100'000);
    QTest::newRow("an error, then 100,000 levels") << "<d>&undeclared;" + nested(100'000) + "</d>";
    QTest::newRow("50 MB") << descriptionOfSize(50'000'000);

    QByteArray bomb = "<!DOCTYPE d [<!ENTITY a0 'aaaaaaaaaa'>";
    for (int level = 1; level <= 12; ++level) {
        const QByteArray inner = "&a" + QByteArray::number(level - 1) + ";";
        bomb += "<!ENTITY a" + QByteArray::number(level) + " '" + inner.repeated(10) + "'>";
    }
    QTest::newRow("entities in entities") << bomb + "]><d><notes>&a12;</notes></d>";

    // Each use stays below what a parser allows a single entity to grow to.
    const QByteArray entity = "<!DOCTYPE d [<!ENTITY a '" + QByteArray(4000, 'a') + "'>]>";
    QTest::newRow("one entity in many places")
        << entity + "<d>" + QByteArray("<b>&a;</b>").repeated(90'000) + "</d>";
    QTest::newRow("one entity in many attributes")
        << entity + "<d>" + QByteArray("<b c='&a;'/>").repeated(80'000) + "</d>";
    QTest::newRow("one large entity in many places") << "<!DOCTYPE d [<!ENTITY a '" +
                                                            QByteArray(150'000, 'a') + "'>]><d>" +
                                                            QByteArray("&a;").repeated(50'000) + "</d>";
}

void tst_HostileDescription::refusesAtOnce()
{
    QFETCH(const QByteArray, xml);
    QElapsedTimer timer;
    timer.start();
    QVERIFY(!readVersionDescription(xml));
    // Far above what it takes, and far below what building such a document costs.
    QCOMPARE_LT(timer.elapsed(), 5000);
}

ADD_TEST_CLASS(tst_HostileDescription)
#include "tst_hostiledescription.moc"
