#include "exporterrun.h"
#include "model/gaugefile.h"
#include "support/testmain.h"

#include <QImage>
#include <QRegularExpression>
#include <QTest>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

/// What the first page of a PDF is drawn with.
QString drawingCommands(const QByteArray &document)
{
    const qsizetype stream = document.indexOf("stream\n") + 7;
    QByteArray compressed = document.mid(stream, document.indexOf("endstream", stream) - stream);
    // qUncompress() wants the length first; too small a guess is corrected by it.
    compressed.prepend(QByteArray("\0\0\x10\0", 4));
    return QString::fromLatin1(qUncompress(compressed));
}

/// Compares the side of the drawing on the page of a PDF, in points.
void compareSide(const QByteArray &document, double points)
{
    // The page's own scale, then the drawing's, which is left out when it is 1.
    static const QRegularExpression scale(u"\n([0-9.]+) 0 0 (-?[0-9.]+) [0-9.]+ [0-9.]+ cm\n"_s);
    constexpr double canvas = 512.0;
    double width = canvas;
    double height = canvas;
    int scaleCount = 0;
    for (auto found = scale.globalMatch(drawingCommands(document)); scaleCount < 2 && found.hasNext();
         ++scaleCount) {
        const QRegularExpressionMatch match = found.next();
        width *= match.captured(1).toDouble();
        height *= match.captured(2).toDouble();
    }
    QVERIFY(scaleCount > 0);
    constexpr double maxError = 1e-5; // the file's numbers have nine decimals
    QVERIFY2(std::abs(width - points) < maxError, qPrintable(QString::number(width)));
    QVERIFY2(std::abs(height + points) < maxError, qPrintable(QString::number(height))); // upwards
}

} // namespace

/// The contents of the exporter's files: formats, sizes, layers and labels.
class tst_ExporterPictures : public ExporterTest
{
    Q_OBJECT

private Q_SLOTS:
    void writesEachSize_data();
    void writesEachSize();
    void selectsLayers_data();
    void selectsLayers();
    void drawsLabelsAsTextOrAsPaths();
    void setsThePrintedSide_data();
    void setsThePrintedSide();
    void drawsPixelsOnPaper_data();
    void drawsPixelsOnPaper();
    void drawsHairlinesOnPaperOnePixelWide();
};

void tst_ExporterPictures::writesEachSize_data()
{
    QTest::addColumn<QMap<QString, int>>("pictures");
    using Pictures = QMap<QString, int>;
    QTest::newRow("") << Pictures{{u"Dial"_s, 512}};
    QTest::newRow("-s 64") << Pictures{{u"Dial"_s, 64}};
    QTest::newRow("-s 1001") << Pictures{{u"Dial"_s, 1001}};
    QTest::newRow("-s 128,64 -s 300")
        << Pictures{{u"Dial-64"_s, 64}, {u"Dial-128"_s, 128}, {u"Dial-300"_s, 300}};
    QTest::newRow("--mm 50.8 --dpi 100") << Pictures{{u"Dial"_s, 200}};
}

void tst_ExporterPictures::writesEachSize()
{
    using Pictures = QMap<QString, int>;
    QFETCH(const Pictures, pictures);
    QCOMPARE(run(words(QTest::currentDataTag()) + words("-f png,svg Dial.gauge")).status, 0);
    for (const auto &[name, size] : pictures.asKeyValueRange()) {
        const QImage picture(path(name + u".png"_s));
        QCOMPARE(picture.size(), QSize(size, size));
        QCOMPARE(qAlpha(picture.pixel(0, 0)), 0);
        QVERIFY(read(name + u".svg"_s).contains(u"viewBox=\"0 0 %1 %1\""_s.arg(size).toUtf8()));
    }
}

void tst_ExporterPictures::selectsLayers_data()
{
    QTest::addColumn<QStringList>("values");
    QTest::addColumn<QStringList>("expected");
    const auto row = [](const char *title, const QStringList &values, const QStringList &expected) {
        QTest::newRow(title) << values << expected;
    };
    row("all", {}, {u"Face"_s, u"Scale, fine"_s, u"2"_s, u"Needle"_s, u"Face"_s});
    row("one name", {u"Needle"_s}, {u"Needle"_s});
    row("one number", {u"4"_s}, {u"Needle"_s});
    row("several, in the order of the gauge", {u"Needle,1"_s}, {u"Face"_s, u"Needle"_s});
    row("spaces around the comma", {u"4 , 1"_s}, {u"Face"_s, u"Needle"_s});
    row("a name of two layers", {u"Face"_s}, {u"Face"_s, u"Face"_s});
    row("a name with a comma", {u"Scale, fine"_s}, {u"Scale, fine"_s});
    row("the option twice", {u"Scale, fine"_s, u"Needle"_s}, {u"Scale, fine"_s, u"Needle"_s});
    row("a name that is a number", {u"2"_s}, {u"2"_s});
    row("the last number", {u"5"_s}, {u"Face"_s});
    row("one layer twice", {u"4,Needle"_s}, {u"Needle"_s});
}

void tst_ExporterPictures::selectsLayers()
{
    QFETCH(const QStringList, values);
    QFETCH(const QStringList, expected);
    QStringList arguments = words("-f gauge,png -o out Five.gauge");
    for (const QString &value : values)
        arguments << u"--layers"_s << value;
    writeGauge(u"Five.gauge"_s, {u"Face"_s, u"Scale, fine"_s, u"2"_s, u"Needle"_s, u"Face"_s});
    QCOMPARE(run(arguments).err, QByteArray());
    QCOMPARE(layerNames(read(u"out/Five.gauge"_s)), expected);
    QCOMPARE(run("-o again out/Five.gauge").status, 0);
    QVERIFY(read(u"again/Five.png"_s) == read(u"out/Five.png"_s)); // only these layers are drawn
}

void tst_ExporterPictures::drawsLabelsAsTextOrAsPaths()
{
    QCOMPARE(run("-f svg,png -o text Dial.gauge").status, 0);
    QCOMPARE(run("-f svg,png -o paths --text-as-paths Dial.gauge").status, 0);
    const QByteArray text = read(u"text/Dial.svg"_s);
    const QByteArray paths = read(u"paths/Dial.svg"_s);
    QCOMPARE(text.count("<text "), 4); // three divisions of a partial sweep
    QCOMPARE(paths.count("<text "), 0);
    QCOMPARE(paths.count("<path "), text.count("<path ") + 4);
    QVERIFY(read(u"paths/Dial.png"_s) == read(u"text/Dial.png"_s));
}

void tst_ExporterPictures::setsThePrintedSide_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<double>("millimetres");
    QTest::newRow("--mm 80") << 512 << 80.0;
    QTest::newRow("--mm 80.5 --size 2000") << 2000 << 80.5;
    QTest::newRow("--dpi 300 --size 600") << 600 << 50.8;
    QTest::newRow("--mm 1") << 512 << 1.0;
    QTest::newRow("--mm 5000") << 512 << 5000.0;
}

void tst_ExporterPictures::setsThePrintedSide()
{
    QFETCH(const int, size);
    QFETCH(const double, millimetres);
    QCOMPARE(run(words(QTest::currentDataTag()) + words("-f png,svg,pdf Dial.gauge")).status, 0);

    const QImage picture(path(u"Dial.png"_s));
    QCOMPARE(picture.width(), size);
    QCOMPARE(picture.dotsPerMeterX(), static_cast<int>(std::round(size / millimetres * 1000.0)));
    QCOMPARE(picture.dotsPerMeterY(), picture.dotsPerMeterX());

    const QString drawing = QString::fromUtf8(read(u"Dial.svg"_s)).simplified();
    QVERIFY(drawing.contains(
        u"<svg width=\"%1mm\" height=\"%1mm\" viewBox=\"0 0 %2 %2\""_s.arg(millimetres).arg(size)));

    const double points = millimetres / 25.4 * 72.0;
    const QByteArray page = read(u"Dial.pdf"_s);
    QVERIFY(page.contains(u"/MediaBox [0 0 %1.000000 %1.000000]"_s.arg(std::ceil(points)).toLatin1()));
    compareSide(page, points);
}

void tst_ExporterPictures::drawsPixelsOnPaper_data()
{
    QTest::addColumn<double>("points");
    QTest::newRow("-s 512") << 384.0; // 96 pixels per inch
    QTest::newRow("-s 1024") << 768.0;
}

void tst_ExporterPictures::drawsPixelsOnPaper()
{
    QFETCH(const double, points);
    QCOMPARE(run(words(QTest::currentDataTag()) + words("-f pdf Dial.gauge")).status, 0);
    compareSide(read(u"Dial.pdf"_s), points);
}

void tst_ExporterPictures::drawsHairlinesOnPaperOnePixelWide()
{
    // All lines of a default layer are hairlines: one device pixel on a screen, next to nothing in print.
    QCOMPARE(run("-f pdf -s 1024 Dial.gauge").status, 0);
    const QString commands = drawingCommands(read(u"Dial.pdf"_s));
    // Each width holds until the next; what is stroked with it ends in S, or in B* when it is filled too.
    static const QRegularExpression stroke(u"\n([0-9.]+) w (?:(?! w ).)*?\n(?:S|B\\*)\n"_s,
                                           QRegularExpression::DotMatchesEverythingOption);
    int strokes = 0;
    for (auto found = stroke.globalMatch(commands); found.hasNext(); ++strokes)
        QCOMPARE(found.next().captured(1).toDouble(), 0.5); // canvas units: half a pixel each at this size
    QCOMPARE(strokes, 6);                                   // the dot, an arc and four ticks
}

ADD_TEST_CLASS(tst_ExporterPictures)
#include "tst_exporterpictures.moc"
