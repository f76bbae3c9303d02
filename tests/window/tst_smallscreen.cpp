#include "support/editor.h"
#include "support/files.h"
#include "support/testmain.h"

#include <QApplication>
#include <QTest>

using namespace Qt::StringLiterals;

/// The style sheet for small screens, packaging/small.qss.
class tst_SmallScreen : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void makesTheWindowLower();
    void keepsTheFontOfTheNumbers();
};

void tst_SmallScreen::initTestCase()
{
    QApplication::setFont(QFont(u"DejaVu Sans"_s, 9));
    qApp->setStyleSheet(
        QString::fromUtf8(readFile(QStringLiteral(CORVALENCE_SOURCE "/packaging/small.qss"))));
}

void tst_SmallScreen::cleanupTestCase()
{
    qApp->setStyleSheet({});
    QApplication::setFont({});
}

void tst_SmallScreen::makesTheWindowLower()
{
    Editor editor;
    editor.show();
    // docs/install.md promises this height.
    QVERIFY2(editor.window.minimumSizeHint().height() <= 726,
             qPrintable(QString::number(editor.window.minimumSizeHint().height())));
}

// The layer takes this font from the Font button, which the style sheet must therefore leave alone.
void tst_SmallScreen::keepsTheFontOfTheNumbers()
{
    Editor editor;
    editor.show();
    editor.control<QDoubleSpinBox>("tickCountRadiusSpinBox"_L1)->setValue(0.5);
    QCOMPARE(editor.preview()->layers.first().tickCountFont.pointSize(), 9);
}

ADD_TEST_CLASS(tst_SmallScreen)
#include "tst_smallscreen.moc"
