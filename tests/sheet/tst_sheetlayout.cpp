#include "sheet/sheetlayout.h"
#include "support/testmain.h"

#include <QRandomGenerator>
#include <QTest>

namespace {

QRectF square(double side)
{
    return {-side / 2.0, -side / 2.0, side, side};
}

/// Paper without margins and gap, on which dials of this size fit above the rule.
SheetPaper paperFor(double width, double height)
{
    const SheetPaper empty{QSizeF(width, height), {}, 0.0};
    return {QSizeF(width, height + ruleArea(empty).height()), {}, 0.0};
}

/// The rectangle that a placed dial takes on its page.
QRectF placed(const QRectF &bounds, const SheetPlace &place)
{
    return bounds.translated(place.centre);
}

} // namespace

/// How dials are placed on pages.
class tst_SheetLayout : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void measuresTheRimOrTheCanvas();
    void boundsHoldAllMarks();
    void keepsMarginsAndRuleFree();
    void needsRoomForTheRule();
    void placesInRowsAndOnPages();
    void keepsTheGap();
    void anExactFitIsAFit();
    void aHigherDialMovesToTheNextPage();
    void placesManySizesWithoutOverlap();
    void findsTheLargestDial();
    void contactCellsFillTheWidthOrTheHeight();
};

void tst_SheetLayout::measuresTheRimOrTheCanvas()
{
    QCOMPARE(dialSide(50.0, DialMeasure::Rim), 51.2); // the canvas has 512 units, the rim 500
    QCOMPARE(dialSide(50.0, DialMeasure::Canvas), 50.0);
}

void tst_SheetLayout::boundsHoldAllMarks()
{
    QCOMPARE(dialBounds(50.0, DialMeasure::Rim, {}), square(51.2));
    DialMarks marks;
    marks.cropMarks = true;
    QCOMPARE(dialBounds(50.0, DialMeasure::Rim, marks), square(58.0));
    marks.holes = {{4.0, {30.0, 0.0}}, {2.0, {0.0, -40.0}}};
    QCOMPARE(dialBounds(50.0, DialMeasure::Rim, marks), QRectF(QPointF(-29.0, -41.0), QPointF(32.0, 29.0)));
    QCOMPARE(dialBounds(50.0, DialMeasure::Rim, marks, true),
             QRectF(QPointF(-32.0, -41.0), QPointF(29.0, 29.0)));
    marks.caption = true;
    QCOMPARE(dialBounds(50.0, DialMeasure::Rim, marks),
             QRectF(QPointF(-29.0, -41.0), QPointF(32.0, 29.0 + captionHeight)));
}

void tst_SheetLayout::keepsMarginsAndRuleFree()
{
    const SheetPaper paper{QSizeF(200.0, 300.0), QMarginsF(1.0, 2.0, 3.0, 4.0), 0.0};
    const QRectF dials = dialArea(paper);
    const QRectF rule = ruleArea(paper);
    QCOMPARE(dials.topLeft(), QPointF(1.0, 2.0));
    QCOMPARE(dials.bottomRight(), rule.topRight());
    QCOMPARE(rule.bottomRight(), QPointF(197.0, 296.0));
    QCOMPARE(rule.left(), 1.0);
}

void tst_SheetLayout::needsRoomForTheRule()
{
    QVERIFY(dialArea({QSizeF(112.0, 100.0)}).isValid());
    QVERIFY(!dialArea({QSizeF(111.0, 100.0)}).isValid());
    QVERIFY(!dialArea({QSizeF(112.0, 20.0)}).isValid());
}

void tst_SheetLayout::placesInRowsAndOnPages()
{
    const QList<SheetPlace> places = placeDials(paperFor(250.0, 250.0), QList<QRectF>(5, square(100.0)));
    const QList<QPointF> centres{{50.0, 50.0}, {150.0, 50.0}, {50.0, 150.0}, {150.0, 150.0}, {50.0, 50.0}};
    for (qsizetype index = 0; index < 5; ++index) {
        QCOMPARE(places.at(index).centre, centres.at(index));
        QCOMPARE(places.at(index).page, index / 4);
    }
    QVERIFY(placeDials(paperFor(250.0, 250.0), {}).isEmpty());
}

void tst_SheetLayout::keepsTheGap()
{
    SheetPaper paper = paperFor(250.0, 250.0);
    paper.gap = 10.0;
    const QList<SheetPlace> places = placeDials(paper, QList<QRectF>(3, square(100.0)));
    QCOMPARE(places.at(1).centre, QPointF(160.0, 50.0));
    QCOMPARE(places.at(2).centre, QPointF(50.0, 160.0));
}

void tst_SheetLayout::anExactFitIsAFit()
{
    SheetPaper paper = paperFor(210.3, 210.3);
    paper.gap = 0.1; // three times 70.03333... and two gaps are more than the width by a rounding error
    const double side = (210.3 - 0.2) / 3.0;
    const QList<SheetPlace> places = placeDials(paper, QList<QRectF>(9, square(side)));
    QCOMPARE(places.constLast().page, 0);
    QVERIFY(fitsOnPage(paper, square(210.3)));
    QVERIFY(!fitsOnPage(paper, square(210.31)));
}

void tst_SheetLayout::aHigherDialMovesToTheNextPage()
{
    const QRectF high(-50.0, -100.0, 100.0, 200.0);
    const QList<SheetPlace> places =
        placeDials(paperFor(250.0, 250.0), {square(100.0), square(100.0), square(100.0), high});
    QCOMPARE(places.at(2).page, 0);
    QCOMPARE(places.at(3).page, 1);
    QCOMPARE(places.at(3).centre, QPointF(50.0, 100.0));
}

void tst_SheetLayout::placesManySizesWithoutOverlap()
{
    QRandomGenerator random(1);
    const SheetPaper paper;
    QList<QRectF> bounds;
    for (int count = 0; count < 300; ++count) {
        bounds.append(QRectF(-random.bounded(50.0), -random.bounded(50.0), 50.0 + random.bounded(50.0),
                             50.0 + random.bounded(100.0)));
    }
    const QList<SheetPlace> places = placeDials(paper, bounds);
    QCOMPARE(places.size(), bounds.size());
    const QRectF area = dialArea(paper).adjusted(-0.001, -0.001, 0.001, 0.001);
    const double almostTheGap = paper.gap - 0.001;
    for (qsizetype index = 0; index < places.size(); ++index) {
        const QRectF dial = placed(bounds.at(index), places.at(index));
        QVERIFY(area.contains(dial));
        for (qsizetype other = 0; other < index; ++other) {
            QVERIFY(places.at(other).page <= places.at(index).page);
            if (places.at(other).page == places.at(index).page) {
                QVERIFY(!dial.adjusted(-almostTheGap, -almostTheGap, almostTheGap, almostTheGap)
                             .intersects(placed(bounds.at(other), places.at(other))));
            }
        }
    }
}

void tst_SheetLayout::findsTheLargestDial()
{
    DialMarks marks;
    QCOMPARE(largestDial(paperFor(200.0, 150.0), DialMeasure::Canvas, marks), 150.0);
    QCOMPARE(largestDial(paperFor(200.0, 150.0), DialMeasure::Rim, marks), 146.4); // of 146.48
    marks.cropMarks = true;
    marks.caption = true;
    QCOMPARE(largestDial(paperFor(200.0, 150.0), DialMeasure::Rim, marks), 137.0);
    marks.holes = {{1.0, {200.0, 0.0}}};
    QCOMPARE(largestDial(paperFor(200.0, 150.0), DialMeasure::Rim, marks), 0.0);
}

void tst_SheetLayout::contactCellsFillTheWidthOrTheHeight()
{
    SheetPaper paper = paperFor(200.0, 105.0);
    paper.gap = 10.0;
    const ContactCell narrow = contactCell(paper, 3);
    QCOMPARE(narrow.side, 60.0);
    QCOMPARE(narrow.bounds, QRectF(-30.0, -30.0, 60.0, 60.0 + captionHeight));
    // One column stays one column, even if two would fit.
    const ContactCell low = contactCell(paper, 1);
    QCOMPARE(low.side, 100.0);
    QCOMPARE(low.bounds.width(), 200.0);
    QVERIFY(contactCell(paper, 30).side <= 0.0);
}

ADD_TEST_CLASS(tst_SheetLayout)
#include "tst_sheetlayout.moc"
