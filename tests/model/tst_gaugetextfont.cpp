#include "model/gaugedata.h"
#include "support/records.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QRegularExpression>
#include <QTest>

/// The label font in the comma-separated form of earlier versions, and what is made of it when it is none.
class tst_GaugeTextFont : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void fontIsReadAsQtWroteIt_data();
    void fontIsReadAsQtWroteIt();
    void fontOfTenFieldsIsRead();
    void singleFontFieldIsTheFamily();
    void refusedFontFallsBackToFamilyAndSize_data();
    void refusedFontFallsBackToFamilyAndSize();
    void colorIsTheLastOfManyFields();
};

namespace {

const auto comma = QLatin1Char(',');

/// A default record in the older form, but with @a fontFields and @a color.
QString textWith(const QStringList &fontFields, const QString &color = QStringLiteral("#ffffff"))
{
    const QString fixedFields = gaugeData().toQString().section(comma, 0, 47);
    return (QStringList(fixedFields) + fontFields + QStringList(color)).join(comma);
}

gaugeData readInto(gaugeData data, const QString &text)
{
    if (!data.fromQString(text))
        qFatal("refused: %s", qUtf8Printable(text));
    return data;
}

/// Qt says so when a description is none; that is all there is to say.
void expectRefusedFont()
{
    QTest::ignoreMessage(QtWarningMsg,
                         QRegularExpression(QStringLiteral("^QFont::fromString: Invalid description")));
}

} // namespace

void tst_GaugeTextFont::fontIsReadAsQtWroteIt_data()
{
    QTest::addColumn<QFont>("font");
    QTest::newRow("plain") << QFont(QStringLiteral("DejaVu Sans"), 8);
    QTest::newRow("bold and italic") << QFont(QStringLiteral("DejaVu Sans"), 8, QFont::Bold, true);
    QTest::newRow("light") << QFont(QStringLiteral("DejaVu Sans"), 8, QFont::Light);
    QFont decorated(QStringLiteral("DejaVu Serif"), 30);
    decorated.setUnderline(true);
    decorated.setStretch(QFont::Condensed);
    decorated.setLetterSpacing(QFont::AbsoluteSpacing, 2.5);
    QTest::newRow("decorated") << decorated;
    QFont sizedInPixels(QStringLiteral("DejaVu Serif"));
    sizedInPixels.setPixelSize(33);
    QTest::newRow("sized in pixels") << sizedInPixels;
    QFont brokenSize(QStringLiteral("DejaVu Serif"));
    brokenSize.setPointSizeF(10.5);
    QTest::newRow("broken size") << brokenSize;
}

void tst_GaugeTextFont::fontIsReadAsQtWroteIt()
{
    QFETCH(const QFont, font);
    gaugeData data;
    data.tickCountFont = font;
    QCOMPARE(readInto(gaugeData(), data.toQString()).tickCountFont, font);
}

void tst_GaugeTextFont::fontOfTenFieldsIsRead()
{
    // As earlier versions of Qt wrote it, with weights up to 99.
    const QStringList old = QStringLiteral("Helvetica,20,-1,5,75,1,0,0,0,0").split(comma);
    QCOMPARE(readInto(gaugeData(), textWith(old)).tickCountFont,
             QFont(QStringLiteral("Helvetica"), 20, QFont::Bold, true));
}

void tst_GaugeTextFont::singleFontFieldIsTheFamily()
{
    // Of exactly fifty fields, the font has one; its size stays as it was.
    const QString text = textWith({QStringLiteral("Helvetica")}, QStringLiteral("#123456"));
    QCOMPARE(text.count(comma), 49);
    const gaugeData data = readInto(gaugeData(), text);
    QCOMPARE(data.tickCountFont, QFont(QStringLiteral("Helvetica"), 10));
    QCOMPARE(data.tickCountColor, QColor(0x12, 0x34, 0x56));
}

void tst_GaugeTextFont::refusedFontFallsBackToFamilyAndSize_data()
{
    QTest::addColumn<QStringList>("fontFields");
    QTest::addColumn<QString>("color");
    QTest::addColumn<QFont>("font");
    const auto helvetica = QStringLiteral("Helvetica");
    const auto white = QStringLiteral("#ffffff");
    QTest::newRow("three fields") << QStringList{helvetica, QStringLiteral("12"), QStringLiteral("3")}
                                  << white << QFont(helvetica, 12);
    QTest::newRow("eighteen fields") << QStringList{helvetica, QStringLiteral("12")} +
                                            QStringList(16, QStringLiteral("0"))
                                     << white << QFont(helvetica, 12);
    QTest::newRow("size that is none")
        << QStringList{helvetica, QStringLiteral("big"), QStringLiteral("3")} << white << QFont(helvetica, 0);
    QTest::newRow("broken size") << QStringList{helvetica, QStringLiteral("12.5"), QStringLiteral("3")}
                                 << white << QFont(helvetica, 0);
    QTest::newRow("no family") << QStringList{QString(), QStringLiteral("12")} << white
                               << QFont(QString(), 12);
    QTest::newRow("no family, and the colour in place of the size")
        << QStringList{QString()} << white << QFont(QString(), 0);
    QTest::newRow("no family, and a number in place of the colour")
        << QStringList{QString()} << QStringLiteral("17") << QFont(QString(), 17);
}

void tst_GaugeTextFont::refusedFontFallsBackToFamilyAndSize()
{
    QFETCH(const QStringList, fontFields);
    QFETCH(const QString, color);
    QFETCH(const QFont, font);
    expectRefusedFont();
    QCOMPARE(readInto(sampleLayer(), textWith(fontFields, color)).tickCountFont, font);
}

void tst_GaugeTextFont::colorIsTheLastOfManyFields()
{
    const QStringList font(200, QStringLiteral("7"));
    expectRefusedFont();
    const gaugeData data = readInto(gaugeData(), textWith(font, QStringLiteral("#123456")));
    QCOMPARE(data.tickCountColor, QColor(0x12, 0x34, 0x56));
    QCOMPARE(data.tickCountFont, QFont(QStringLiteral("7"), 7));
}

ADD_TEST_CLASS(tst_GaugeTextFont)
#include "tst_gaugetextfont.moc"
