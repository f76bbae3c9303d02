#include "fit/scalemarks.h"
#include "support/namedvalues.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QTest>

/// Labels at round values.
class tst_ScaleMarks : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void steps_data();
    void steps();
    void roundSteps_data();
    void roundSteps();
    void noLabels_data();
    void noLabels();
    void decimals_data();
    void decimals();
};

void tst_ScaleMarks::steps_data()
{
    QTest::addColumn<double>("min");
    QTest::addColumn<double>("max");
    QTest::addColumn<double>("step");
    QTest::addColumn<QList<double>>("labels");

    QTest::newRow("whole") << 0.0 << 20.0 << 10.0 << QList<double>{0.0, 10.0, 20.0};
    QTest::newRow("multiples only") << -7.0 << 11.0 << 5.0 << QList<double>{-5.0, 0.0, 5.0, 10.0};
    QTest::newRow("as written") << 0.0 << 0.3 << 0.1 << QList<double>{0.0, 0.1, 0.2, 0.3};
    QTest::newRow("ends with rounding errors")
        << 0.1 + 0.2 << 0.7 - 0.1 << 0.1 << QList<double>{0.3, 0.4, 0.5, 0.6};
    QTest::newRow("large") << 1e15 << 1.2e15 << 1e14 << QList<double>{1e15, 1.1e15, 1.2e15};
    QTest::newRow("large, with a small step")
        << 1e12 << 1e12 + 2.0 << 1.0 << QList<double>{1e12, 1e12 + 1.0, 1e12 + 2.0};
    QTest::newRow("one") << 1.0 << 9.0 << 5.0 << QList<double>{5.0};
}

void tst_ScaleMarks::steps()
{
    QFETCH(const double, min);
    QFETCH(const double, max);
    QFETCH(const double, step);
    QFETCH(const QList<double>, labels);
    // Exactly equal, unlike QCOMPARE of numbers.
    QVERIFY(steppedLabels(min, max, step) == labels);
}

void tst_ScaleMarks::roundSteps_data()
{
    QTest::addColumn<double>("min");
    QTest::addColumn<double>("max");
    QTest::addColumn<int>("maxCount");
    QTest::addColumn<QList<double>>("labels");

    QTest::newRow("ones") << 0.0 << 3.0 << 4 << QList<double>{0.0, 1.0, 2.0, 3.0};
    QTest::newRow("twos") << 0.0 << 6.0 << 4 << QList<double>{0.0, 2.0, 4.0, 6.0};
    QTest::newRow("fives") << -5.0 << 10.0 << 4 << QList<double>{-5.0, 0.0, 5.0, 10.0};
    QTest::newRow("tenths") << 0.11 << 0.39 << 3 << QList<double>{0.2, 0.3};
    QTest::newRow("too close") << 0.0 << smallestDouble << 12 << QList<double>{};
    QTest::newRow("no range") << 2.0 << 2.0 << 5 << QList<double>{};
    QTest::newRow("thousands") << 0.0 << 4999.0 << 5 << QList<double>{0.0, 1000.0, 2000.0, 3000.0, 4000.0};
}

void tst_ScaleMarks::roundSteps()
{
    QFETCH(const double, min);
    QFETCH(const double, max);
    QFETCH(const int, maxCount);
    QFETCH(const QList<double>, labels);
    QVERIFY(roundLabels(min, max, maxCount) == labels);
}

void tst_ScaleMarks::noLabels_data()
{
    QTest::addColumn<double>("min");
    QTest::addColumn<double>("max");
    QTest::addColumn<double>("step");
    QTest::newRow("between multiples") << 1.0 << 2.0 << 5.0;
    QTest::newRow("no step") << 0.0 << 1.0 << 0.0;
    QTest::newRow("negative step") << 0.0 << 1.0 << -1.0;
    QTest::newRow("turned round") << 9.0 << 1.0 << 1.0;
    QTest::newRow("too many") << 0.0 << 1001.0 << 1.0;
    QTest::newRow("not distinct numbers") << 1e17 << 1e17 + 64.0 << 1.0;
    QTest::newRow("far too many") << -1e308 << 1e308 << 1e-308;
    QTest::newRow("infinite end") << 0.0 << qInf() << 1.0;
    QTest::newRow("infinite step") << 0.0 << 1.0 << qInf();
    QTest::newRow("not a number") << qQNaN() << 1.0 << 1.0;
}

void tst_ScaleMarks::noLabels()
{
    QFETCH(const double, min);
    QFETCH(const double, max);
    QFETCH(const double, step);
    QVERIFY(steppedLabels(min, max, step).isEmpty());
}

void tst_ScaleMarks::decimals_data()
{
    QTest::addColumn<QList<double>>("labels");
    QTest::addColumn<int>("decimals");
    QTest::newRow("whole") << QList<double>{0.0, 5.0, -200.0} << 0;
    QTest::newRow("quarters") << QList<double>{0.0, 0.25, 0.5} << 2;
    QTest::newRow("tenths") << QList<double>{0.1, 0.2, 0.3} << 1;
    QTest::newRow("thirds") << QList<double>{1.0 / 3.0} << 6;
    QTest::newRow("none") << QList<double>{} << 0;
}

void tst_ScaleMarks::decimals()
{
    QFETCH(const QList<double>, labels);
    QTEST(labelDecimals(labels), "decimals");
}

ADD_TEST_CLASS(tst_ScaleMarks)
#include "tst_scalemarks.moc"
