#include "exporter/pngfile.h"
#include "model/gaugefile.h"
#include "render/imageexport.h"
#include "support/files.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QBuffer>
#include <QDir>
#include <QImage>
#include <QRandomGenerator>
#include <QTest>
#include <QtEndian>

using namespace Qt::StringLiterals;

/// PNG files as the exporter writes them.
class tst_PngFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void showsTheEditorsPixels_data();
    void showsTheEditorsPixels();
    void keepsAnyPixels_data();
    void keepsAnyPixels();
    void keepsTheDensity();
    void writesOnlyPixelsAndDensity();
    void compressesByLevel();
    void reportsAFullDevice();
    void refusesANullImage();
};

namespace {

QByteArray pngFile(const QImage &image, int compression = defaultCompression)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    return writePngFile(buffer, image, compression) ? buffer.data() : QByteArray();
}

QImage typicalImage(int size = 200)
{
    gaugeData layer;
    layer.arcWidth[0] = 20.0;
    return gaugeImage(size, {layer});
}

/// The type and the content of a file's chunks, in order.
QList<std::pair<QByteArray, QByteArray>> chunks(const QByteArray &file)
{
    QList<std::pair<QByteArray, QByteArray>> found;
    for (qsizetype start = 8; start + 12 <= file.size();) {
        const auto size = qsizetype(qFromBigEndian<quint32>(file.constData() + start));
        found.append({file.mid(start + 4, 4), file.mid(start + 8, size)});
        start += size + 12;
    }
    return found;
}

/// A device like a disk with little space left.
class SmallDevice : public QIODevice
{
public:
    explicit SmallDevice(qint64 space)
        : m_space(space)
    {
        open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    }

protected:
    qint64 readData(char * /*data*/, qint64 /*size*/) override { return -1; }
    qint64 writeData(const char * /*data*/, qint64 size) override
    {
        if (m_space < size)
            return -1;
        m_space -= size;
        return size;
    }

private:
    qint64 m_space;
};

} // namespace

void tst_PngFile::showsTheEditorsPixels_data()
{
    QTest::addColumn<QString>("gauge");
    QTest::addColumn<int>("size");
    for (const QString &folder : {u"presets"_s, u"samples"_s, u"tests/golden/gauges"_s}) {
        const QDir gauges(QStringLiteral(CORVALENCE_SOURCE "/") + folder);
        const QStringList names = gauges.entryList({u"*.gauge"_s});
        QVERIFY(!names.isEmpty());
        for (const QString &name : names) {
            for (const int size : {64, 300, 1024})
                QTest::addRow("%s, %d", qPrintable(name), size) << gauges.filePath(name) << size;
        }
    }
}

void tst_PngFile::showsTheEditorsPixels()
{
    QFETCH(const QString, gauge);
    QFETCH(const int, size);
    QList<gaugeLayer> layers;
    QVERIFY(gaugeFile::read(readFile(gauge), &layers, nullptr));
    QList<gaugeData> stack;
    for (const gaugeLayer &layer : std::as_const(layers))
        stack.append(layer.data);

    QBuffer file;
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(writePng(file, size, stack));
    const QImage editor = QImage::fromData(file.data()).convertToFormat(QImage::Format_ARGB32);
    const QImage exporter = QImage::fromData(pngFile(gaugeImage(size, stack)));
    QCOMPARE(exporter.convertToFormat(QImage::Format_ARGB32), editor);
}

void tst_PngFile::keepsAnyPixels_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("colourCount");
    QTest::addColumn<bool>("opaque");
    QTest::addColumn<char>("colourType");
    constexpr char rgb = 2;
    constexpr char palette = 3;
    constexpr char rgbWithAlpha = 6;
    QTest::newRow("RGBA") << 300 << 20'000 << false << rgbWithAlpha;
    QTest::newRow("RGB") << 300 << 20'000 << true << rgb;
    QTest::newRow("257 colours") << 300 << 257 << false << rgbWithAlpha;
    QTest::newRow("256 colours") << 300 << 256 << false << palette;
    QTest::newRow("256 opaque colours") << 300 << 256 << true << palette;
    QTest::newRow("one colour") << 300 << 1 << false << palette;
    QTest::newRow("one pixel in a row") << 1 << 20'000 << false << palette;
    QTest::newRow("odd width") << 63 << 20'000 << false << rgbWithAlpha;
}

void tst_PngFile::keepsAnyPixels()
{
    QFETCH(const int, width);
    QFETCH(const int, colourCount);
    QFETCH(const bool, opaque);
    QFETCH(const char, colourType);
    QRandomGenerator random(1);
    QList<QRgb> colours;
    for (int i = 0; i < colourCount; ++i)
        colours.append(random.generate() | (opaque ? 0xff000000U : 0U));
    QImage image(width, 70, QImage::Format_ARGB32);
    for (int i = 0; i < width * image.height(); ++i)
        image.setPixel(i % width, i / width, colours.at(i % colourCount));

    const QByteArray file = pngFile(image);
    QCOMPARE(QImage::fromData(file).convertToFormat(QImage::Format_ARGB32), image);
    constexpr qsizetype colourTypeOffset = 9; // in the header
    QCOMPARE(chunks(file).constFirst().second.at(colourTypeOffset), colourType);
}

void tst_PngFile::keepsTheDensity()
{
    QImage image = typicalImage();
    image.setDotsPerMeterX(1234);
    image.setDotsPerMeterY(5678);
    const QImage read = QImage::fromData(pngFile(image));
    QCOMPARE(read.dotsPerMeterX(), 1234);
    QCOMPARE(read.dotsPerMeterY(), 5678);
}

void tst_PngFile::writesOnlyPixelsAndDensity()
{
    QByteArrayList types;
    for (const auto &[type, content] : chunks(pngFile(typicalImage()))) {
        if (types.isEmpty() || types.constLast() != type)
            types.append(type);
    }
    QCOMPARE(types, QByteArrayList({"IHDR", "pHYs", "IDAT", "IEND"}));
}

void tst_PngFile::compressesByLevel()
{
    const QImage image = typicalImage();
    QList<qsizetype> sizes;
    for (int level = 0; level <= maxCompression; ++level) {
        const QByteArray file = pngFile(image, level);
        QCOMPARE(QImage::fromData(file).convertToFormat(QImage::Format_ARGB32), image);
        sizes.append(file.size());
    }
    QVERIFY(sizes.at(0) > image.sizeInBytes());
    QVERIFY(sizes.at(1) < sizes.at(0) / 4);
    QVERIFY(sizes.at(maxCompression) < sizes.at(1));
}

void tst_PngFile::reportsAFullDevice()
{
    const QImage image = typicalImage();
    const qsizetype needed = pngFile(image).size();
    for (const qint64 space :
         {qint64(0), qint64(8), qint64(40), qint64(60), needed / 2, needed - 12, needed - 1}) {
        SmallDevice device(space);
        QVERIFY2(!writePngFile(device, image), qPrintable(QString::number(space)));
    }
    SmallDevice device(needed);
    QVERIFY(writePngFile(device, image));
}

void tst_PngFile::refusesANullImage()
{
    QBuffer buffer;
    QVERIFY(buffer.open(QIODevice::WriteOnly));
    QVERIFY(!writePngFile(buffer, QImage()));
    QVERIFY(buffer.data().isEmpty());
}

ADD_TEST_CLASS(tst_PngFile)
#include "tst_pngfile.moc"
