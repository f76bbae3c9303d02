#include "model/gaugedata.h"
#include "support/records.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

#include <limits>

/// A layer as a JSON object: what is written under which key, and that it is read from there.
class tst_GaugeJson : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void defaultRecordIsWrittenInFull();
    void everyFieldIsWrittenUnderItsKey_data();
    void everyFieldIsWrittenUnderItsKey();
    void everyFieldIsReadFromItsKey_data();
    void everyFieldIsReadFromItsKey();
    void otherValuesComeBack();
    void defaultRecordComesBack();
    void numbersAreWrittenShort();
    void numbersThatJsonCannotHoldBecomeNull_data();
    void numbersThatJsonCannotHoldBecomeNull();

    void colorsAreWrittenWithoutAlpha();
    void alphaIsReadButNotWritten();
    void invalidColorIsWrittenAsQtNamesIt();
    void everyFormOfAColorIsRead_data();
    void everyFormOfAColorIsRead();

    void weightAboveMediumIsWrittenAsBold_data();
    void weightAboveMediumIsWrittenAsBold();
    void demiBoldComesBackAsBold();
    void anySlantIsWrittenAsItalic_data();
    void anySlantIsWrittenAsItalic();
    void fontIsReadWithoutUnwrittenAttributes();
    void fontOfASizeThatQtRefusesTakesQtsOwn_data();
    void fontOfASizeThatQtRefusesTakesQtsOwn();
};

namespace {

void addFieldRows()
{
    QTest::addColumn<GaugeField>("field");
    for (const GaugeField &field : gaugeFields())
        QTest::newRow(field.name.constData()) << field;
}

gaugeData readInto(gaugeData data, const QJsonObject &json)
{
    data.fromJson(json);
    return data;
}

/// Any reading of a record rebuilds the font, so what is not said of bold and italic is off.
gaugeData withPlainFont(gaugeData data)
{
    gaugeField("tickCountFont.bold").set(data, false);
    gaugeField("tickCountFont.italic").set(data, false);
    return data;
}

} // namespace

void tst_GaugeJson::defaultRecordIsWrittenInFull()
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

void tst_GaugeJson::everyFieldIsWrittenUnderItsKey_data()
{
    addFieldRows();
}

void tst_GaugeJson::everyFieldIsWrittenUnderItsKey()
{
    QFETCH(const GaugeField, field);
    gaugeData data;
    field.set(data, field.other);
    QCOMPARE(data.toJson(), withValueAt(gaugeData().toJson(), field.path, field.otherJson));
}

void tst_GaugeJson::everyFieldIsReadFromItsKey_data()
{
    addFieldRows();
}

void tst_GaugeJson::everyFieldIsReadFromItsKey()
{
    QFETCH(const GaugeField, field);

    gaugeData expected = withPlainFont(sampleLayer());
    field.set(expected, field.initial);
    QCOMPARE(valuesOf(readInto(sampleLayer(), withValueAt({}, field.path, field.initialJson))),
             valuesOf(expected));

    expected = gaugeData();
    field.set(expected, field.other);
    QCOMPARE(valuesOf(readInto(gaugeData(), withValueAt({}, field.path, field.otherJson))),
             valuesOf(expected));
}

void tst_GaugeJson::otherValuesComeBack()
{
    QCOMPARE(valuesOf(readInto(gaugeData(), sampleLayer().toJson())), valuesOf(sampleLayer()));
}

void tst_GaugeJson::defaultRecordComesBack()
{
    const gaugeData data = readInto(gaugeData(), gaugeData().toJson());
    QVERIFY(data.isDefault());
    QCOMPARE(valuesOf(data), valuesOf(gaugeData()));
}

void tst_GaugeJson::numbersAreWrittenShort()
{
    const QByteArray text = QJsonDocument(gaugeData().toJson()).toJson(QJsonDocument::Compact);
    QVERIFY2(text.contains(R"("angleLength":120,)"), text.constData());
    QVERIFY2(text.contains(R"("innerRadius":0.8,)"), text.constData());
}

void tst_GaugeJson::numbersThatJsonCannotHoldBecomeNull_data()
{
    QTest::addColumn<double>("value");
    QTest::newRow("not a number") << std::numeric_limits<double>::quiet_NaN();
    QTest::newRow("infinity") << std::numeric_limits<double>::infinity();
    QTest::newRow("minus infinity") << -std::numeric_limits<double>::infinity();
}

void tst_GaugeJson::numbersThatJsonCannotHoldBecomeNull()
{
    QFETCH(const double, value);
    gaugeData data;
    data.angleLength = value;
    const QByteArray text = QJsonDocument(data.toJson()).toJson();
    const QJsonObject written = QJsonDocument::fromJson(text).object();
    QVERIFY2(valueAt(written, QStringLiteral("gauge/angleLength")).isNull(), text.constData());
    QCOMPARE(readInto(gaugeData(), written).angleLength, 120.0);
}

void tst_GaugeJson::colorsAreWrittenWithoutAlpha()
{
    gaugeData data;
    data.divisionColor[1] = QColor(0xAB, 0xCD, 0xEF, 0x12);
    QCOMPARE(valueAt(data.toJson(), QStringLiteral("divisions/1/color")),
             QJsonValue(QStringLiteral("#abcdef")));
}

void tst_GaugeJson::alphaIsReadButNotWritten()
{
    const auto path = QStringLiteral("arcs/0/color");
    const gaugeData data = readInto(gaugeData(), withValueAt({}, path, QStringLiteral("#80ff0000")));
    QCOMPARE(data.arcColor[0], QColor(255, 0, 0, 128));
    QCOMPARE(valueAt(data.toJson(), path), QJsonValue(QStringLiteral("#ff0000")));
}

void tst_GaugeJson::invalidColorIsWrittenAsQtNamesIt()
{
    gaugeData data;
    data.tickCountColor = QColor();
    QCOMPARE(valueAt(data.toJson(), QStringLiteral("ticks/color")), QJsonValue(QColor().name()));
}

void tst_GaugeJson::everyFormOfAColorIsRead_data()
{
    QTest::addColumn<QString>("written");
    QTest::addColumn<QColor>("color");
    QTest::newRow("six digits") << QStringLiteral("#0a1b2c") << QColor(0x0a, 0x1b, 0x2c);
    QTest::newRow("capital digits") << QStringLiteral("#0A1B2C") << QColor(0x0a, 0x1b, 0x2c);
    QTest::newRow("three digits") << QStringLiteral("#f0a") << QColor(0xff, 0x00, 0xaa);
    QTest::newRow("twelve digits") << QStringLiteral("#00000000ffff") << QColor::fromRgba64(0, 0, 0xffff);
    QTest::newRow("name") << QStringLiteral("red") << QColor(255, 0, 0);
    QTest::newRow("name in capitals") << QStringLiteral("SteelBlue") << QColor(70, 130, 180);
    QTest::newRow("transparent") << QStringLiteral("transparent") << QColor(0, 0, 0, 0);
}

void tst_GaugeJson::everyFormOfAColorIsRead()
{
    QFETCH(const QString, written);
    QFETCH(const QColor, color);
    for (const GaugeField &field : gaugeFields()) {
        if (field.kind == GaugeField::Color) {
            const gaugeData data = readInto(gaugeData(), withValueAt({}, field.path, written));
            QCOMPARE(field.get(data).value<QColor>().rgba64(), color.rgba64());
        }
    }
}

void tst_GaugeJson::weightAboveMediumIsWrittenAsBold_data()
{
    QTest::addColumn<int>("weight");
    QTest::addColumn<bool>("bold");
    QTest::newRow("thin") << 100 << false;
    QTest::newRow("normal") << 400 << false;
    QTest::newRow("medium") << 500 << false;
    QTest::newRow("just above medium") << 501 << true;
    QTest::newRow("demi-bold") << 600 << true;
    QTest::newRow("bold") << 700 << true;
    QTest::newRow("heaviest") << 1000 << true;
}

void tst_GaugeJson::weightAboveMediumIsWrittenAsBold()
{
    QFETCH(const int, weight);
    QFETCH(const bool, bold);
    gaugeData data;
    data.tickCountFont.setWeight(static_cast<QFont::Weight>(weight));
    QCOMPARE(valueAt(data.toJson(), QStringLiteral("ticks/font/bold")), QJsonValue(bold));
}

void tst_GaugeJson::demiBoldComesBackAsBold()
{
    gaugeData data;
    data.tickCountFont.setWeight(QFont::DemiBold);
    QCOMPARE(readInto(gaugeData(), data.toJson()).tickCountFont.weight(), QFont::Bold);
}

void tst_GaugeJson::anySlantIsWrittenAsItalic_data()
{
    QTest::addColumn<QFont::Style>("style");
    QTest::addColumn<QFont::Style>("comesBackAs");
    QTest::newRow("upright") << QFont::StyleNormal << QFont::StyleNormal;
    QTest::newRow("italic") << QFont::StyleItalic << QFont::StyleItalic;
    QTest::newRow("oblique") << QFont::StyleOblique << QFont::StyleItalic;
}

void tst_GaugeJson::anySlantIsWrittenAsItalic()
{
    QFETCH(const QFont::Style, style);
    QFETCH(const QFont::Style, comesBackAs);
    gaugeData data;
    data.tickCountFont.setStyle(style);
    QCOMPARE(valueAt(data.toJson(), QStringLiteral("ticks/font/italic")),
             QJsonValue(style != QFont::StyleNormal));
    QCOMPARE(readInto(gaugeData(), data.toJson()).tickCountFont.style(), comesBackAs);
}

void tst_GaugeJson::fontIsReadWithoutUnwrittenAttributes()
{
    gaugeData data;
    data.tickCountFont = QFont(QStringLiteral("DejaVu Serif"), 14, QFont::Black, true);
    data.tickCountFont.setUnderline(true);
    data.tickCountFont.setStretch(QFont::Expanded);
    data.fromJson(data.toJson());
    QCOMPARE(data.tickCountFont, QFont(QStringLiteral("DejaVu Serif"), 14, QFont::Bold, true));
}

void tst_GaugeJson::fontOfASizeThatQtRefusesTakesQtsOwn_data()
{
    QTest::addColumn<int>("pointSize");
    QTest::newRow("zero") << 0;
    QTest::newRow("below zero") << -5;
}

void tst_GaugeJson::fontOfASizeThatQtRefusesTakesQtsOwn()
{
    QFETCH(const int, pointSize);
    const QJsonObject json = withValueAt({}, QStringLiteral("ticks/font/pointSize"), pointSize);
    QCOMPARE(readInto(gaugeData(), json).tickCountFont, QFont(QStringLiteral("Sans Serif"), pointSize));
}

ADD_TEST_CLASS(tst_GaugeJson)
#include "tst_gaugejson.moc"
