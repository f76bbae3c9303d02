#include "support/dialogs.h"
#include "support/editor.h"
#include "support/records.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QColorDialog>
#include <QFontDialog>
#include <QHelpEvent>
#include <QRegularExpression>
#include <QTest>
#include <QToolTip>

using namespace Qt::StringLiterals;

namespace {

QVariant fieldOf(const gaugeData &layer, const QString &field)
{
    return valuesOf(layer).value(field.toLatin1());
}

} // namespace

/// Picking colours and the label font, through the dialogs that a user sees.
class tst_Pickers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void toolTipOfDarkButtonIsReadable();
    void colorDialogStartsAtBlack();
    void acceptedColorReachesButtonAndLayer_data();
    void acceptedColorReachesButtonAndLayer();
    void cancelledColorIsBlack_data();
    void cancelledColorIsBlack();
    void cancelledColorIsBlackInThePreview();
    void colorOfShownWindowIsTaken();
    void colorSlotAnswersWithTheDialogsResult_data();
    void colorSlotAnswersWithTheDialogsResult();
    void fontDialogStartsAtTheButtonsFont();
    void acceptedFontReachesButtonAndLayer();
    void cancelledFontChangesNothing();
    void cancelledFontStillPushesTheButtonsFont();
    void fontSlotAnswersWithTheDialogsResult();

private:
    static void pickColor(const Editor &editor, const QString &button, const QColor &color);
};

/// Presses a colour button and picks a colour, or cancels when @a color is invalid.
void tst_Pickers::pickColor(const Editor &editor, const QString &button, const QColor &color)
{
    DialogAnswers answers;
    answers.expect<QColorDialog>([color](QColorDialog &dialog) {
        dialog.setCurrentColor(color.isValid() ? color : QColor(Qt::magenta));
        if (color.isValid())
            dialog.accept();
        else
            dialog.reject();
    });
    editor.control<QToolButton>(button)->click();
    QCOMPARE(answers.problems(), QStringList());
}

void tst_Pickers::toolTipOfDarkButtonIsReadable()
{
    const auto shownTip = [] {
        for (QWidget *widget : QApplication::topLevelWidgets()) {
            if (widget->isVisible() && widget->inherits("QTipLabel"))
                return widget->grab().toImage();
        }
        return QImage();
    };
    Editor editor;
    editor.show();
    editor.preview()->workingLayer.divisionColor.fill(QColor(10, 10, 10));
    editor.preview()->workingLayer.arcColor.fill(QColor(10, 10, 10));
    editor.preview()->workingLayer.tickCountColor = QColor(10, 10, 10);
    editor.call("setActiveGauge");
    for (QToolButton *button :
         editor.window.findChildren<QToolButton *>(QRegularExpression(u"ColorButton$"_s))) {
        // What a tip of this text looks like that belongs to no widget.
        QToolTip::showText(QPoint(100, 100), button->toolTip());
        const QImage expected = shownTip();
        QVERIFY(!expected.isNull());
        QToolTip::hideText();
        QTRY_VERIFY(shownTip().isNull());

        QHelpEvent hover(QEvent::ToolTip, button->rect().center(),
                         button->mapToGlobal(button->rect().center()));
        QCoreApplication::sendEvent(button, &hover);
        QVERIFY2(shownTip() == expected, qPrintable(button->objectName()));
    }
    QToolTip::hideText();
}

void tst_Pickers::colorDialogStartsAtBlack()
{
    const Editor editor;
    DialogAnswers answers;
    bool asked = false;
    answers.expect<QColorDialog>([&editor, &asked](QColorDialog &dialog) {
        asked = true;
        dialog.reject(); // first, since a failing comparison goes no further
        QCOMPARE(dialog.windowTitle(), u"Choose a Color"_s);
        QCOMPARE(dialog.currentColor(), QColor(Qt::black));
        QCOMPARE(dialog.parentWidget(), &editor.window);
        QCOMPARE(dialog.options(), QColorDialog::ColorDialogOptions());
    });
    // The button's own colour is not where it starts.
    editor.control<QToolButton>("arc3ColorButton"_L1)->click();
    QVERIFY(asked);
    QCOMPARE(answers.problems(), QStringList());
}

void tst_Pickers::acceptedColorReachesButtonAndLayer_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<QColor>("color");
    QTest::addColumn<QString>("styleSheet");
    QTest::newRow("gaugeDivisions1ColorButton")
        << u"divisionColor[0]"_s << QColor(1, 2, 3) << u"background-color: #010203}"_s;
    QTest::newRow("gaugeDivisions2ColorButton")
        << u"divisionColor[1]"_s << QColor(171, 205, 239) << u"background-color: #abcdef}"_s;
    QTest::newRow("gaugeDivisions3ColorButton")
        << u"divisionColor[2]"_s << QColor(255, 127, 0) << u"background-color: #ff7f00}"_s;
    QTest::newRow("arc1ColorButton") << u"arcColor[0]"_s << QColor(0, 0, 254)
                                     << u"background-color: #0000fe}"_s;
    QTest::newRow("arc2ColorButton") << u"arcColor[1]"_s << QColor(16, 32, 48)
                                     << u"background-color: #102030}"_s;
    QTest::newRow("arc3ColorButton") << u"arcColor[2]"_s << QColor(254, 254, 254)
                                     << u"background-color: #fefefe}"_s;
    QTest::newRow("arc4ColorButton") << u"arcColor[3]"_s << QColor(0, 1, 0)
                                     << u"background-color: #000100}"_s;
    QTest::newRow("tickColorButton") << u"tickCountColor"_s << QColor(192, 255, 238)
                                     << u"background-color: #c0ffee}"_s;
}

void tst_Pickers::acceptedColorReachesButtonAndLayer()
{
    QFETCH(QString, field);
    QFETCH(QColor, color);
    QFETCH(QString, styleSheet);
    const Editor editor;
    const QString button = QString::fromLatin1(QTest::currentDataTag());
    pickColor(editor, button, color);
    QCOMPARE(editor.control<QToolButton>(button)->styleSheet(), styleSheet);
    QCOMPARE(fieldOf(editor.preview()->workingLayer, field).value<QColor>(), color);
    QCOMPARE(fieldOf(editor.preview()->layers.first(), field).value<QColor>(), color);
}

void tst_Pickers::cancelledColorIsBlack_data()
{
    acceptedColorReachesButtonAndLayer_data();
}

void tst_Pickers::cancelledColorIsBlack()
{
    QFETCH(QString, field);
    const Editor editor;
    const QString button = QString::fromLatin1(QTest::currentDataTag());
    pickColor(editor, button, QColor());
    QCOMPARE(editor.control<QToolButton>(button)->styleSheet(), u"background-color: #000000}"_s);
    QCOMPARE(fieldOf(editor.preview()->workingLayer, field).value<QColor>(), QColor(0, 0, 0));
    QCOMPARE(fieldOf(editor.preview()->layers.first(), field).value<QColor>(), QColor(0, 0, 0));
}

void tst_Pickers::cancelledColorIsBlackInThePreview()
{
    Editor editor;
    // A full ring of arc 2 alone, 20 wide, seen at 3 o'clock.
    editor.preview()->workingLayer.arcAngleLength = {0.0, 360.0, 0.0, 0.0};
    editor.preview()->workingLayer.arcWidth[1] = 20.0;
    editor.preview()->workingLayer.arcRadius[1] = 0.5;
    editor.call("setActiveGauge");
    editor.call("arc2Changed");
    editor.show();
    const QPoint onTheArc(256 + 125, 256 + 20);
    QCOMPARE(editor.preview()->grab().toImage().pixelColor(onTheArc), QColor(Qt::yellow));
    pickColor(editor, u"arc2ColorButton"_s, QColor());
    QCOMPARE(editor.preview()->grab().toImage().pixelColor(onTheArc), QColor(Qt::black));
}

void tst_Pickers::colorOfShownWindowIsTaken()
{
    Editor editor;
    editor.show();
    pickColor(editor, u"arc1ColorButton"_s, QColor(12, 34, 56));
    pickColor(editor, u"arc1ColorButton"_s, QColor(65, 43, 21));
    QCOMPARE(editor.preview()->layers.first().arcColor[0], QColor(65, 43, 21));
}

void tst_Pickers::colorSlotAnswersWithTheDialogsResult_data()
{
    QTest::addColumn<bool>("accepted");
    QTest::newRow("accepted") << true;
    QTest::newRow("cancelled") << false;
}

void tst_Pickers::colorSlotAnswersWithTheDialogsResult()
{
    QFETCH(bool, accepted);
    Editor editor;
    DialogAnswers answers;
    answers.expect<QColorDialog>([accepted](QColorDialog &dialog) {
        dialog.setCurrentColor(QColor(9, 8, 7));
        if (accepted)
            dialog.accept();
        else
            dialog.reject();
    });
    QColor color;
    QVERIFY(QMetaObject::invokeMethod(&editor.window, "getColor", Q_RETURN_ARG(QColor, color)));
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(color, accepted ? QColor(9, 8, 7) : QColor());
}

void tst_Pickers::fontDialogStartsAtTheButtonsFont()
{
    const Editor editor;
    auto *button = editor.control<QPushButton>("tickCountFontButton"_L1);
    QFont own = button->font();
    own.setPointSize(own.pointSize() + 5);
    own.setItalic(true);
    button->setFont(own);
    DialogAnswers answers;
    bool asked = false;
    answers.expect<QFontDialog>([&editor, &own, &asked](QFontDialog &dialog) {
        asked = true;
        dialog.reject(); // first, since a failing comparison goes no further
        QCOMPARE(dialog.currentFont().pointSize(), own.pointSize());
        QVERIFY(dialog.currentFont().italic());
        QCOMPARE(dialog.parentWidget(), &editor.window);
        QCOMPARE(dialog.options(), QFontDialog::FontDialogOptions());
    });
    button->click();
    QVERIFY(asked);
    QCOMPARE(answers.problems(), QStringList());
}

void tst_Pickers::acceptedFontReachesButtonAndLayer()
{
    const Editor editor;
    DialogAnswers answers;
    QFont picked;
    answers.expect<QFontDialog>([&picked](QFontDialog &dialog) {
        dialog.setCurrentFont(QFont(dialog.currentFont().family(), 26, QFont::Bold));
        picked = dialog.currentFont();
        dialog.accept();
    });
    editor.control<QPushButton>("tickCountFontButton"_L1)->click();
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(picked.pointSize(), 26);
    const QFont &shown = editor.control<QPushButton>("tickCountFontButton"_L1)->font();
    const QFont &saved = editor.preview()->layers.first().tickCountFont;
    for (const QFont &font : {shown, saved, editor.preview()->workingLayer.tickCountFont}) {
        QCOMPARE(font.family(), picked.family());
        QCOMPARE(font.pointSize(), 26);
        QCOMPARE(font.bold(), picked.bold()); // where the family has a bold face
    }
}

void tst_Pickers::cancelledFontChangesNothing()
{
    const Editor editor;
    auto *button = editor.control<QPushButton>("tickCountFontButton"_L1);
    button->setFont(QFont(u"Monospace"_s, 21));
    editor.control<QDoubleSpinBox>("tickCountRadiusSpinBox"_L1)->setValue(0.5);
    const gaugeData before = editor.preview()->layers.first();
    DialogAnswers answers;
    answers.expect<QFontDialog>([](QFontDialog &dialog) {
        dialog.setCurrentFont(QFont(u"Sans Serif"_s, 40));
        dialog.reject();
    });
    button->click();
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(button->font().family(), u"Monospace"_s);
    QCOMPARE(button->font().pointSize(), 21);
    QCOMPARE(differingFields(editor.preview()->layers.first(), before), QStringList());
    QCOMPARE(differingFields(editor.preview()->workingLayer, before), QStringList());
}

void tst_Pickers::cancelledFontStillPushesTheButtonsFont()
{
    const Editor editor;
    auto *button = editor.control<QPushButton>("tickCountFontButton"_L1);
    button->setFont(QFont(u"Monospace"_s, 21));
    QCOMPARE(editor.preview()->layers.first().tickCountFont.pointSize(), 10);
    DialogAnswers answers;
    answers.expectAndCancel<QFontDialog>();
    button->click();
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(editor.preview()->layers.first().tickCountFont.pointSize(), 21);
}

void tst_Pickers::fontSlotAnswersWithTheDialogsResult()
{
    Editor editor;
    DialogAnswers answers;
    answers.expect<QFontDialog>([](QFontDialog &dialog) {
        QFont font = dialog.currentFont();
        font.setPointSize(31);
        dialog.setCurrentFont(font);
        dialog.accept();
    });
    QFont font;
    QVERIFY(QMetaObject::invokeMethod(&editor.window, "getFont", Q_RETURN_ARG(QFont, font)));
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(font.pointSize(), 31);
    // It only asks.
    QVERIFY(editor.control<QPushButton>("tickCountFontButton"_L1)->font().pointSize() != 31);
}

ADD_TEST_CLASS(tst_Pickers)
#include "tst_pickers.moc"
