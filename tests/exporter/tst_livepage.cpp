#include "exporter/livepage.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

/// The page with a needle that moves. tests/page looks at pages in browsers.
class tst_LivePage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void valueOfAnAngle_data();
    void valueOfAnAngle();
    void eachNeedleFollowsATable();
    void gaugeWithoutNeedleGetsAPointer();
    void namesAreEscaped();
    void templateIsFilledInOnce();
    void pagesHaveNoIds();
    void ticksWithoutAPlaceAreLeftOut();
    void needsAScale();
};

namespace {

const AngleTable tens{u"Tens"_s, {u"Tens"_s}, 0.1, {{0.0, -120.0}, {50.0, 0.0}, {100.0, 240.0}}};
const AngleTable backwards{u"Back"_s, {u"Back"_s}, 0.1, {{-5.0, 30.0}, {5.0, -30.0}}};

QByteArray pageOf(const QString &name, const QList<gaugeLayer> &layers, const QStringList &needles,
                  const QList<AngleTable> &tables = {tens})
{
    QList<NeedleChoice> choices;
    for (const QString &needle : needles)
        choices.append({needle, {}});
    return livePage(name, splitGauge(layers, choices).parts, tables);
}

/// What the page tells its script.
QJsonArray dataOf(const QByteArray &page)
{
    const QRegularExpression script(uR"(<script type="application/json">(.*?)</script>)"_s);
    return QJsonDocument::fromJson(script.match(QString::fromUtf8(page)).captured(1).toUtf8()).array();
}

} // namespace

void tst_LivePage::valueOfAnAngle_data()
{
    QTest::addColumn<AngleTable>("table");
    QTest::addColumn<double>("angle");
    QTest::addColumn<double>("value");
    QTest::newRow("start") << tens << -120.0 << 0.0;
    QTest::newRow("a point") << tens << 0.0 << 50.0;
    QTest::newRow("between points") << tens << 60.0 << 62.5;
    QTest::newRow("end, a turn earlier and the same direction as the start") << tens << -480.0 << 0.0;
    QTest::newRow("a turn later") << tens << 420.0 << 62.5;
    QTest::newRow("counter-clockwise") << backwards << 15.0 << -2.5;
    QTest::newRow("not on the scale") << backwards << 180.0 << -5.0;
    QTest::newRow("rounded beyond the end") << backwards << -30.01 << 5.0;
}

void tst_LivePage::valueOfAnAngle()
{
    QFETCH(const AngleTable, table);
    QFETCH(const double, angle);
    QFETCH(const double, value);
    QCOMPARE(valueAtAngle(table.points, angle), value);
}

void tst_LivePage::eachNeedleFollowsATable()
{
    const QList<gaugeLayer> layers{{u"One"_s, {}}, {u"Two"_s, {}}, {u"Three"_s, {}}};
    const QJsonArray data =
        dataOf(pageOf(u"Gauge"_s, layers, {u"Two"_s, u"One"_s, u"Three"_s}, {backwards, tens}));
    QStringList summary;
    for (const QJsonValue &needle : data) {
        summary.append(
            u"%1 %2 from %3 at %4"_s.arg(needle["key"_L1].toString(), needle["label"_L1].toString())
                .arg(needle["points"_L1][0][0].toDouble())
                .arg(needle["value"_L1].toDouble()));
    }
    QCOMPARE(summary, QStringList({u"value One from 0 at 50"_s, u"value2 Two from -5 at 0"_s,
                                   u"value3 Three from 0 at 50"_s}));
}

void tst_LivePage::gaugeWithoutNeedleGetsAPointer()
{
    const QByteArray page = pageOf(u"Gauge"_s, {{u"Face"_s, {}}}, {});
    QCOMPARE(page.count("class=\"needle\""), 1);
    QCOMPARE(dataOf(page).at(0)["value"_L1].toDouble(), 0.0);
}

void tst_LivePage::namesAreEscaped()
{
    const QString name = u"*/ \"</script>&]]><!--<img src=x onerror=alert(1)>'\u2028\u0001"_s;
    gaugeData data;
    data.tickCountFont.setFamily(name);
    const QByteArray page = pageOf(name, {{u"Face"_s, data}, {name, data}, {u"N"_s, data}}, {u"2"_s, u"N"_s});
    QCOMPARE(dataOf(page).at(0)["label"_L1].toString(), name);
    QVERIFY(!page.contains("<img"));
    QVERIFY(!page.contains("<!--"));
    QVERIFY(!page.contains('\x01'));
    QVERIFY(!page.contains("\xe2\x80\xa8") || page.indexOf("\xe2\x80\xa8") < page.indexOf("<corvalence"));
    QCOMPARE(page.count("</script>"), 2); // the data and the script
}

void tst_LivePage::templateIsFilledInOnce()
{
    const QByteArray page = pageOf(u"@script@ @data@ @"_s, {{u"Face"_s, {}}}, {});
    QVERIFY(page.contains("<title>@script@ @data@ @</title>"));
    QCOMPARE(page.count("customElements.define"), 1);
}

void tst_LivePage::pagesHaveNoIds()
{
    // Else two gauges in one page would share them.
    const QByteArray page = pageOf(u"Gauge"_s, {{u"Face"_s, {}}, {u"Needle"_s, {}}}, {u"Needle"_s});
    const QByteArray gauge = page.mid(page.indexOf("<corvalence-gauge>"));
    QVERIFY(!gauge.first(gauge.indexOf("</corvalence-gauge>")).contains(" id="));
}

void tst_LivePage::ticksWithoutAPlaceAreLeftOut()
{
    gaugeLayer empty{u"Empty"_s, {}};
    empty.data.divisionCount[0] = 0; // its only tick has no angle
    const QByteArray page = pageOf(u"Gauge"_s, {{u"Face"_s, {}}, empty}, {});
    QVERIFY(page.contains("<polyline"));
    QVERIFY(!page.contains("nan,"));
}

void tst_LivePage::needsAScale()
{
    QCOMPARE(pageOf(u"Gauge"_s, {{u"Face"_s, {}}}, {}, {}), QByteArray());
}

ADD_TEST_CLASS(tst_LivePage)
#include "tst_livepage.moc"
