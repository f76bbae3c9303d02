#include "model/gaugedata.h"
#include "render/gaugepainter.h"
#include "render/imageexport.h"
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

#include <limits>

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

/// A stack painted straight onto a transparent picture.
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

/// An SVG's own attribute, or the text of its first element with that name.
QString svgAttribute(const QByteArray &document, const QString &name)
{
    QXmlStreamReader reader(document);
    reader.readNextStartElement();
    return reader.attributes().value(name).toString();
}

QString svgText(const QByteArray &document, const QString &element)
{
    QXmlStreamReader reader(document);
    while (!reader.atEnd()) {
        if (reader.readNext() == QXmlStreamReader::StartElement && reader.name() == element)
            return reader.readElementText();
    }
    return {};
}

/// The label fonts that an SVG's texts name, in order; empty when it is not well-formed.
QStringList textFamilies(const QByteArray &document)
{
    QXmlStreamReader reader(document);
    QStringList families;
    while (!reader.atEnd()) {
        if (reader.readNext() == QXmlStreamReader::StartElement && reader.name() == QLatin1String("text"))
            families.append(reader.attributes().value(QLatin1String("font-family")).toString());
    }
    return reader.hasError() ? QStringList() : families;
}

/// A layer with a single label, in a font of this family.
gaugeData layerLabelledIn(const QString &family)
{
    gaugeData layer;
    layer.divisionCount[0] = 0;
    layer.tickCountFont = QFont(family, 10);
    return layer;
}

/// A device like a disk without space: it opens, but takes nothing.
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
    // A disc of diameter 6 with a line of one pixel around it.
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
    QCOMPARE(svgAttribute(document, QStringLiteral("viewBox")), QStringLiteral("0 0 %1 %1").arg(number));
    // Width and height are lengths; at 96 dots per inch a dot is 0.2645833 mm.
    const QString width = svgAttribute(document, QStringLiteral("width"));
    QCOMPARE(svgAttribute(document, QStringLiteral("height")), width);
    QVERIFY(width.endsWith(QLatin1String("mm")));
    QVERIFY(qAbs(width.chopped(2).toDouble() - size * 25.4 / 96.0) < 0.01);
}

void tst_ImageExport::svgIsTitledAndDescribed()
{
    const QByteArray document = svg({typicalLayer()}, 512);
    QCOMPARE(svgText(document, QStringLiteral("title")), QStringLiteral("Corvalence 2 Gauge"));
    QCOMPARE(svgText(document, QStringLiteral("desc")),
             QStringLiteral("A gauge generated in Corvalence 2Saved to SVG."));
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
    generator.setTitle(QStringLiteral("Corvalence 2 Gauge"));
    generator.setDescription(QStringLiteral("A gauge generated in Corvalence 2Saved to SVG."));
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
        if (name != QLatin1String("svg") && name != QLatin1String("g") && name != QLatin1String("title") &&
            name != QLatin1String("desc") && name != QLatin1String("defs"))
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
    row("plain", QStringLiteral("DejaVu Sans"), QStringLiteral("DejaVu Sans"));
    row("quotes", QStringLiteral("\"Dial\" Sans"), QStringLiteral("\"Dial\" Sans"));
    row("ampersand", QStringLiteral("Dial & Sons"), QStringLiteral("Dial & Sons"));
    row("what looks like a reference", QStringLiteral("Dial &amp; Sons"), QStringLiteral("Dial &amp; Sons"));
    row("angle brackets", QStringLiteral("<Dial>"), QStringLiteral("<Dial>"));
    // XML has no way to hold these.
    row("control characters", QStringLiteral("Di\x01\x1b") + QStringLiteral("al"), QStringLiteral("Dial"));
    row("noncharacters", QStringLiteral("Di\ufffe\uffff") + QStringLiteral("al"), QStringLiteral("Dial"));
}

void tst_ImageExport::svgNamesAnyFamily()
{
    QFETCH(const QString, family);
    QFETCH(const QString, named);
    QCOMPARE(textFamilies(svg({layerLabelledIn(family)}, 512)), QStringList{named});
}

void tst_ImageExport::svgTellsFamiliesApart()
{
    const QStringList families{QStringLiteral("Dial&"), QStringLiteral("A Dial&"),
                               QStringLiteral("Dial&\" A"), QStringLiteral("Plain"), QStringLiteral("Dial&")};
    QList<gaugeData> layers;
    for (const QString &family : families)
        layers.append(layerLabelledIn(family));
    QCOMPARE(textFamilies(svg(layers, 512)), families);
}

void tst_ImageExport::writesFiles()
{
    const QTemporaryDir folder;
    QFile pngFile(folder.filePath(QStringLiteral("dial.png")));
    QVERIFY(pngFile.open(QIODevice::WriteOnly));
    QVERIFY(writePng(pngFile, 128, {typicalLayer()}));
    pngFile.close();
    QCOMPARE(QImageReader::imageFormat(pngFile.fileName()), QByteArray("png"));

    QFile svgFile(folder.filePath(QStringLiteral("dial.svg")));
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
    QTest::newRow("more than memory") << std::numeric_limits<int>::max();
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
