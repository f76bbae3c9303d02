#include "model/gaugedata.h"
#include "support/namedvalues.h"
#include "support/records.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

using namespace Qt::StringLiterals;

/// A layer as a JSON object: the keys, and how missing and mistyped values are read.
class tst_GaugeJson : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void defaultsAreWritten();
    void eachFieldIsWrittenToItsKey();
    void eachFieldIsReadFromItsKey();
    void allFieldsAreReadBack();
    void nonFiniteNumbersAreNull();
    void alphaIsReadButNotWritten();
    void fontWeight();
    void slantedStylesAreItalic();
    void fontIsReadWithoutOtherAttributes();

    void mistypedValueKeepsTheField();
    void missingValueKeepsTheField();
    void mistypedGroupIsEmpty();
    void boldAndItalicAreOffWithoutAValue();
    void anyNumberIsAccepted();
};

namespace {

gaugeData readInto(gaugeData data, const QJsonObject &json)
{
    data.fromJson(json);
    return data;
}

/// fromJson() builds a new font, so bold and italic are off unless the object sets them.
gaugeData withPlainFont(gaugeData data)
{
    data.tickCountFont.setBold(false);
    data.tickCountFont.setItalic(false);
    return data;
}

const QList<QJsonValue> &valuesOfEachType()
{
    static const QList<QJsonValue> values{QJsonValue::Null,
                                          true,
                                          false,
                                          0,
                                          1,
                                          2.5,
                                          2147483648.0,
                                          -2147483649.0,
                                          1e300,
                                          u""_s,
                                          u"4"_s,
                                          u"true"_s,
                                          u"chartreus"_s,
                                          u"#12345"_s,
                                          QJsonArray(),
                                          QJsonArray{7},
                                          QJsonArray{u"#123456"_s},
                                          QJsonArray{QJsonObject()},
                                          QJsonObject(),
                                          QJsonObject{{u"value"_s, 7}}};
    return values;
}

bool isAccepted(GaugeField::Kind kind, const QJsonValue &value)
{
    switch (kind) {
    case GaugeField::Number:
        return value.isDouble();
    case GaugeField::Integer:
        return value == QJsonValue(0) || value == QJsonValue(1);
    case GaugeField::Flag:
        return value.isBool();
    case GaugeField::Color:
        return false; // none of the texts above is a colour
    case GaugeField::Text:
        return value.isString();
    }
    return false;
}

bool isFontFlag(const GaugeField &field)
{
    return field.position == GaugeField::insideFont && field.kind == GaugeField::Flag;
}

QByteArray text(const QString &path, const QJsonValue &value)
{
    return path.toUtf8() + ": " + QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
}

} // namespace

void tst_GaugeJson::defaultsAreWritten()
{
    const QJsonDocument expected = QJsonDocument::fromJson(R"({
        "gauge": {"startAngle": 0, "angleLength": 120, "bias": 0.5, "midpointBias": false,
                  "roundedTickCaps": false, "roundedArcCaps": false},
        "divisions": [
            {"count": 4, "innerRadius": 0.8, "outerRadius": 1, "width": 0, "color": "#ffffff"},
            {"count": 1, "innerRadius": 0.9, "outerRadius": 1, "width": 0, "color": "#ffffff"},
            {"count": 1, "innerRadius": 0.95, "outerRadius": 1, "width": 0, "color": "#ffffff"}],
        "arcs": [
            {"startAngle": 0, "angleLength": 120, "radius": 1, "width": 0, "color": "#00ff00"},
            {"startAngle": 0, "angleLength": 0, "radius": 1, "width": 0, "color": "#ffff00"},
            {"startAngle": 0, "angleLength": 0, "radius": 1, "width": 0, "color": "#ff0000"},
            {"startAngle": 0, "angleLength": 0, "radius": 1, "width": 0, "color": "#ffffff"}],
        "ticks": {"enabled": true, "start": 0, "increment": 1, "decimalPlaces": 0, "radius": 0.74,
                  "rotate": false, "skipFirst": false, "color": "#ffffff",
                  "font": {"family": "Sans Serif", "pointSize": 10, "bold": false, "italic": false}}
    })");
    QVERIFY(expected.isObject());
    QCOMPARE(gaugeData().toJson(), expected.object());
}

void tst_GaugeJson::eachFieldIsWrittenToItsKey()
{
    for (const GaugeField &field : gaugeFields()) {
        gaugeData data;
        field.set(data, field.other);
        QCOMPARE(data.toJson(), withValueAt(gaugeData().toJson(), field.path, asJson(field.other)));
    }
}

void tst_GaugeJson::eachFieldIsReadFromItsKey()
{
    for (const GaugeField &field : gaugeFields()) {
        const gaugeData other = readInto(gaugeData(), withValueAt({}, field.path, asJson(field.other)));
        QCOMPARE(differingFields(other, gaugeData()), QStringList(QString::fromLatin1(field.name)));
        QCOMPARE(field.get(other), field.other);

        gaugeData expected = withPlainFont(sampleLayer());
        field.set(expected, field.initial);
        const gaugeData initial = readInto(sampleLayer(), withValueAt({}, field.path, asJson(field.initial)));
        QCOMPARE(differingFields(initial, expected), QStringList());
    }
}

void tst_GaugeJson::allFieldsAreReadBack()
{
    QCOMPARE(differingFields(readInto(gaugeData(), sampleLayer().toJson()), sampleLayer()), QStringList());
    QCOMPARE(differingFields(readInto(sampleLayer(), gaugeData().toJson()), gaugeData()), QStringList());
}

void tst_GaugeJson::nonFiniteNumbersAreNull()
{
    for (const double value : {notANumber, infinity}) {
        gaugeData data;
        data.angleLength = value;
        const QJsonObject written = QJsonDocument::fromJson(QJsonDocument(data.toJson()).toJson()).object();
        QVERIFY(valueAt(written, u"gauge/angleLength"_s).isNull());
        QCOMPARE(readInto(gaugeData(), written).angleLength, 120.0);
    }
}

void tst_GaugeJson::alphaIsReadButNotWritten()
{
    for (const QString &path : {u"divisions/1/color"_s, u"arcs/0/color"_s, u"ticks/color"_s}) {
        const gaugeData data = readInto(gaugeData(), withValueAt({}, path, u"#80ABCDEF"_s));
        QVERIFY(valuesOf(data).values().contains(QColor(0xab, 0xcd, 0xef, 0x80)));
        QCOMPARE(valueAt(data.toJson(), path), QJsonValue(u"#abcdef"_s));
    }
}

void tst_GaugeJson::fontWeight()
{
    for (const auto &[weight, bold] : {std::pair(100, false), {500, false}, {501, true}, {900, true}}) {
        gaugeData data;
        data.tickCountFont.setWeight(static_cast<QFont::Weight>(weight));
        QCOMPARE(valueAt(data.toJson(), u"ticks/font/bold"_s), QJsonValue(bold));
        QCOMPARE(readInto(gaugeData(), data.toJson()).tickCountFont.weight(),
                 bold ? QFont::Bold : QFont::Normal);
    }
}

void tst_GaugeJson::slantedStylesAreItalic()
{
    for (const QFont::Style style : {QFont::StyleItalic, QFont::StyleOblique}) {
        gaugeData data;
        data.tickCountFont.setStyle(style);
        QCOMPARE(valueAt(data.toJson(), u"ticks/font/italic"_s), QJsonValue(true));
        QCOMPARE(readInto(gaugeData(), data.toJson()).tickCountFont.style(), QFont::StyleItalic);
    }
}

void tst_GaugeJson::fontIsReadWithoutOtherAttributes()
{
    gaugeData data;
    data.tickCountFont = QFont(u"DejaVu Serif"_s, 14, QFont::Black, true);
    data.tickCountFont.setUnderline(true);
    QCOMPARE(readInto(data, data.toJson()).tickCountFont, QFont(u"DejaVu Serif"_s, 14, QFont::Bold, true));
    QCOMPARE(readInto(data, {}).tickCountFont, QFont(u"DejaVu Serif"_s, 14));
}

void tst_GaugeJson::mistypedValueKeepsTheField()
{
    for (const GaugeField &field : gaugeFields()) {
        for (const QJsonValue &value : valuesOfEachType()) {
            if (isAccepted(field.kind, value))
                continue;
            const gaugeData data = readInto(sampleLayer(), withValueAt({}, field.path, value));
            QVERIFY2(differingFields(data, withPlainFont(sampleLayer())).isEmpty(), text(field.path, value));
        }
    }
}

void tst_GaugeJson::missingValueKeepsTheField()
{
    for (const GaugeField &field : gaugeFields()) {
        const QJsonObject json = withValueAt(gaugeData().toJson(), field.path, QJsonValue::Undefined);
        gaugeData expected;
        if (!isFontFlag(field))
            field.set(expected, field.other);
        QVERIFY2(differingFields(readInto(sampleLayer(), json), expected).isEmpty(), field.name);
    }
}

void tst_GaugeJson::mistypedGroupIsEmpty()
{
    for (const QString &group : {u"gauge"_s, u"divisions"_s, u"divisions/2"_s, u"arcs"_s, u"arcs/3"_s,
                                 u"ticks"_s, u"ticks/font"_s}) {
        for (const QJsonValue &value : valuesOfEachType()) {
            const gaugeData data = readInto(sampleLayer(), withValueAt({}, group, value));
            QVERIFY2(differingFields(data, withPlainFont(sampleLayer())).isEmpty(), text(group, value));
        }
    }
}

void tst_GaugeJson::boldAndItalicAreOffWithoutAValue()
{
    const auto fontOf = [](const QJsonValue &json) {
        return readInto(sampleLayer(), withValueAt({}, u"ticks/font"_s, json)).tickCountFont;
    };
    const QFont boldFont = fontOf(QJsonObject{{u"bold"_s, true}});
    QVERIFY(boldFont.bold() && !boldFont.italic());
    const QFont italicFont = fontOf(QJsonObject{{u"italic"_s, true}});
    QVERIFY(italicFont.italic() && !italicFont.bold());
}

void tst_GaugeJson::anyNumberIsAccepted()
{
    for (const GaugeField &field : gaugeFields()) {
        QList<QVariant> values;
        if (field.kind == GaugeField::Number)
            values = {-7.5, 1e300, smallestDouble};
        else if (field.kind == GaugeField::Integer && field.position != GaugeField::insideFont)
            values = {0, -3, maxInt, minInt};
        for (const QVariant &value : values) {
            const gaugeData data = readInto(gaugeData(), withValueAt({}, field.path, asJson(value)));
            QCOMPARE(field.get(data), value);
        }
    }
}

ADD_TEST_CLASS(tst_GaugeJson)
#include "tst_gaugejson.moc"
