#include "formtext.h"
#include "support/editor.h"
#include "support/files.h"
#include "support/testmain.h"
#include "support/translator.h"
#include "support/warnings.h"
#include "ui_window.h"

#include <QDir>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

/// The controls of the window: what they are, where they are and what they accept.
class tst_Form : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void isAsDescribed();
    void namesAnUnnamedWidget();
    void keepsAnExistingName();
    void loadsTheIconFromTheParentFolder();
    void translatesAllTexts();
    void aboutLabelLinksToTheAddressThatItShows();
    void acceptsTypedNumber_data();
    void acceptsTypedNumber();
    void previewGroupKeepsItsSize_data();
    void previewGroupKeepsItsSize();
};

/// After an intended change of the form, copy the file that a failure writes over tests/window/form.txt.
void tst_Form::isAsDescribed()
{
    const Editor editor;
    // A distributor may set another download page.
    static const QRegularExpression address(u"https?://[^\"<]+"_s);
    const QStringList lines = formText(editor.window).replaceInStrings(address, u"ADDRESS"_s);
    if (lines != expectedLines(u"form.txt"_s)) {
        const QString path = QDir::current().absoluteFilePath(u"form.txt"_s);
        writeFile(path, lines.join(u'\n').toUtf8() + '\n');
        qInfo("The description of this form is in %s.", qPrintable(path));
    }
    QCOMPARE(lines, expectedLines(u"form.txt"_s));
}

void tst_Form::namesAnUnnamedWidget()
{
    QWidget widget;
    Ui_Window form;
    form.setupUi(&widget);
    QCOMPARE(widget.objectName(), u"Window"_s);
    QCOMPARE(widget.windowTitle(), u"Form"_s);
}

void tst_Form::keepsAnExistingName()
{
    QWidget widget;
    widget.setObjectName(u"other"_s);
    Ui_Window form;
    form.setupUi(&widget);
    QCOMPARE(widget.objectName(), u"other"_s);
}

void tst_Form::loadsTheIconFromTheParentFolder()
{
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir(u"build"_s));
    QImage picture(16, 16, QImage::Format_RGB32);
    picture.fill(QColor(0, 120, 240));
    QVERIFY(picture.save(folder.filePath(u"corvalence.ico"_s), "png"));
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(folder.filePath(u"build"_s)));
    const Editor editor;
    const QPixmap icon = editor.window.windowIcon().pixmap(QSize(16, 16), QIcon::Normal, QIcon::Off);
    QVERIFY(QDir::setCurrent(before));
    QCOMPARE(icon.toImage().pixelColor(8, 8), QColor(0, 120, 240));
}

void tst_Form::translatesAllTexts()
{
    // The marks of the translator, and what is not translated: style sheets, colours and numbers.
    static const QRegularExpression untranslated(
        u"(styleSheet|accessibleDescription) \"[^\"]*\"|\"\\[[^\\]]*\\]\""_s);
    const BracketTranslator translator("Window");
    QWidget widget;
    Ui_Window form;
    form.setupUi(&widget);
    for (QLabel *label : {form.label_36, form.aboutLabel}) {
        QVERIFY(label->text().startsWith(u'['));
        label->clear(); // its HTML has quotation marks
    }
    for (QString line : formText(widget))
        QVERIFY2(!line.remove(untranslated).contains(u'"'), qPrintable(line));
}

void tst_Form::aboutLabelLinksToTheAddressThatItShows()
{
    const Editor editor;
    static const QRegularExpression link(u"<a href=\"(https?://[^\"]+)\">(<[^>]*>)*\\1<"_s);
    QVERIFY(link.match(editor.control<QLabel>("aboutLabel"_L1)->text()).hasMatch());
}

void tst_Form::acceptsTypedNumber_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<double>("value");
    QTest::newRow("tickCountStartSpinBox") << u"3605"_s << 360.0;
    QTest::newRow("tickCountIncrementSpinBox") << u"5000"_s << 5000.0;
    QTest::newRow("gaugeDivisions1SpinBox") << u"0"_s << 0.0;
    QTest::newRow("gaugeDivisions2SpinBox") << u"0"_s << 1.0;
    QTest::newRow("gaugeDivisions3SpinBox") << u"0"_s << 1.0;
    QTest::newRow("pngSizeSpinBox") << u"40960"_s << 4096.0;
}

void tst_Form::acceptsTypedNumber()
{
    QFETCH(QString, typed);
    QFETCH(double, value);
    const Editor editor;
    auto *box = editor.control<QAbstractSpinBox>(QLatin1String(QTest::currentDataTag()));
    box->selectAll();
    QTest::keyClicks(box, typed);
    QTest::keyClick(box, Qt::Key_Return);
    QCOMPARE(box->property("value").toDouble(), value);
}

void tst_Form::previewGroupKeepsItsSize_data()
{
    QTest::addColumn<QSize>("window");
    QTest::newRow("initial") << QSize(1280, 760);
    QTest::newRow("large") << QSize(2400, 1600);
    QTest::newRow("small") << QSize(1, 1);
}

void tst_Form::previewGroupKeepsItsSize()
{
    QFETCH(QSize, window);
    Editor editor;
    editor.window.resize(window);
    editor.show();
    const QRect backdrop = editor.control<QLabel>("referenceLabel"_L1)->geometry();
    QCOMPARE(editor.control<QGroupBox>("RenderBox"_L1)->size(), QSize(564, 564));
    QCOMPARE(backdrop, QRect(26, 33, 512, 512));
    // The preview is centred in what the group's title leaves.
    QCOMPARE(editor.preview()->size(), QSize(512, 512));
    QCOMPARE(editor.preview()->x(), backdrop.x());
    QVERIFY(qAbs(editor.preview()->y() - backdrop.y()) <= 9);
    // It is above the backdrop.
    const QObjectList &children = editor.preview()->parent()->children();
    QCOMPARE(children.last(), editor.preview());
}

ADD_TEST_CLASS(tst_Form)
#include "tst_form.moc"
