#include "model/gaugedata.h"
#include "support/records.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QJsonArray>
#include <QTest>

#include <limits>

/// What the reader of a layer's JSON object makes of what is missing, mistyped or too much.
class tst_GaugeJsonLeniency : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void emptyObjectKeepsAllButTheFontsAttributes();
    void mistypedValueKeepsTheField_data();
    void mistypedValueKeepsTheField();
    void missingValueKeepsTheField_data();
    void missingValueKeepsTheField();
    void mistypedGroupCountsAsEmpty_data();
    void mistypedGroupCountsAsEmpty();
    void boldAndItalicAreOffUnlessSaid_data();
    void boldAndItalicAreOffUnlessSaid();

    void elementsTooManyAreIgnored();
    void elementsTooFewLeaveTheRest();
    void elementThatIsNoObjectLeavesItsRing();
    void unknownKeysAreIgnored();
    void wholeNumberWithAPointIsAnInteger();
    void valuesAreTakenAsTheyStand_data();
    void valuesAreTakenAsTheyStand();
};

namespace {

gaugeData readInto(gaugeData data, const QJsonObject &json)
{
    data.fromJson(json);
    return data;
}

/// The record of other values after a reading that says nothing of its font.
gaugeData otherValuesWithPlainFont()
{
    gaugeData data = sampleLayer();
    gaugeField("tickCountFont.bold").set(data, false);
    gaugeField("tickCountFont.italic").set(data, false);
    return data;
}

struct NamedValue
{
    QByteArray name;
    QJsonValue value;
};

const QList<NamedValue> &valuesOfEveryType()
{
    static const QList<NamedValue> values{
        {"null", QJsonValue::Null},
        {"true", true},
        {"false", false},
        {"zero", 0},
        {"one", 1},
        {"broken number", 2.5},
        {"integer too large", 2147483648.0},
        {"integer too small", -2147483649.0},
        {"enormous number", 1e300},
        {"empty text", QString()},
        {"number in text", QStringLiteral("4")},
        {"truth in text", QStringLiteral("true")},
        {"word", QStringLiteral("chartreus")},
        {"five hexadecimal digits", QStringLiteral("#12345")},
        {"empty array", QJsonArray()},
        {"array of a number", QJsonArray{7}},
        {"array of a colour", QJsonArray{QStringLiteral("#123456")}},
        {"empty object", QJsonObject()},
        {"object", QJsonObject{{QStringLiteral("value"), 7}}},
    };
    return values;
}

bool isMeantFor(GaugeField::Kind kind, const QJsonValue &value)
{
    switch (kind) {
    case GaugeField::Number:
        return value.isDouble();
    case GaugeField::Integer:
        return value == QJsonValue(0) || value == QJsonValue(1);
    case GaugeField::Flag:
        return value.isBool();
    case GaugeField::Color:
        return false; // the texts above name no colours
    case GaugeField::Text:
        return value.isString();
    }
    return false;
}

} // namespace

void tst_GaugeJsonLeniency::emptyObjectKeepsAllButTheFontsAttributes()
{
    gaugeData data = sampleLayer();
    data.tickCountFont.setUnderline(true);
    data.fromJson(QJsonObject());
    QCOMPARE(valuesOf(data), valuesOf(otherValuesWithPlainFont()));
    QCOMPARE(data.tickCountFont, QFont(gaugeField("tickCountFont.family").other.toString(),
                                       gaugeField("tickCountFont.pointSize").other.toInt()));
}

void tst_GaugeJsonLeniency::mistypedValueKeepsTheField_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QJsonValue>("value");
    for (const GaugeField &field : gaugeFields()) {
        for (const NamedValue &candidate : valuesOfEveryType()) {
            if (!isMeantFor(field.kind, candidate.value)) {
                QTest::newRow((field.name + ": " + candidate.name).constData())
                    << field.path << candidate.value;
            }
        }
    }
}

void tst_GaugeJsonLeniency::mistypedValueKeepsTheField()
{
    QFETCH(const QString, path);
    QFETCH(const QJsonValue, value);
    QCOMPARE(valuesOf(readInto(sampleLayer(), withValueAt({}, path, value))),
             valuesOf(otherValuesWithPlainFont()));
}

void tst_GaugeJsonLeniency::missingValueKeepsTheField_data()
{
    QTest::addColumn<GaugeField>("field");
    for (const GaugeField &field : gaugeFields()) {
        // Bold and italic have a rule and a test of their own.
        if (field.kind != GaugeField::Flag || field.position != GaugeField::insideFont)
            QTest::newRow(field.name.constData()) << field;
    }
}

void tst_GaugeJsonLeniency::missingValueKeepsTheField()
{
    QFETCH(const GaugeField, field);
    const QJsonObject json = withValueAt(gaugeData().toJson(), field.path, QJsonValue::Undefined);
    QVERIFY(valueAt(json, field.path).isUndefined());

    gaugeData expected;
    field.set(expected, field.other);
    QCOMPARE(valuesOf(readInto(sampleLayer(), json)), valuesOf(expected));
}

void tst_GaugeJsonLeniency::mistypedGroupCountsAsEmpty_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QJsonValue>("value");
    const QStringList groups{
        QStringLiteral("gauge"),       QStringLiteral("divisions"), QStringLiteral("divisions/0"),
        QStringLiteral("divisions/2"), QStringLiteral("arcs"),      QStringLiteral("arcs/0"),
        QStringLiteral("arcs/3"),      QStringLiteral("ticks"),     QStringLiteral("ticks/font"),
    };
    for (const QString &group : groups) {
        for (const NamedValue &candidate : valuesOfEveryType()) {
            QTest::newRow((group.toLatin1() + ": " + candidate.name).constData()) << group << candidate.value;
        }
        const bool isArray = group == groups.at(1) || group == groups.at(4);
        QTest::newRow((group.toLatin1() + ": array and object exchanged").constData())
            << group
            << (isArray ? QJsonValue(gaugeData().toJson().value(QLatin1String("gauge")))
                        : QJsonValue(QJsonArray{gaugeData().toJson()}));
    }
}

void tst_GaugeJsonLeniency::mistypedGroupCountsAsEmpty()
{
    QFETCH(const QString, path);
    QFETCH(const QJsonValue, value);
    QCOMPARE(valuesOf(readInto(sampleLayer(), withValueAt({}, path, value))),
             valuesOf(otherValuesWithPlainFont()));
}

void tst_GaugeJsonLeniency::boldAndItalicAreOffUnlessSaid_data()
{
    QTest::addColumn<QJsonValue>("font");
    QTest::addColumn<bool>("bold");
    QTest::addColumn<bool>("italic");
    const auto bold = QStringLiteral("bold");
    const auto italic = QStringLiteral("italic");
    const QJsonValue absent(QJsonValue::Undefined);
    QTest::newRow("no font at all") << absent << false << false;
    QTest::newRow("neither") << QJsonValue(QJsonObject()) << false << false;
    QTest::newRow("bold alone") << QJsonValue(QJsonObject{{bold, true}}) << true << false;
    QTest::newRow("italic alone") << QJsonValue(QJsonObject{{italic, true}}) << false << true;
    QTest::newRow("a number for both") << QJsonValue(QJsonObject{{bold, 1}, {italic, 1}}) << false << false;
}

void tst_GaugeJsonLeniency::boldAndItalicAreOffUnlessSaid()
{
    QFETCH(const QJsonValue, font);
    gaugeData data = sampleLayer();
    data.fromJson(withValueAt({}, QStringLiteral("ticks/font"), font));
    QTEST(data.tickCountFont.bold(), "bold");
    QTEST(data.tickCountFont.italic(), "italic");
}

void tst_GaugeJsonLeniency::elementsTooManyAreIgnored()
{
    QJsonObject json;
    gaugeData expected;
    for (int i = 0; i < 5; ++i) {
        json = withValueAt(json, QStringLiteral("divisions/%1/count").arg(i), 20 + i);
        json = withValueAt(json, QStringLiteral("arcs/%1/radius").arg(i), 0.25 * i);
    }
    expected.divisionCount = {20, 21, 22};
    expected.arcRadius = {0.0, 0.25, 0.5, 0.75};
    QCOMPARE(valuesOf(readInto(gaugeData(), json)), valuesOf(expected));
}

void tst_GaugeJsonLeniency::elementsTooFewLeaveTheRest()
{
    QJsonObject json = withValueAt({}, QStringLiteral("divisions/0/count"), 20);
    json = withValueAt(json, QStringLiteral("arcs/0/radius"), 0.25);
    gaugeData expected = otherValuesWithPlainFont();
    expected.divisionCount[0] = 20;
    expected.arcRadius[0] = 0.25;
    QCOMPARE(valuesOf(readInto(sampleLayer(), json)), valuesOf(expected));
}

void tst_GaugeJsonLeniency::elementThatIsNoObjectLeavesItsRing()
{
    QJsonObject json = withValueAt({}, QStringLiteral("divisions/0"), QStringLiteral("ring"));
    json = withValueAt(json, QStringLiteral("divisions/1/count"), 21);
    gaugeData expected;
    expected.divisionCount[1] = 21;
    QCOMPARE(valuesOf(readInto(gaugeData(), json)), valuesOf(expected));
}

void tst_GaugeJsonLeniency::unknownKeysAreIgnored()
{
    QJsonObject json;
    for (const QString &path : {QStringLiteral("startAngle"), QStringLiteral("gauge/StartAngle"),
                                QStringLiteral("divisions/0/divisionCount"), QStringLiteral("Arcs/0/radius"),
                                QStringLiteral("ticks/font/size"), QStringLiteral("tickCount/start")})
        json = withValueAt(json, path, 33);
    QCOMPARE(valuesOf(readInto(gaugeData(), json)), valuesOf(gaugeData()));
}

void tst_GaugeJsonLeniency::wholeNumberWithAPointIsAnInteger()
{
    QCOMPARE(
        readInto(gaugeData(), withValueAt({}, QStringLiteral("divisions/0/count"), 7.0)).divisionCount[0], 7);
}

void tst_GaugeJsonLeniency::valuesAreTakenAsTheyStand_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QJsonValue>("value");
    for (const GaugeField &field : gaugeFields()) {
        if (field.kind == GaugeField::Number) {
            for (const double value : {-7.5, 1e300, -std::numeric_limits<double>::max(),
                                       std::numeric_limits<double>::denorm_min()}) {
                QTest::newRow((field.name + ": " + QByteArray::number(value)).constData())
                    << field.name << QJsonValue(value);
            }
        } else if (field.kind == GaugeField::Integer && field.position != GaugeField::insideFont) {
            for (const int value :
                 {0, -3, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
                QTest::newRow((field.name + ": " + QByteArray::number(value)).constData())
                    << field.name << QJsonValue(value);
            }
        }
    }
}

void tst_GaugeJsonLeniency::valuesAreTakenAsTheyStand()
{
    QFETCH(const QByteArray, name);
    QFETCH(const QJsonValue, value);
    const GaugeField &field = gaugeField(name);
    gaugeData expected;
    field.set(expected, value.toVariant());
    QCOMPARE(valuesOf(readInto(gaugeData(), withValueAt({}, field.path, value))), valuesOf(expected));
}

ADD_TEST_CLASS(tst_GaugeJsonLeniency)
#include "tst_gaugejsonleniency.moc"
