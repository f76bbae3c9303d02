#include "support/dialogs.h"
#include "support/editor.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QColorDialog>
#include <QFontDialog>
#include <QHelpEvent>
#include <QRegularExpression>
#include <QTest>
#include <QToolTip>

using namespace Qt::StringLiterals;

/// Picking colours and the label font with their dialogs.
class tst_Pickers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void toolTipOfDarkButtonIsReadable();
    void colorDialogStartsAtBlack();
    void cancelledColorIsBlack_data();
    void cancelledColorIsBlack();

    void fontDialogStartsAtTheButtonsFont();
    void pickedFontReachesButtonAndLayer();
    void cancelledFontDialogStoresTheButtonsFont();
};

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
    for (const GaugeField &field : gaugeFields()) {
        if (field.kind == GaugeField::Color)
            field.set(editor.preview()->workingLayer, QColor(10, 10, 10));
    }
    editor.call("setActiveGauge");
    for (QToolButton *button :
         editor.window.findChildren<QToolButton *>(QRegularExpression(u"ColorButton$"_s))) {
        // A tip with this text that belongs to no widget.
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
        dialog.reject(); // first, since a failed comparison leaves the function
        QCOMPARE(dialog.windowTitle(), u"Choose a Color"_s);
        QCOMPARE(dialog.currentColor(), QColor(Qt::black));
        QCOMPARE(dialog.parentWidget(), &editor.window);
        QCOMPARE(dialog.options(), QColorDialog::ColorDialogOptions());
    });
    editor.control<QToolButton>("arc3ColorButton"_L1)->click(); // a red button
    QVERIFY(asked);
    QCOMPARE(answers.problems(), QStringList());
}

void tst_Pickers::cancelledColorIsBlack_data()
{
    QTest::addColumn<QString>("button");
    for (const GaugeField &field : gaugeFields()) {
        if (field.kind == GaugeField::Color)
            QTest::newRow(field.name) << field.control;
    }
}

void tst_Pickers::cancelledColorIsBlack()
{
    QFETCH(QString, button);
    const GaugeField &field = gaugeField(QTest::currentDataTag());
    const Editor editor;
    DialogAnswers answers;
    answers.expect<QColorDialog>([](QColorDialog &dialog) {
        dialog.setCurrentColor(Qt::magenta);
        dialog.reject();
    });
    editor.control<QToolButton>(button)->click();
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(field.get(editor.shownLayer()).value<QColor>(), QColor(0, 0, 0));
    QCOMPARE(field.get(editor.preview()->workingLayer).value<QColor>(), QColor(0, 0, 0));
    QCOMPARE(field.get(editor.preview()->layers.first()).value<QColor>(), QColor(0, 0, 0));
}

void tst_Pickers::fontDialogStartsAtTheButtonsFont()
{
    const Editor editor;
    auto *button = editor.control<QPushButton>("tickCountFontButton"_L1);
    QFont font = button->font();
    font.setPointSize(font.pointSize() + 5);
    font.setItalic(true);
    button->setFont(font);
    DialogAnswers answers;
    bool asked = false;
    answers.expect<QFontDialog>([&editor, &font, &asked](QFontDialog &dialog) {
        asked = true;
        dialog.reject(); // first, since a failed comparison leaves the function
        QCOMPARE(dialog.currentFont().pointSize(), font.pointSize());
        QVERIFY(dialog.currentFont().italic());
        QCOMPARE(dialog.parentWidget(), &editor.window);
        QCOMPARE(dialog.options(), QFontDialog::FontDialogOptions());
    });
    button->click();
    QVERIFY(asked);
    QCOMPARE(answers.problems(), QStringList());
}

void tst_Pickers::pickedFontReachesButtonAndLayer()
{
    const Editor editor;
    DialogAnswers answers;
    QFont picked;
    answers.expect<QFontDialog>([&picked](QFontDialog &dialog) {
        dialog.setCurrentFont(QFont(dialog.currentFont().family(), 26, QFont::Bold));
        picked = dialog.currentFont(); // not bold if the family has no bold face
        dialog.accept();
    });
    editor.control<QPushButton>("tickCountFontButton"_L1)->click();
    QCOMPARE(answers.problems(), QStringList());
    for (const QFont &font :
         {editor.control<QPushButton>("tickCountFontButton"_L1)->font(),
          editor.preview()->layers.first().tickCountFont, editor.preview()->workingLayer.tickCountFont}) {
        QCOMPARE(font.family(), picked.family());
        QCOMPARE(font.pointSize(), 26);
        QCOMPARE(font.bold(), picked.bold());
    }
}

void tst_Pickers::cancelledFontDialogStoresTheButtonsFont()
{
    const Editor editor;
    auto *button = editor.control<QPushButton>("tickCountFontButton"_L1);
    button->setFont(QFont(u"Monospace"_s, 21));
    DialogAnswers answers;
    answers.expect<QFontDialog>([](QFontDialog &dialog) {
        dialog.setCurrentFont(QFont(u"Sans Serif"_s, 40));
        dialog.reject();
    });
    button->click();
    QCOMPARE(answers.problems(), QStringList());
    for (const QFont &font : {button->font(), editor.preview()->layers.first().tickCountFont}) {
        QCOMPARE(font.family(), u"Monospace"_s);
        QCOMPARE(font.pointSize(), 21);
    }
}

ADD_TEST_CLASS(tst_Pickers)
#include "tst_pickers.moc"
