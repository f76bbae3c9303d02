#include "model/gaugedata.h"
#include "render/gaugepainter.h"
#include "render/imageexport.h"
#include "support/namedvalues.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QBuffer>
#include <QFile>
#include <QImage>
#include <QImageReader>
#include <QPainter>
#include <QSvgGenerator>
#include <QTemporaryDir>
#include <QTest>
#include <QXmlStreamReader>

using namespace Qt::StringLiterals;

namespace {

gaugeData typicalLayer()
{
    gaugeData layer;
    layer.startAngle = -135.0;
    layer.angleLength = 270.0;
    layer.divisionCount = {10, 2, 5};
    layer.divisionLineWidth = {4.0, 2.0, 0.0};
    layer.arcAngleLength = {150.0, 60.0, 60.0, 0.0};
    layer.arcWidth = {12.0, 12.0, 12.0, 0.0};
    layer.tickCountFont.setBold(true);
    return layer;
}

/// Paints a stack on a transparent image.
QImage painted(const QList<gaugeData> &layers, int size)
{
    QImage image(size, size, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    paintGauge(painter, size, layers);
    return image;
}

QByteArray png(const QList<gaugeData> &layers, int size)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    return writePng(buffer, size, layers) ? buffer.data() : QByteArray();
}

QByteArray svg(const QList<gaugeData> &layers, int size)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    return writeSvg(buffer, size, layers) ? buffer.data() : QByteArray();
}

/// Returns an attribute of the root element of an SVG.
QString svgAttribute(const QByteArray &document, const QString &name)
{
    QXmlStreamReader reader(document);
    reader.readNextStartElement();
    return reader.attributes().value(name).toString();
}

/// Returns the text of an SVG's first element of this name.
QString svgText(const QByteArray &document, const QString &element)
{
    QXmlStreamReader reader(document);
    while (!reader.atEnd()) {
        if (reader.readNext() == QXmlStreamReader::StartElement && reader.name() == element)
            return reader.readElementText();
    }
    return {};
}

/// Returns the font families of an SVG's texts, in order. Empty when the SVG is not well-formed.
QStringList textFamilies(const QByteArray &document)
{
    QXmlStreamReader reader(document);
    QStringList families;
    while (!reader.atEnd()) {
        if (reader.readNext() == QXmlStreamReader::StartElement && reader.name() == "text"_L1)
            families.append(reader.attributes().value("font-family"_L1).toString());
    }
    return reader.hasError() ? QStringList() : families;
}

/// Returns a layer with one label in a font of this family.
gaugeData layerLabelledIn(const QString &family)
{
    gaugeData layer;
    layer.divisionCount[0] = 0;
    layer.tickCountFont = QFont(family, 10);
    return layer;
}

/// A device that opens but takes nothing, like a full disk.
class FullDevice : public QIODevice
{
protected:
    qint64 readData(char * /*data*/, qint64 /*size*/) override { return -1; }
    qint64 writeData(const char * /*data*/, qint64 /*size*/) override { return -1; }
};

} // namespace

/// A stack of layers as a PNG and as an SVG.
class tst_ImageExport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void pngIsSquareAndTransparent_data();
    void pngIsSquareAndTransparent();
    void pngIsWhatThePainterPaints_data();
    void pngIsWhatThePainterPaints();
    void pngOfNoLayersHoldsOnlyTheDot();
    void svgHasTheChosenSize_data();
    void svgHasTheChosenSize();
    void svgIsTitledAndDescribed();
    void svgIsWhatThePainterPaints();
    void svgOfNoLayersHoldsOnlyTheDot();
    void svgNamesAnyFamily_data();
    void svgNamesAnyFamily();
    void svgTellsFamiliesApart();
    void writesFiles();
    void deviceThatIsNotOpen();
    void deviceThatCannotBeWritten();
    void deviceThatIsFull();
    void sizeThatGivesNoPicture_data();
    void sizeThatGivesNoPicture();
};

void tst_ImageExport::pngIsSquareAndTransparent_data()
{
    QTest::addColumn<int>("size");
    for (const int size : {64, 512, 544, 4096})
        QTest::addRow("%d", size) << size;
}

void tst_ImageExport::pngIsSquareAndTransparent()
{
    QFETCH(const int, size);
    const QByteArray bytes = png({typicalLayer()}, size);
    QVERIFY(bytes.startsWith("\x89PNG\r\n\x1a\n"));
    const QImage image = QImage::fromData(bytes, "png");
    QCOMPARE(image.size(), QSize(size, size));
    QVERIFY(image.hasAlphaChannel());
    for (const QPoint &corner :
         {QPoint(0, 0), QPoint(size - 1, 0), QPoint(0, size - 1), QPoint(size - 1, size - 1)})
        QCOMPARE(image.pixelColor(corner).alpha(), 0);
    QVERIFY(image.pixelColor(size / 2, size / 2).alpha() > 0);
}

void tst_ImageExport::pngIsWhatThePainterPaints_data()
{
    QTest::addColumn<int>("size");
    QTest::newRow("preview") << 512;
    QTest::newRow("double") << 1024;
    QTest::newRow("odd") << 333;
}

void tst_ImageExport::pngIsWhatThePainterPaints()
{
    QFETCH(const int, size);
    gaugeData over = typicalLayer();
    over.arcColor[0] = Qt::magenta;
    over.arcRadius[0] = 0.4;
    const QList<gaugeData> layers{typicalLayer(), over};
    const QImage image = QImage::fromData(png(layers, size), "png");
    QCOMPARE(image.convertToFormat(QImage::Format_ARGB32), painted(layers, size));
}

void tst_ImageExport::pngOfNoLayersHoldsOnlyTheDot()
{
    const QImage image = QImage::fromData(png({}, 512), "png").convertToFormat(QImage::Format_ARGB32);
    int marked = 0;
    for (int y = 0; y < 512; ++y) {
        for (int x = 0; x < 512; ++x) {
            if (image.pixelColor(x, y).alpha() == 0)
                continue;
            ++marked;
            QVERIFY(QRect(252, 252, 8, 8).contains(x, y));
        }
    }
    // A disc 6 pixels wide with a line of one pixel around it.
    QVERIFY(marked >= 28);
}

void tst_ImageExport::svgHasTheChosenSize_data()
{
    QTest::addColumn<int>("size");
    for (const int size : {64, 512, 1024, 4096})
        QTest::addRow("%d", size) << size;
}

void tst_ImageExport::svgHasTheChosenSize()
{
    QFETCH(const int, size);
    const QByteArray document = svg({typicalLayer()}, size);
    const QString number = QString::number(size);
    QCOMPARE(svgAttribute(document, u"viewBox"_s), u"0 0 %1 %1"_s.arg(number));
    // Width and height are lengths; at 96 dots per inch a dot is 0.2645833 mm.
    const QString width = svgAttribute(document, u"width"_s);
    QCOMPARE(svgAttribute(document, u"height"_s), width);
    QVERIFY(width.endsWith("mm"_L1));
    QVERIFY(qAbs(width.chopped(2).toDouble() - size * 25.4 / 96.0) < 0.01);
}

void tst_ImageExport::svgIsTitledAndDescribed()
{
    const QByteArray document = svg({typicalLayer()}, 512);
    QCOMPARE(svgText(document, u"title"_s), u"Corvalence 2 Gauge"_s);
    QCOMPARE(svgText(document, u"desc"_s), u"A gauge generated in Corvalence 2Saved to SVG."_s);
}

void tst_ImageExport::svgIsWhatThePainterPaints()
{
    const QList<gaugeData> layers{typicalLayer(), gaugeData()};
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QSvgGenerator generator;
    generator.setOutputDevice(&buffer);
    generator.setSize(QSize(1024, 1024));
    generator.setViewBox(QRect(0, 0, 1024, 1024));
    generator.setResolution(96);
    generator.setTitle(u"Corvalence 2 Gauge"_s);
    generator.setDescription(u"A gauge generated in Corvalence 2Saved to SVG."_s);
    QPainter painter(&generator);
    paintGauge(painter, 1024, layers);
    painter.end();
    QCOMPARE(svg(layers, 1024), buffer.data());
}

void tst_ImageExport::svgOfNoLayersHoldsOnlyTheDot()
{
    QXmlStreamReader reader(svg({}, 512));
    QStringList shapes;
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        const QString name = reader.name().toString();
        if (name != "svg"_L1 && name != "g"_L1 && name != "title"_L1 && name != "desc"_L1 &&
            name != "defs"_L1)
            shapes.append(name);
    }
    QVERIFY2(!reader.hasError(), qPrintable(reader.errorString()));
    QCOMPARE(shapes.size(), 1);
}

void tst_ImageExport::svgNamesAnyFamily_data()
{
    QTest::addColumn<QString>("family");
    QTest::addColumn<QString>("named");
    const auto row = [](const char *title, const QString &family, const QString &named) {
        QTest::newRow(title) << family << named;
    };
    row("plain", u"DejaVu Sans"_s, u"DejaVu Sans"_s);
    row("quotes", u"\"Dial\" Sans"_s, u"\"Dial\" Sans"_s);
    row("ampersand", u"Dial & Sons"_s, u"Dial & Sons"_s);
    row("what looks like a reference", u"Dial &amp; Sons"_s, u"Dial &amp; Sons"_s);
    row("angle brackets", u"<Dial>"_s, u"<Dial>"_s);
    row("markup behind half a surrogate pair", QChar(0xd800) + u"\"><script>"_s, u"\ufffd\"><script>"_s);
    row("half a surrogate pair at the end", u"\"Dial\""_s + QChar(0xd800), u"\"Dial\"\ufffd"_s);
    // XML does not allow these.
    row("control characters", u"Di\x01\x1b"_s + u"al"_s, u"Dial"_s);
    row("noncharacters", u"Di\ufffe\uffff"_s + u"al"_s, u"Dial"_s);
}

void tst_ImageExport::svgNamesAnyFamily()
{
    QFETCH(const QString, family);
    QFETCH(const QString, named);
    QCOMPARE(textFamilies(svg({layerLabelledIn(family)}, 512)), QStringList{named});
}

void tst_ImageExport::svgTellsFamiliesApart()
{
    const QStringList families{u"Dial&"_s, u"A Dial&"_s, u"Dial&\" A"_s, u"Plain"_s, u"Dial&"_s};
    QList<gaugeData> layers;
    for (const QString &family : families)
        layers.append(layerLabelledIn(family));
    QCOMPARE(textFamilies(svg(layers, 512)), families);
}

void tst_ImageExport::writesFiles()
{
    const QTemporaryDir folder;
    QFile pngFile(folder.filePath(u"dial.png"_s));
    QVERIFY(pngFile.open(QIODevice::WriteOnly));
    QVERIFY(writePng(pngFile, 128, {typicalLayer()}));
    pngFile.close();
    QCOMPARE(QImageReader::imageFormat(pngFile.fileName()), QByteArray("png"));

    QFile svgFile(folder.filePath(u"dial.svg"_s));
    QVERIFY(svgFile.open(QIODevice::WriteOnly));
    QVERIFY(writeSvg(svgFile, 128, {typicalLayer()}));
    svgFile.close();
    QVERIFY(svgFile.open(QIODevice::ReadOnly));
    QCOMPARE(svgFile.readAll(), svg({typicalLayer()}, 128));
}

void tst_ImageExport::deviceThatIsNotOpen()
{
    QBuffer buffer;
    QVERIFY(!writePng(buffer, 64, {}));
    QVERIFY(!writeSvg(buffer, 64, {}));
    QVERIFY(!writePdf(buffer, 64, {}));
    QVERIFY(!buffer.isOpen());
    QVERIFY(buffer.data().isEmpty());
}

void tst_ImageExport::deviceThatCannotBeWritten()
{
    QBuffer buffer;
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    QVERIFY(!writePng(buffer, 64, {}));
    QVERIFY(!writeSvg(buffer, 64, {}));
    QVERIFY(!writePdf(buffer, 64, {}));
}

void tst_ImageExport::deviceThatIsFull()
{
    FullDevice device;
    QVERIFY(device.open(QIODevice::WriteOnly));
    QVERIFY(!writePng(device, 64, {}));
    QVERIFY(!writeSvg(device, 64, {}));
    QVERIFY(!writePdf(device, 64, {}));
}

void tst_ImageExport::sizeThatGivesNoPicture_data()
{
    QTest::addColumn<int>("size");
    QTest::newRow("nothing") << 0;
    QTest::newRow("negative") << -64;
    QTest::newRow("one too large") << 32768;
    QTest::newRow("max int") << maxInt;
}

void tst_ImageExport::sizeThatGivesNoPicture()
{
    QFETCH(const int, size);
    QBuffer buffer;
    QVERIFY(buffer.open(QIODevice::WriteOnly));
    QVERIFY(!writePng(buffer, size, {}));
    QVERIFY(buffer.data().isEmpty());
}

ADD_TEST_CLASS(tst_ImageExport)
#include "tst_imageexport.moc"
