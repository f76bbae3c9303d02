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

} // namespace

/// The contents of the exporter's files: formats, sizes, layers and labels.
class tst_ExporterPictures : public ExporterTest
{
    Q_OBJECT

private Q_SLOTS:
    void writesEachFormat_data();
    void writesEachFormat();
    void writesEachSize_data();
    void writesEachSize();
    void selectsLayers_data();
    void selectsLayers();
    void namesLayersAsTheEditorDoes();
    void drawsLabelsAsTextOrAsPaths();
    void setsTheTrueSide_data();
    void setsTheTrueSide();
    void drawsAtTheTrueSize_data();
    void drawsAtTheTrueSize();
    void drawsHairlinesOnPaperOnePixelWide();
};

void tst_ExporterPictures::writesEachFormat_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("beginning");
    QTest::newRow("PNG") << u"Dial.png"_s << QByteArray("\x89PNG\r\n\x1a\n");
    QTest::newRow("SVG") << u"Dial.svg"_s << QByteArray("<?xml");
    QTest::newRow("PDF") << u"Dial.pdf"_s << QByteArray("%PDF-");
    QTest::newRow("keyframe table") << u"Dial.csv"_s << QByteArray("Layer,Tick,Angle\rDial,0,");
}

void tst_ExporterPictures::writesEachFormat()
{
    QFETCH(const QString, file);
    QFETCH(const QByteArray, beginning);
    QCOMPARE(run("-f png,svg,pdf,csv Dial.gauge").status, 0);
    QVERIFY(read(file).startsWith(beginning));
}

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

void tst_ExporterPictures::namesLayersAsTheEditorDoes()
{
    writeGauge(u"My dial.v2.gauge"_s, {u""_s, u"Scale"_s, u""_s, u""_s});
    QCOMPARE(run({u"-f"_s, u"gauge"_s, u"--to"_s, u"out.gauge"_s, u"My dial.v2.gauge"_s}).status, 0);
    QCOMPARE(layerNames(read(u"out.gauge"_s)),
             QStringList({u"My dial.v2"_s, u"Scale"_s, u"Layer 3"_s, u"Layer 4"_s}));
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

void tst_ExporterPictures::setsTheTrueSide_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<int>("size");
    QTest::addColumn<double>("millimetres");
    QTest::newRow("80 mm") << QStringList{u"--mm"_s, u"80"_s} << 512 << 80.0;
    QTest::newRow("80.5 mm at another size")
        << QStringList{u"--mm"_s, u"80.5"_s, u"--size"_s, u"2000"_s} << 2000 << 80.5;
    QTest::newRow("300 pixels per inch")
        << QStringList{u"--dpi"_s, u"300"_s, u"--size"_s, u"600"_s} << 600 << 50.8;
    QTest::newRow("the smallest") << QStringList{u"--mm"_s, u"1"_s} << 512 << 1.0;
    QTest::newRow("the largest") << QStringList{u"--mm"_s, u"5000"_s} << 512 << 5000.0;
}

void tst_ExporterPictures::setsTheTrueSide()
{
    QFETCH(const QStringList, options);
    QFETCH(const int, size);
    QFETCH(const double, millimetres);
    QCOMPARE(run(options + words("-f png,svg,pdf Dial.gauge")).status, 0);

    const QImage picture(path(u"Dial.png"_s));
    QCOMPARE(picture.width(), size);
    QCOMPARE(picture.dotsPerMeterX(), static_cast<int>(std::round(size / millimetres * 1000.0)));
    QCOMPARE(picture.dotsPerMeterY(), picture.dotsPerMeterX());

    const QString drawing = QString::fromUtf8(read(u"Dial.svg"_s));
    const auto attributes = QRegularExpression(u"<svg width=\"([0-9.]+)mm\" height=\"([0-9.]+)mm\"\\s+"
                                               "viewBox=\"0 0 ([0-9]+) ([0-9]+)\""_s)
                                .match(drawing);
    QVERIFY(attributes.hasMatch());
    QCOMPARE(attributes.captured(1).toDouble(), millimetres);
    QCOMPARE(attributes.captured(2).toDouble(), millimetres);
    QCOMPARE(attributes.captured(3).toInt(), size);

    const QString page = QString::fromLatin1(read(u"Dial.pdf"_s));
    const auto box =
        QRegularExpression(u"/MediaBox \\[([0-9.]+) ([0-9.]+) ([0-9.]+) ([0-9.]+) *\\]"_s).match(page);
    QVERIFY(box.hasMatch());
    const double wholePoints = std::ceil(millimetres / 25.4 * 72.0);
    QCOMPARE(box.captured(1).toDouble(), 0.0);
    QCOMPARE(box.captured(2).toDouble(), 0.0);
    QCOMPARE(box.captured(3).toDouble(), wholePoints);
    QCOMPARE(box.captured(4).toDouble(), wholePoints);
}

void tst_ExporterPictures::drawsAtTheTrueSize_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<double>("points"); // side of the drawing, 72 to the inch
    QTest::newRow("512 pixels of 1/96 inch") << QStringList{} << 384.0;
    QTest::newRow("1024 pixels of 1/96 inch") << QStringList{u"-s"_s, u"1024"_s} << 768.0;
    QTest::newRow("a printed size") << QStringList{u"-s"_s, u"1024"_s, u"--mm"_s, u"127"_s} << 360.0;
    QTest::newRow("a side that is not whole points")
        << QStringList{u"-s"_s, u"1024"_s, u"--mm"_s, u"80.5"_s} << 80.5 / 25.4 * 72.0;
}

void tst_ExporterPictures::drawsAtTheTrueSize()
{
    QFETCH(const QStringList, options);
    QFETCH(const double, points);
    QCOMPARE(run(options + words("-f pdf Dial.gauge")).status, 0);
    const QString commands = drawingCommands(read(u"Dial.pdf"_s));
    // The page's own scale, then the drawing's, which is left out when it is 1.
    static const QRegularExpression scale(u"\n([0-9.]+) 0 0 (-?[0-9.]+) [0-9.]+ [0-9.]+ cm\n"_s);
    double across = 1.0;
    double down = 1.0;
    int scales = 0;
    for (auto found = scale.globalMatch(commands); scales < 2 && found.hasNext(); ++scales) {
        const QRegularExpressionMatch match = found.next();
        across *= match.captured(1).toDouble();
        down *= match.captured(2).toDouble();
    }
    QVERIFY(scales > 0);
    constexpr double canvas = 512.0;
    constexpr double writtenTo = 1e-5; // the file's numbers have nine decimals
    QVERIFY2(std::abs(across * canvas - points) < writtenTo, qPrintable(QString::number(across * canvas)));
    QVERIFY2(std::abs(down * canvas + points) < writtenTo, qPrintable(QString::number(down * canvas)));
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
