#include "model/gaugedata.h"
#include "support/namedvalues.h"
#include "support/records.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QTest>

#include <functional>

using namespace Qt::StringLiterals;

/// The layer record: defaults, copies and isDefault(). tst_GaugeJson tests the other default values.
class tst_GaugeData : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void defaultFontAndColors();
    void copiesAreIndependent();
    void isDefaultComparesEachField();
    void isDefaultComparesWhatIsWritten_data();
    void isDefaultComparesWhatIsWritten();
};

void tst_GaugeData::defaultFontAndColors()
{
    const gaugeData data;
    QCOMPARE(data.tickCountFont, QFont(u"Sans Serif"_s, 10));
    QCOMPARE(data.divisionColor, (std::array<QColor, 3>{Qt::white, Qt::white, Qt::white}));
    QCOMPARE(data.arcColor, (std::array<QColor, 4>{Qt::green, Qt::yellow, Qt::red, Qt::white}));
    QCOMPARE(data.tickCountColor, QColor(Qt::white));
}

void tst_GaugeData::copiesAreIndependent()
{
    const gaugeLayer source{u"Rim"_s, sampleLayer()};
    gaugeLayer copy = source;
    QCOMPARE(copy.name, u"Rim"_s);
    QCOMPARE(differingFields(copy.data, source.data), QStringList());
    copy.data.arcColor[3] = Qt::blue;
    QCOMPARE(differingFields(source.data, sampleLayer()), QStringList());
}

void tst_GaugeData::isDefaultComparesEachField()
{
    for (const GaugeField &field : gaugeFields()) {
        gaugeData data;
        field.set(data, field.other);
        QVERIFY2(!data.isDefault(), field.name);
        field.set(data, field.initial);
        QVERIFY2(data.isDefault(), field.name);
    }
}

void tst_GaugeData::isDefaultComparesWhatIsWritten_data()
{
    using Change = std::function<void(gaugeData &)>;
    QTest::addColumn<Change>("change");
    QTest::addColumn<bool>("isDefault");
    const auto row = [](const char *name, bool isDefault, const Change &change) {
        QTest::newRow(name) << change << isDefault;
    };
    row("alpha of a ring", true, [](gaugeData &data) { data.divisionColor[0].setAlpha(128); });
    row("alpha of an arc", true, [](gaugeData &data) { data.arcColor[0].setAlpha(128); });
    row("alpha of the labels", true, [](gaugeData &data) { data.tickCountColor.setAlpha(128); });
    row("underline", true, [](gaugeData &data) { data.tickCountFont.setUnderline(true); });
    row("medium", true, [](gaugeData &data) { data.tickCountFont.setWeight(QFont::Medium); });
    row("demi-bold", false, [](gaugeData &data) { data.tickCountFont.setWeight(QFont::DemiBold); });
    row("oblique", false, [](gaugeData &data) { data.tickCountFont.setStyle(QFont::StyleOblique); });
    row("negative zero", true, [](gaugeData &data) { data.startAngle = -0.0; });
    row("smallest double", false, [](gaugeData &data) { data.startAngle = smallestDouble; });
    row("infinity", false, [](gaugeData &data) { data.startAngle = infinity; });
}

void tst_GaugeData::isDefaultComparesWhatIsWritten()
{
    QFETCH(const std::function<void(gaugeData &)>, change);
    gaugeData data;
    change(data);
    QTEST(data.isDefault(), "isDefault");
}

ADD_TEST_CLASS(tst_GaugeData)
#include "tst_gaugedata.moc"
