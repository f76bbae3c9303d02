#include "model/gaugedata.h"
#include "support/namedvalues.h"
#include "support/records.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QLocale>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QTest>

using namespace Qt::StringLiterals;

/// The comma-separated format of earlier versions.
class tst_GaugeText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void defaultsAreWritten();
    void allFieldsAreReadBack();
    void eachFieldHasItsPosition();
    void numbersAreWrittenWithSixDigits();
    void numbersDoNotDependOnTheLocale();
    void percentSignsInTheFamily();

    void fieldsAreConverted();
    void fewerThan50FieldsAreRejected();
    void emptyFieldsAreAccepted();

    void fontOfTenFields();
    void fontOfOneField();
    void invalidFont_data();
    void invalidFont();
};

namespace {

/// The fields of the default layer.
QStringList defaultFields()
{
    return gaugeData().toQString().split(u',');
}

/// The text of the default layer with another font and label colour.
QString textWith(const QStringList &fontFields, const QString &color)
{
    return (defaultFields().first(48) + fontFields + QStringList(color)).join(u',');
}

gaugeData readInto(gaugeData data, const QString &text)
{
    if (!data.fromQString(text))
        qFatal("Cannot read %s", qUtf8Printable(text));
    return data;
}

/// The fields that have a position, with the index of the last for the label colour.
QList<GaugeField> fieldsWithPosition(qsizetype fieldCount)
{
    QList<GaugeField> fields;
    for (GaugeField field : gaugeFields()) {
        if (field.position == GaugeField::lastPosition)
            field.position = fieldCount - 1;
        if (field.position != GaugeField::insideFont)
            fields.append(field);
    }
    return fields;
}

void ignoreInvalidFont()
{
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^QFont::fromString: Invalid description"_s));
}

} // namespace

void tst_GaugeText::defaultsAreWritten()
{
    QCOMPARE(gaugeData().toQString(), u"0,120,0.5,0,0,4,1,1,0.8,0.9,0.95,1,1,1,0,0,0,"
                                      "#ffffff,#ffffff,#ffffff,0,0,0,0,0,120,0,0,0,1,1,1,"
                                      "1,0,0,0,0,#00ff00,#ffff00,#ff0000,#ffffff,1,0,1,0,0.74,0,0,"_s +
                                          QFont(u"Sans Serif"_s, 10).toString() + u",#ffffff"_s);
}

void tst_GaugeText::allFieldsAreReadBack()
{
    const gaugeData data = readInto(sampleLayer(), gaugeData().toQString());
    QVERIFY(data.isDefault());
    QCOMPARE(differingFields(data, gaugeData()), QStringList());
    QCOMPARE(differingFields(readInto(gaugeData(), sampleLayer().toQString()), sampleLayer()), QStringList());
}

void tst_GaugeText::eachFieldHasItsPosition()
{
    for (const GaugeField &field : fieldsWithPosition(defaultFields().size())) {
        QStringList fields = defaultFields();
        fields[field.position] = asText(field.other);
        gaugeData data;
        field.set(data, field.other);
        QCOMPARE(data.toQString().split(u','), fields);
        QCOMPARE(differingFields(readInto(gaugeData(), fields.join(u',')), data), QStringList());
    }
}

void tst_GaugeText::numbersAreWrittenWithSixDigits()
{
    for (const auto &[value, text] : {std::pair(0.123456789, "0.123457"_L1),
                                      {123456.0, "123456"_L1},
                                      {1234567.0, "1.23457e+06"_L1},
                                      {0.00001, "1e-05"_L1},
                                      {-359.9999999, "-360"_L1}}) {
        for (const GaugeField &field : gaugeFields()) {
            if (field.kind == GaugeField::Number) {
                gaugeData data;
                field.set(data, value);
                QCOMPARE(data.toQString().split(u',').at(field.position), text);
            }
        }
    }
}

void tst_GaugeText::numbersDoNotDependOnTheLocale()
{
    const auto restore = qScopeGuard([previous = QLocale()] { QLocale::setDefault(previous); });
    const QString written = sampleLayer().toQString();
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    QCOMPARE(sampleLayer().toQString(), written);
    QCOMPARE(differingFields(readInto(gaugeData(), written), sampleLayer()), QStringList());
}

void tst_GaugeText::percentSignsInTheFamily()
{
    struct Case
    {
        QLatin1StringView family;
        QLatin1StringView writtenFamily;
        QLatin1StringView writtenColor;
    };
    // The font replaces %1 of "%1,%2". The colour then replaces the lowest placeholder that is left.
    for (const auto &[family, writtenFamily, writtenColor] :
         {Case{"A%1B"_L1, "A#123456B"_L1, "%2"_L1}, Case{"A%2B"_L1, "A#123456B"_L1, "#123456"_L1},
          Case{"A%3B"_L1, "A%3B"_L1, "#123456"_L1}, Case{"100%"_L1, "100%"_L1, "#123456"_L1}}) {
        gaugeData data;
        data.tickCountFont = QFont(family, 12);
        data.tickCountColor = QColor(0x12, 0x34, 0x56);
        const QStringList fields = data.toQString().split(u',');
        QCOMPARE(fields.at(48), writtenFamily);
        QCOMPARE(fields.last(), writtenColor);
    }
}

void tst_GaugeText::fieldsAreConverted()
{
    struct Case
    {
        GaugeField::Kind kind;
        const char *text;
        QVariant value;
    };
    const QList<Case> cases{
        {GaugeField::Number, "0.123456789", 0.123456789},
        {GaugeField::Number, "wide", 0.0},
        {GaugeField::Number, "", 0.0},
        {GaugeField::Number, "12deg", 0.0},
        {GaugeField::Number, " 12.5 ", 12.5},
        {GaugeField::Number, "-1.25e2", -125.0},
        {GaugeField::Number, "1e999", infinity},
        {GaugeField::Integer, "many", 0},
        {GaugeField::Integer, "2.5", 0},
        {GaugeField::Integer, "0x10", 0},
        {GaugeField::Integer, "010", 10},
        {GaugeField::Integer, "-7", -7},
        {GaugeField::Integer, "2147483647", maxInt},
        {GaugeField::Integer, "2147483648", 0},
        {GaugeField::Flag, "0", false},
        {GaugeField::Flag, "2", true},
        {GaugeField::Flag, "-1", true},
        {GaugeField::Flag, "true", false},
        {GaugeField::Flag, "4294967297", false},
        {GaugeField::Color, "red", QColor(255, 0, 0)},
        {GaugeField::Color, "#80ff0000", QColor(255, 0, 0, 128)},
        {GaugeField::Color, "#12345", QColor()},
        {GaugeField::Color, "", QColor()},
    };
    for (const Case &test : cases) {
        for (const GaugeField &field : fieldsWithPosition(defaultFields().size())) {
            if (field.kind != test.kind)
                continue;
            QStringList fields = defaultFields();
            fields[field.position] = QString::fromLatin1(test.text);
            gaugeData expected;
            field.set(expected, test.value);
            const gaugeData data = readInto(gaugeData(), fields.join(u','));
            QVERIFY2(differingFields(data, expected).isEmpty(), field.name + ": " + test.text);
        }
    }
}

void tst_GaugeText::fewerThan50FieldsAreRejected()
{
    for (const QString &text : {QString(), QString(48, u','), textWith({}, u"#ffffff"_s)}) {
        gaugeData data = sampleLayer();
        QVERIFY(!data.fromQString(text));
        QCOMPARE(differingFields(data, sampleLayer()), QStringList());
    }
}

void tst_GaugeText::emptyFieldsAreAccepted()
{
    ignoreInvalidFont();
    const gaugeData data = readInto(sampleLayer(), QString(49, u','));
    for (const GaugeField &field : fieldsWithPosition(50)) {
        const QVariant value = field.get(data);
        QVERIFY2(field.kind == GaugeField::Color ? !value.value<QColor>().isValid() : value == 0, field.name);
    }
    QCOMPARE(data.tickCountFont, QFont(QString(), 0));
}

void tst_GaugeText::fontOfTenFields()
{
    // The format of earlier Qt versions, with weights up to 99.
    const QStringList fields = u"Helvetica,20,-1,5,75,1,0,0,0,0"_s.split(u',');
    QCOMPARE(readInto(gaugeData(), textWith(fields, u"#ffffff"_s)).tickCountFont,
             QFont(u"Helvetica"_s, 20, QFont::Bold, true));
}

void tst_GaugeText::fontOfOneField()
{
    const gaugeData data = readInto(gaugeData(), textWith({u"Helvetica"_s}, u"#123456"_s));
    QCOMPARE(data.tickCountFont, QFont(u"Helvetica"_s, 10)); // the size is not changed
    QCOMPARE(data.tickCountColor, QColor(0x12, 0x34, 0x56));
}

void tst_GaugeText::invalidFont_data()
{
    QTest::addColumn<QStringList>("fontFields");
    QTest::addColumn<QString>("color");
    QTest::addColumn<QFont>("font");
    const QString white = u"#ffffff"_s;
    QTest::newRow("three fields") << QStringList{u"Helvetica"_s, u"12"_s, u"3"_s} << white
                                  << QFont(u"Helvetica"_s, 12);
    QTest::newRow("200 fields") << QStringList(200, u"7"_s) << white << QFont(u"7"_s, 7);
    QTest::newRow("size with a fraction")
        << QStringList{u"Helvetica"_s, u"12.5"_s, u"3"_s} << white << QFont(u"Helvetica"_s, 0);
    QTest::newRow("empty family") << QStringList{QString(), u"12"_s} << white << QFont(QString(), 12);
    QTest::newRow("size from the colour") << QStringList{QString()} << u"17"_s << QFont(QString(), 17);
}

void tst_GaugeText::invalidFont()
{
    QFETCH(const QStringList, fontFields);
    QFETCH(const QString, color);
    QFETCH(const QFont, font);
    ignoreInvalidFont();
    const gaugeData data = readInto(sampleLayer(), textWith(fontFields, color));
    QCOMPARE(data.tickCountFont, font);
    QCOMPARE(data.tickCountColor, QColor::fromString(color));
}

ADD_TEST_CLASS(tst_GaugeText)
#include "tst_gaugetext.moc"
