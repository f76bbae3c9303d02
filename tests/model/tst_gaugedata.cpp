#include "model/gaugedata.h"
#include "support/records.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QTest>

#include <limits>
#include <utility>

/// A layer's record by itself: what it starts with, how it is copied and when it counts as untouched.
class tst_GaugeData : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void everyFieldStartsWithItsDefault_data();
    void everyFieldStartsWithItsDefault();
    void onlyTheFirstArcStartsWithALength();
    void defaultFontHasNothingButFamilyAndSize();

    void everyWayOfCopyingTakesEveryField_data();
    void everyWayOfCopyingTakesEveryField();
    void changingACopyLeavesTheSource();
    void copyingALayerTakesItsName();

    void freshRecordIsDefault();
    void everyFieldCountsForBeingDefault_data();
    void everyFieldCountsForBeingDefault();
    void alphaDoesNotCountForBeingDefault_data();
    void alphaDoesNotCountForBeingDefault();
    void fontAttributeCountsOnlyWhenWritten_data();
    void fontAttributeCountsOnlyWhenWritten();
    void numbersCountAsJsonHoldsThem_data();
    void numbersCountAsJsonHoldsThem();
};

namespace {

void addFieldRows()
{
    QTest::addColumn<GaugeField>("field");
    for (const GaugeField &field : gaugeFields())
        QTest::newRow(field.name.constData()) << field;
}

} // namespace

void tst_GaugeData::everyFieldStartsWithItsDefault_data()
{
    addFieldRows();
}

void tst_GaugeData::everyFieldStartsWithItsDefault()
{
    QFETCH(const GaugeField, field);
    QCOMPARE(field.get(gaugeData()), field.initial);
}

void tst_GaugeData::onlyTheFirstArcStartsWithALength()
{
    QCOMPARE(gaugeData().arcAngleLength, (std::array<double, 4>{120.0, 0.0, 0.0, 0.0}));
}

void tst_GaugeData::defaultFontHasNothingButFamilyAndSize()
{
    QCOMPARE(gaugeData().tickCountFont, QFont(QStringLiteral("Sans Serif"), 10));
}

using Copy = gaugeData (*)(gaugeData source);

void tst_GaugeData::everyWayOfCopyingTakesEveryField_data()
{
    QTest::addColumn<Copy>("copy");
    QTest::newRow("copy construction") << Copy([](gaugeData source) {
        gaugeData copy(std::as_const(source));
        return copy;
    });
    QTest::newRow("move construction") << Copy([](gaugeData source) {
        gaugeData copy(std::move(source));
        return copy;
    });
    QTest::newRow("copy assignment") << Copy([](gaugeData source) {
        gaugeData copy;
        copy = std::as_const(source);
        return copy;
    });
    QTest::newRow("move assignment") << Copy([](gaugeData source) {
        gaugeData copy;
        copy = std::move(source);
        return copy;
    });
}

void tst_GaugeData::everyWayOfCopyingTakesEveryField()
{
    QFETCH(const Copy, copy);
    QCOMPARE(valuesOf(copy(sampleLayer())), valuesOf(sampleLayer()));
}

void tst_GaugeData::changingACopyLeavesTheSource()
{
    const gaugeLayer source;
    gaugeLayer copy = source;
    copy.data.arcColor[3] = Qt::blue;
    QCOMPARE(source.data.arcColor[3], QColor(Qt::white));
    QCOMPARE(copy.data.arcColor[3], QColor(Qt::blue));
}

void tst_GaugeData::copyingALayerTakesItsName()
{
    const gaugeLayer source{QStringLiteral("Rim"), sampleLayer()};
    gaugeLayer copy;
    copy = source;
    QCOMPARE(copy.name, QStringLiteral("Rim"));
    QCOMPARE(valuesOf(copy.data), valuesOf(source.data));
}

void tst_GaugeData::freshRecordIsDefault()
{
    QVERIFY(gaugeData().isDefault());
}

void tst_GaugeData::everyFieldCountsForBeingDefault_data()
{
    addFieldRows();
}

void tst_GaugeData::everyFieldCountsForBeingDefault()
{
    QFETCH(const GaugeField, field);
    gaugeData data;
    field.set(data, field.other);
    QVERIFY(!data.isDefault());
    field.set(data, field.initial);
    QVERIFY(data.isDefault());
}

void tst_GaugeData::alphaDoesNotCountForBeingDefault_data()
{
    QTest::addColumn<GaugeField>("field");
    for (const GaugeField &field : gaugeFields()) {
        if (field.kind == GaugeField::Color)
            QTest::newRow(field.name.constData()) << field;
    }
}

void tst_GaugeData::alphaDoesNotCountForBeingDefault()
{
    QFETCH(const GaugeField, field);
    auto color = field.initial.value<QColor>();
    color.setAlpha(128);
    gaugeData data;
    field.set(data, color);
    QVERIFY(data.isDefault());
}

using FontChange = void (*)(QFont &);

void tst_GaugeData::fontAttributeCountsOnlyWhenWritten_data()
{
    QTest::addColumn<FontChange>("change");
    QTest::addColumn<bool>("isDefault");
    QTest::newRow("underline") << FontChange([](QFont &font) { font.setUnderline(true); }) << true;
    QTest::newRow("strike-out") << FontChange([](QFont &font) { font.setStrikeOut(true); }) << true;
    QTest::newRow("stretch") << FontChange([](QFont &font) { font.setStretch(QFont::Expanded); }) << true;
    QTest::newRow("letter spacing") << FontChange([](QFont &font) {
        font.setLetterSpacing(QFont::AbsoluteSpacing, 3.0);
    }) << true;
    QTest::newRow("capitals") << FontChange([](QFont &font) { font.setCapitalization(QFont::SmallCaps); })
                              << true;
    QTest::newRow("thin") << FontChange([](QFont &font) { font.setWeight(QFont::Thin); }) << true;
    QTest::newRow("medium") << FontChange([](QFont &font) { font.setWeight(QFont::Medium); }) << true;
    QTest::newRow("demi-bold") << FontChange([](QFont &font) { font.setWeight(QFont::DemiBold); }) << false;
    QTest::newRow("oblique") << FontChange([](QFont &font) { font.setStyle(QFont::StyleOblique); }) << false;
}

void tst_GaugeData::fontAttributeCountsOnlyWhenWritten()
{
    QFETCH(const FontChange, change);
    gaugeData data;
    change(data.tickCountFont);
    QTEST(data.isDefault(), "isDefault");
}

void tst_GaugeData::numbersCountAsJsonHoldsThem_data()
{
    QTest::addColumn<double>("startAngle");
    QTest::addColumn<bool>("isDefault");
    QTest::newRow("zero") << 0.0 << true;
    QTest::newRow("zero with a minus sign") << -0.0 << true;
    QTest::newRow("the least number above zero") << std::numeric_limits<double>::denorm_min() << false;
    QTest::newRow("infinity") << std::numeric_limits<double>::infinity() << false;
}

void tst_GaugeData::numbersCountAsJsonHoldsThem()
{
    QFETCH(const double, startAngle);
    gaugeData data;
    data.startAngle = startAngle;
    QTEST(data.isDefault(), "isDefault");
}

ADD_TEST_CLASS(tst_GaugeData)
#include "tst_gaugedata.moc"
