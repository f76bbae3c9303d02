#include "sheet/sheetcaption.h"
#include "support/testmain.h"

#include <QFont>
#include <QFontMetricsF>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

/// The captions of dials, and how they get shorter.
class tst_SheetCaption : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void joinsNameAndRemarks_data();
    void joinsNameAndRemarks();
    void getsSmallerAndThenShorter();
    void isNeverWiderThanItsBox_data();
    void isNeverWiderThanItsBox();

private:
    QFontMetricsF m_metrics{QFont(u"Sans Serif"_s, 100)};
};

void tst_SheetCaption::joinsNameAndRemarks_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("remarks");
    QTest::addColumn<QString>("text");
    QTest::newRow("both") << u"Clock"_s << u"20 mm"_s << u"Clock, 20 mm"_s;
    QTest::newRow("no name") << QString() << u"20 mm"_s << u"20 mm"_s;
    QTest::newRow("no remarks") << u"Clock"_s << QString() << u"Clock"_s;
}

void tst_SheetCaption::joinsNameAndRemarks()
{
    QFETCH(const QString, name);
    QFETCH(const QString, remarks);
    const SheetCaption caption = sheetCaption(name, remarks, 1e6, m_metrics);
    QTEST(caption.text, "text");
    QCOMPARE(caption.scale, 1.0);
}

void tst_SheetCaption::getsSmallerAndThenShorter()
{
    const QString name = u"Airspeed indicator"_s;
    const QString remarks = u"20 mm, mirrored"_s;
    const QString line = name + u", "_s + remarks;
    const double width = m_metrics.horizontalAdvance(line);

    const SheetCaption smaller = sheetCaption(name, remarks, 0.8 * width, m_metrics);
    QCOMPARE(smaller.text, line);
    QCOMPARE(smaller.scale, 0.8);

    const SheetCaption shorter = sheetCaption(name, remarks, 0.4 * width, m_metrics);
    const QRegularExpression pattern(u"^A[a-z ]*…[a-z ]*r, 20 mm, mirrored$"_s);
    QVERIFY2(pattern.match(shorter.text).hasMatch(), qPrintable(shorter.text));
    QCOMPARE(shorter.scale, 0.5);

    const SheetCaption cut = sheetCaption(name, remarks, 0.2 * width, m_metrics);
    QVERIFY2(cut.text.startsWith(u"Airspeed"_s) && cut.text.endsWith(u'…'), qPrintable(cut.text));
}

void tst_SheetCaption::isNeverWiderThanItsBox_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("no name") << QString();
    QTest::newRow("a letter") << u"i"_s;
    QTest::newRow("a name") << u"Pressure gauge"_s;
    QTest::newRow("a long name") << QString(10'000, u'W');
}

void tst_SheetCaption::isNeverWiderThanItsBox()
{
    QFETCH(const QString, name);
    for (const QString &remarks : {QString(), u"20 mm"_s, u"12.5 mm, mirrored"_s}) {
        for (double width = 1.0; width < 3000.0; width *= 1.3) {
            const SheetCaption caption = sheetCaption(name, remarks, width, m_metrics);
            QVERIFY2(caption.scale * m_metrics.horizontalAdvance(caption.text) <= width + 1e-6,
                     qPrintable(u"\"%1\" in %2"_s.arg(caption.text).arg(width)));
        }
    }
}

ADD_TEST_CLASS(tst_SheetCaption)
#include "tst_sheetcaption.moc"
