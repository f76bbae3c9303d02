#include "support/testmain.h"
#include "support/warnings.h"
#include "ui_window.h"

#include <QTest>
#include <QTextBlock>
#include <QTextDocument>
#include <QTranslator>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {

/// Translates every text of the window by putting a mark before it.
class MarkingTranslator : public QTranslator
{
    Q_OBJECT

public:
    QString translate(const char *context, const char *sourceText, const char * /*disambiguation*/,
                      int /*n*/) const override
    {
        return qstrcmp(context, "Window") == 0 ? u"~"_s + QString::fromUtf8(sourceText) : QString();
    }
    bool isEmpty() const override { return false; }
};

} // namespace

/// What the form says: the texts of its labels and groups, and that a translation reaches every text.
class tst_FormTexts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void labelText_data();
    void labelText();
    void group_data();
    void group();
    void aboutLabel();
    void textsAreTranslatedInTheWindowsContext();

private:
    QWidget m_widget;
    Ui_Window m_form;

public:
    tst_FormTexts() { m_form.setupUi(&m_widget); }
};

void tst_FormTexts::labelText_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("label") << u"Start Angle:"_s;
    QTest::newRow("label_2") << u"Angle Length:"_s;
    QTest::newRow("label_3") << u"Primary:"_s;
    QTest::newRow("label_4") << u"Line Width:"_s;
    QTest::newRow("label_5") << u"Outer Radius:"_s;
    QTest::newRow("label_6") << u"Inner Radius:"_s;
    QTest::newRow("label_7") << u"Line Width:"_s;
    QTest::newRow("label_8") << u"Secondary:"_s;
    QTest::newRow("label_9") << u"Inner Radius:"_s;
    QTest::newRow("label_10") << u"Outer Radius:"_s;
    QTest::newRow("label_11") << u"Line Width:"_s;
    QTest::newRow("label_12") << u"Tertiary:"_s;
    QTest::newRow("label_13") << u"Inner Radius:"_s;
    QTest::newRow("label_14") << u"Outer Radius:"_s;
    QTest::newRow("label_15") << u"Length:"_s;
    QTest::newRow("label_16") << u"Arc 1 Start:"_s;
    QTest::newRow("label_17") << u"Radius:"_s;
    QTest::newRow("label_18") << u"Line Width:"_s;
    QTest::newRow("label_19") << u"Length:"_s;
    QTest::newRow("label_20") << u"Arc 2 Start:"_s;
    QTest::newRow("label_21") << u"Radius:"_s;
    QTest::newRow("label_22") << u"Line Width:"_s;
    QTest::newRow("label_23") << u"Length:"_s;
    QTest::newRow("label_24") << u"Arc 3 Start:"_s;
    QTest::newRow("label_25") << u"Radius:"_s;
    QTest::newRow("label_26") << u"Line Width:"_s;
    QTest::newRow("label_27") << u"Length:"_s;
    QTest::newRow("label_28") << u"Arc 4 Start:"_s;
    QTest::newRow("label_29") << u"Radius:"_s;
    QTest::newRow("label_30") << u"Line Width:"_s;
    QTest::newRow("label_31") << u"Radius:"_s;
    QTest::newRow("label_32") << u"Start:"_s;
    QTest::newRow("label_33") << u"Dec. Places:"_s;
    QTest::newRow("label_34") << u"Increment:"_s;
    QTest::newRow("label_35") << u"Preset:"_s;
    QTest::newRow("label_36") << u"Bias:"_s;
    QTest::newRow("label_37") << u"Bias Type:"_s;
}

void tst_FormTexts::labelText()
{
    QFETCH(QString, text);
    const QString name = QString::fromLatin1(QTest::currentDataTag());
    const auto *label = m_widget.findChild<QLabel *>(name);
    QVERIFY(label != nullptr);
    const bool rich = name == "label_36"_L1;
    QCOMPARE(Qt::mightBeRichText(label->text()), rich);
    QTextDocument document;
    if (rich)
        document.setHtml(label->text());
    QCOMPARE(rich ? document.toPlainText() : label->text(), text);
    QCOMPARE(label->toolTip(), QString());
}

void tst_FormTexts::group_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QSize>("minimum");
    QTest::addColumn<QSize>("maximum");
    const QSize unlimited(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    QTest::newRow("Layers") << u"Layers"_s << QSize(145, 0) << unlimited;
    QTest::newRow("DivisionsBox") << u"Divisions"_s << QSize(376, 0) << unlimited;
    QTest::newRow("ArcsBox") << u"Arcs"_s << QSize(376, 0) << unlimited;
    QTest::newRow("TicksBox") << u"Tick Counts"_s << QSize(376, 0) << unlimited;
    QTest::newRow("RenderBox") << u"Gauge Preview"_s << QSize(564, 564) << QSize(564, 564);
}

void tst_FormTexts::group()
{
    QFETCH(QString, title);
    QFETCH(QSize, minimum);
    QFETCH(QSize, maximum);
    const auto *box = m_widget.findChild<QGroupBox *>(QString::fromLatin1(QTest::currentDataTag()));
    QVERIFY(box != nullptr);
    QCOMPARE(box->title(), title);
    QCOMPARE(box->minimumSize(), minimum);
    QCOMPARE(box->maximumSize(), maximum);
    QVERIFY(!box->isFlat());
    QVERIFY(!box->isCheckable());
}

void tst_FormTexts::aboutLabel()
{
    const QLabel &label = *m_form.aboutLabel;
    QCOMPARE(label.textFormat(), Qt::RichText);
    QCOMPARE(label.alignment(), Qt::AlignLeft | Qt::AlignTop);
    QVERIFY(label.wordWrap());
    QCOMPARE(label.styleSheet(), u"lineHeight:1.0"_s);
    // The link is shown, and that is all.
    QVERIFY(!label.openExternalLinks());

    QTextDocument document;
    document.setHtml(label.text());
    QCOMPARE(document.blockCount(), 1);
    const QTextBlock paragraph = document.firstBlock();
    QStringList lines = paragraph.text().split(QChar::LineSeparator);
    QCOMPARE(lines.size(), 3);
    QCOMPARE(lines.at(0), u"Thank you for helping test Corvalence 2.2!"_s);
    QCOMPARE(lines.at(1), u"Latest builds can be found at:"_s);
    for (auto fragment = paragraph.begin(); !fragment.atEnd(); ++fragment) {
        const QTextCharFormat format = fragment.fragment().charFormat();
        const bool isLink = format.isAnchor();
        QCOMPARE(format.foreground().color(), isLink ? QColor(0x00, 0x7a, 0xf4) : QColor(0x54, 0x54, 0x54));
        QCOMPARE(format.fontUnderline(), isLink);
        if (isLink) {
            QCOMPARE(fragment.fragment().text(), lines.at(2));
            QCOMPARE(format.anchorHref(), lines.at(2));
        }
    }
    QVERIFY(QUrl(lines.at(2), QUrl::StrictMode).isValid());
}

void tst_FormTexts::textsAreTranslatedInTheWindowsContext()
{
    MarkingTranslator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    m_form.retranslateUi(&m_widget);

    const auto isMarked = [](const QString &text) { return text.isEmpty() || text.startsWith(u'~'); };
    QCOMPARE(m_widget.windowTitle(), u"~Form"_s);
    const auto labels = m_widget.findChildren<QLabel *>();
    for (const QLabel *label : labels)
        QVERIFY2(isMarked(label->text()), qPrintable(label->objectName()));
    const auto buttons = m_widget.findChildren<QAbstractButton *>();
    for (const QAbstractButton *button : buttons)
        QVERIFY2(isMarked(button->text()), qPrintable(button->objectName()));
    const auto groups = m_widget.findChildren<QGroupBox *>();
    for (const QGroupBox *group : groups)
        QVERIFY2(isMarked(group->title()), qPrintable(group->objectName()));
    const auto widgets = m_widget.findChildren<QWidget *>();
    for (const QWidget *child : widgets)
        QVERIFY2(isMarked(child->toolTip()) && isMarked(child->accessibleName()),
                 qPrintable(child->objectName()));
    // A style sheet is no text for the reader.
    QCOMPARE(m_form.aboutLabel->styleSheet(), u"lineHeight:1.0"_s);
    QCoreApplication::removeTranslator(&translator);
}

ADD_TEST_CLASS(tst_FormTexts)
#include "tst_formtexts.moc"
