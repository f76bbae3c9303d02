#include "model/gaugedata.h"
#include "support/records.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QLocale>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QTest>

#include <limits>

/// The comma-separated form of earlier versions.
class tst_GaugeText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void defaultRecordIsWrittenInFull();
    void defaultRecordComesBack();
    void otherValuesComeBack();
    void everyFieldIsWrittenInItsPlace_data();
    void everyFieldIsWrittenInItsPlace();
    void everyFieldIsReadFromItsPlace_data();
    void everyFieldIsReadFromItsPlace();
    void skipFirstStandsBeforeRotate();
    void numbersAreWrittenWithSixDigits_data();
    void numbersAreWrittenWithSixDigits();
    void numbersAreReadExactly();
    void numbersDoNotFollowTheLocale();
    void colorsAreWrittenWithoutAlpha();
    void percentSignsOfTheFamilyAreFilledIn_data();
    void percentSignsOfTheFamilyAreFilledIn();

    void oddFieldIsReadByItsKind_data();
    void oddFieldIsReadByItsKind();
    void fewerThanFiftyFieldsChangeNothing_data();
    void fewerThanFiftyFieldsChangeNothing();
    void fiftyEmptyFieldsAreAccepted();
};

namespace {

const auto comma = QLatin1Char(',');

/// A default record as the fields 0 to 47 of the older form.
QStringList fixedFields()
{
    QStringList fields(48);
    for (const GaugeField &field : gaugeFields()) {
        if (field.position >= 0)
            fields[field.position] = field.initialText;
    }
    return fields;
}

QStringList defaultFont()
{
    return QFont(QStringLiteral("Sans Serif"), 10).toString().split(comma);
}

gaugeData readInto(gaugeData data, const QString &text)
{
    if (!data.fromQString(text))
        qFatal("refused: %s", qUtf8Printable(text));
    return data;
}

qsizetype placeOf(const GaugeField &field, const QStringList &fields)
{
    return field.position == GaugeField::lastPosition ? fields.size() - 1 : field.position;
}

void addPlacedFieldRows()
{
    QTest::addColumn<GaugeField>("field");
    for (const GaugeField &field : gaugeFields()) {
        if (field.position != GaugeField::insideFont)
            QTest::newRow(field.name.constData()) << field;
    }
}

} // namespace

void tst_GaugeText::defaultRecordIsWrittenInFull()
{
    QCOMPARE(gaugeData().toQString(),
             QStringLiteral("0,120,0.5,0,0,4,1,1,0.8,0.9,0.95,1,1,1,0,0,0,"
                            "#ffffff,#ffffff,#ffffff,0,0,0,0,0,120,0,0,0,1,1,1,"
                            "1,0,0,0,0,#00ff00,#ffff00,#ff0000,#ffffff,1,0,1,0,0.74,0,0,") +
                 QFont(QStringLiteral("Sans Serif"), 10).toString() + QStringLiteral(",#ffffff"));
}

void tst_GaugeText::defaultRecordComesBack()
{
    const gaugeData data = readInto(sampleLayer(), gaugeData().toQString());
    QVERIFY(data.isDefault());
    QCOMPARE(valuesOf(data), valuesOf(gaugeData()));
}

void tst_GaugeText::otherValuesComeBack()
{
    QCOMPARE(valuesOf(readInto(gaugeData(), sampleLayer().toQString())), valuesOf(sampleLayer()));
}

void tst_GaugeText::everyFieldIsWrittenInItsPlace_data()
{
    addPlacedFieldRows();
}

void tst_GaugeText::everyFieldIsWrittenInItsPlace()
{
    QFETCH(const GaugeField, field);
    QStringList expected = fixedFields() + defaultFont() + QStringList(QStringLiteral("#ffffff"));
    expected[placeOf(field, expected)] = field.otherText;
    gaugeData data;
    field.set(data, field.other);
    QCOMPARE(data.toQString().split(comma), expected);
}

void tst_GaugeText::everyFieldIsReadFromItsPlace_data()
{
    addPlacedFieldRows();
}

void tst_GaugeText::everyFieldIsReadFromItsPlace()
{
    QFETCH(const GaugeField, field);
    QStringList fields = fixedFields() + defaultFont() + QStringList(QStringLiteral("#ffffff"));
    fields[placeOf(field, fields)] = field.otherText;
    gaugeData expected;
    field.set(expected, field.other);
    QCOMPARE(valuesOf(readInto(gaugeData(), fields.join(comma))), valuesOf(expected));
}

void tst_GaugeText::skipFirstStandsBeforeRotate()
{
    QStringList fields = fixedFields() + defaultFont() + QStringList(QStringLiteral("#ffffff"));
    fields[46] = QStringLiteral("1");
    fields[47] = QStringLiteral("0");
    const gaugeData data = readInto(gaugeData(), fields.join(comma));
    QVERIFY(data.tickCountSkipFirst);
    QVERIFY(!data.tickCountRotate);
    QCOMPARE(data.toQString().split(comma), fields);
}

void tst_GaugeText::numbersAreWrittenWithSixDigits_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("written");
    QTest::addColumn<double>("comesBackAs");
    QTest::newRow("whole") << 120.0 << QStringLiteral("120") << 120.0;
    QTest::newRow("short") << 0.8 << QStringLiteral("0.8") << 0.8;
    QTest::newRow("nine digits") << 0.123456789 << QStringLiteral("0.123457") << 0.123457;
    QTest::newRow("six digits") << 123456.0 << QStringLiteral("123456") << 123456.0;
    QTest::newRow("seven digits") << 1234567.0 << QStringLiteral("1.23457e+06") << 1234570.0;
    QTest::newRow("small") << 0.00001 << QStringLiteral("1e-05") << 0.00001;
    QTest::newRow("negative") << -359.9999999 << QStringLiteral("-360") << -360.0;
    QTest::newRow("enormous") << 1.5e300 << QStringLiteral("1.5e+300") << 1.5e300;
}

void tst_GaugeText::numbersAreWrittenWithSixDigits()
{
    QFETCH(const double, value);
    QFETCH(const QString, written);
    QFETCH(const double, comesBackAs);
    for (const GaugeField &field : gaugeFields()) {
        if (field.kind != GaugeField::Number)
            continue;
        gaugeData data;
        field.set(data, value);
        const QString text = data.toQString();
        QCOMPARE(text.split(comma).at(field.position), written);
        QCOMPARE(field.get(readInto(gaugeData(), text)), QVariant(comesBackAs));
    }
}

void tst_GaugeText::numbersAreReadExactly()
{
    for (const GaugeField &field : gaugeFields()) {
        if (field.kind != GaugeField::Number)
            continue;
        QStringList fields = fixedFields();
        fields[field.position] = QStringLiteral("0.123456789");
        const QString text = (fields + defaultFont() + QStringList(QStringLiteral("#ffffff"))).join(comma);
        QCOMPARE(field.get(readInto(gaugeData(), text)), QVariant(0.123456789));
    }
}

void tst_GaugeText::numbersDoNotFollowTheLocale()
{
    const auto restore = qScopeGuard([previous = QLocale()] { QLocale::setDefault(previous); });
    const QString written = sampleLayer().toQString();
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    QCOMPARE(sampleLayer().toQString(), written);
    QCOMPARE(valuesOf(readInto(gaugeData(), written)), valuesOf(sampleLayer()));
}

void tst_GaugeText::colorsAreWrittenWithoutAlpha()
{
    gaugeData data;
    data.arcColor[1] = QColor(0xAB, 0xCD, 0xEF, 0x12);
    QCOMPARE(data.toQString().split(comma).at(38), QStringLiteral("#abcdef"));
}

void tst_GaugeText::percentSignsOfTheFamilyAreFilledIn_data()
{
    QTest::addColumn<QString>("family");
    QTest::addColumn<QString>("writtenFamily");
    QTest::addColumn<QString>("writtenColor");
    // The font is filled in first, so a lower placeholder in its family is taken for the colour's, and the
    // colour's own stays.
    QTest::newRow("%1") << QStringLiteral("A%1B") << QStringLiteral("A#123456B") << QStringLiteral("%2");
    QTest::newRow("%1 twice") << QStringLiteral("%1%1") << QStringLiteral("#123456#123456")
                              << QStringLiteral("%2");
    QTest::newRow("%2") << QStringLiteral("A%2B") << QStringLiteral("A#123456B") << QStringLiteral("#123456");
    QTest::newRow("%3") << QStringLiteral("A%3B") << QStringLiteral("A%3B") << QStringLiteral("#123456");
    QTest::newRow("%12") << QStringLiteral("A%12B") << QStringLiteral("A%12B") << QStringLiteral("#123456");
    QTest::newRow("percent alone") << QStringLiteral("100%") << QStringLiteral("100%")
                                   << QStringLiteral("#123456");
}

void tst_GaugeText::percentSignsOfTheFamilyAreFilledIn()
{
    QFETCH(const QString, family);
    QFETCH(const QString, writtenFamily);
    QFETCH(const QString, writtenColor);
    gaugeData data;
    data.tickCountFont = QFont(family, 12);
    data.tickCountColor = QColor(0x12, 0x34, 0x56);
    QStringList font = QFont(QStringLiteral("any"), 12).toString().split(comma);
    font[0] = writtenFamily;
    QCOMPARE(data.toQString().split(comma), fixedFields() + font + QStringList(writtenColor));
}

void tst_GaugeText::oddFieldIsReadByItsKind_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QVariant>("value");
    const auto row = [](GaugeField::Kind kind, const char *what, const char *text, const QVariant &value) {
        for (const GaugeField &field : gaugeFields()) {
            if (field.kind == kind && field.position != GaugeField::insideFont) {
                QTest::newRow((field.name + ": " + what).constData())
                    << field.name << QString(QLatin1String(text)) << value;
            }
        }
    };
    row(GaugeField::Number, "word", "wide", 0.0);
    row(GaugeField::Number, "empty", "", 0.0);
    row(GaugeField::Number, "unit", "12deg", 0.0);
    row(GaugeField::Number, "hexadecimal", "0x10", 0.0);
    row(GaugeField::Number, "space around", " 12.5 ", 12.5);
    row(GaugeField::Number, "exponent", "-1.25e2", -125.0);
    row(GaugeField::Number, "beyond a double", "1e999", std::numeric_limits<double>::infinity());
    row(GaugeField::Integer, "word", "many", 0);
    row(GaugeField::Integer, "empty", "", 0);
    row(GaugeField::Integer, "broken", "2.5", 0);
    row(GaugeField::Integer, "exponent", "1e1", 0);
    row(GaugeField::Integer, "hexadecimal", "0x10", 0);
    row(GaugeField::Integer, "leading zero", "010", 10);
    row(GaugeField::Integer, "negative", "-7", -7);
    row(GaugeField::Integer, "largest", "2147483647", std::numeric_limits<int>::max());
    row(GaugeField::Integer, "too large", "2147483648", 0);
    row(GaugeField::Integer, "too small", "-2147483649", 0);
    row(GaugeField::Flag, "zero", "0", false);
    row(GaugeField::Flag, "one", "1", true);
    row(GaugeField::Flag, "two", "2", true);
    row(GaugeField::Flag, "negative", "-1", true);
    row(GaugeField::Flag, "yes", "yes", false);
    row(GaugeField::Flag, "true", "true", false);
    row(GaugeField::Flag, "empty", "", false);
    row(GaugeField::Flag, "broken", "1.0", false);
    row(GaugeField::Flag, "too large", "4294967297", false);
    row(GaugeField::Color, "name", "red", QColor(255, 0, 0));
    row(GaugeField::Color, "alpha", "#80ff0000", QColor(255, 0, 0, 128));
    row(GaugeField::Color, "no color", "chartreus", QColor());
    row(GaugeField::Color, "five digits", "#12345", QColor());
    row(GaugeField::Color, "empty", "", QColor());
}

void tst_GaugeText::oddFieldIsReadByItsKind()
{
    QFETCH(const QByteArray, name);
    QFETCH(const QString, text);
    QFETCH(const QVariant, value);
    const GaugeField &field = gaugeField(name);
    QStringList fields = fixedFields() + defaultFont() + QStringList(QStringLiteral("#ffffff"));
    fields[placeOf(field, fields)] = text;
    gaugeData expected;
    field.set(expected, value);
    QCOMPARE(valuesOf(readInto(gaugeData(), fields.join(comma))), valuesOf(expected));
}

void tst_GaugeText::fewerThanFiftyFieldsChangeNothing_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << QString();
    QTest::newRow("a word") << QStringLiteral("gauge");
    QTest::newRow("49 empty fields") << QString(48, comma);
    QTest::newRow("49 fields") << fixedFields().join(comma) + QStringLiteral(",#ffffff");
}

void tst_GaugeText::fewerThanFiftyFieldsChangeNothing()
{
    QFETCH(const QString, text);
    gaugeData data = sampleLayer();
    QVERIFY(!data.fromQString(text));
    QCOMPARE(valuesOf(data), valuesOf(sampleLayer()));
}

void tst_GaugeText::fiftyEmptyFieldsAreAccepted()
{
    gaugeData expected;
    for (const GaugeField &field : gaugeFields()) {
        if (field.kind == GaugeField::Number)
            field.set(expected, 0.0);
        else if (field.kind == GaugeField::Color)
            field.set(expected, QColor());
        else if (field.position != GaugeField::insideFont)
            field.set(expected, 0);
    }
    expected.tickCountFont = QFont(QString(), 0);

    QTest::ignoreMessage(QtWarningMsg,
                         QRegularExpression(QStringLiteral("^QFont::fromString: Invalid description")));
    gaugeData data = sampleLayer();
    QVERIFY(data.fromQString(QString(49, comma)));
    QCOMPARE(valuesOf(data), valuesOf(expected));
}

ADD_TEST_CLASS(tst_GaugeText)
#include "tst_gaugetext.moc"
