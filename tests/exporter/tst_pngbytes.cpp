#include "model/gaugefile.h"
#include "render/gaugepainter.h"
#include "render/imageexport.h"
#include "support/testmain.h"
#include "support/warnings.h"
#ifdef CORVALENCE_FAST_PNG
#include "exporter/pngencoder.h"
#endif

#include <QBuffer>
#include <QDir>
#include <QImage>
#include <QImageWriter>
#include <QPainter>
#include <QRandomGenerator>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

/// The bytes of PNG pictures: those that QImageWriter writes by default.
class tst_PngBytes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void areThoseOfTheImageWriter_data();
    void areThoseOfTheImageWriter();
#ifdef CORVALENCE_FAST_PNG
    void encoderTakesAnyPixels_data();
    void encoderTakesAnyPixels();
    void encoderEndsWithAFullChunk();
    void encoderReportsAFullDevice();
#endif
};

namespace {

QByteArray writtenByQt(const QImage &image)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QImageWriter(&buffer, "png").write(image);
    return buffer.data();
}

} // namespace

void tst_PngBytes::areThoseOfTheImageWriter_data()
{
    QTest::addColumn<QString>("gauge");
    QTest::addColumn<int>("size");
    // Up to 63 pixels a picture is compressed in a smaller window.
    for (const int size : {1, 2, 63, 64, 65, 257, 1024})
        QTest::addRow("default layer, %d", size) << QString() << size;
    const QDir samples(QStringLiteral(CORVALENCE_SOURCE "/samples"));
    for (const QString &name : samples.entryList({u"*.gauge"_s}))
        QTest::newRow(qPrintable(name)) << samples.filePath(name) << 600;
}

void tst_PngBytes::areThoseOfTheImageWriter()
{
    QFETCH(const QString, gauge);
    QFETCH(const int, size);
    QList<gaugeData> stack{{}};
    if (!gauge.isEmpty()) {
        QFile file(gauge);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QList<gaugeLayer> layers;
        QVERIFY(gaugeFile::read(file.readAll(), &layers, nullptr));
        stack.clear();
        for (const gaugeLayer &layer : std::as_const(layers))
            stack.append(layer.data);
    }
    QImage image(size, size, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    paintGauge(painter, size, stack);
    painter.end();

    QBuffer picture;
    QVERIFY(picture.open(QIODevice::WriteOnly));
    QVERIFY(writePng(picture, size, stack));
    QVERIFY(picture.data() == writtenByQt(image));
}

#ifdef CORVALENCE_FAST_PNG

namespace {

bool encodesAsQt(const QImage &image)
{
    QBuffer buffer;
    return buffer.open(QIODevice::WriteOnly) && writeArgbPng(buffer, image) &&
           buffer.data() == writtenByQt(image);
}

} // namespace

void tst_PngBytes::encoderTakesAnyPixels_data()
{
    QTest::addColumn<int>("kind");
    QTest::newRow("noise") << 0;
    QTest::newRow("noise on a flat ground") << 1;
    QTest::newRow("gradients") << 2;
    QTest::newRow("blocks") << 3;
}

void tst_PngBytes::encoderTakesAnyPixels()
{
    QFETCH(const int, kind);
    QRandomGenerator random(1);
    const auto pixel = [&random, kind](int x, int y) -> QRgb {
        if (kind == 0 || (kind == 1 && random.bounded(40) == 0))
            return random.generate();
        if (kind == 2)
            return qRgba(3 * x, 2 * y, x + y, 255 - x);
        return kind == 3 && (x / 16 + y / 9) % 2 != 0 ? qRgba(200, 100, y, 128 + x % 8) : qRgba(9, 8, 7, 255);
    };
    for (int width = 64; width < 96; ++width) {
        QImage image(width, 70, QImage::Format_ARGB32);
        image.setDotsPerMeterX(1000 + width);
        image.setDotsPerMeterY(2000 + width);
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < width; ++x)
                image.setPixel(x, y, pixel(x, y));
        }
        QVERIFY2(encodesAsQt(image), qPrintable(QString::number(width)));
    }
}

void tst_PngBytes::encoderEndsWithAFullChunk()
{
    // Compressed pixels come in chunks of 8192 bytes. Noise, four bytes a pixel, is added or taken away until
    // it fills two of them exactly.
    constexpr qsizetype wanted = 2 * 8192;
    constexpr qsizetype aroundPixels = 8 + 25 + 21 + 2 * 12 + 12; // signature, header, density, chunks, end
    QRandomGenerator random(1);
    int noise = wanted / 4;
    for (int attempt = 0; attempt < 1000; ++attempt) {
        QImage image(70, 70, QImage::Format_ARGB32);
        image.fill(Qt::transparent);
        for (int i = 0; i < noise; ++i)
            image.setPixel(i % 70, i / 70, random.generate());
        const QByteArray picture = writtenByQt(image);
        const qsizetype missing = wanted - (picture.size() - aroundPixels);
        if (missing == 0 && picture.count("IDAT") == 2) {
            QVERIFY(encodesAsQt(image));
            return;
        }
        noise += static_cast<int>(std::clamp<qsizetype>(missing / 4, -50, 50));
    }
    QFAIL("no picture ended with a full chunk");
}

void tst_PngBytes::encoderReportsAFullDevice()
{
    class FullDevice : public QIODevice
    {
        qint64 readData(char *, qint64) override { return -1; }
        qint64 writeData(const char *, qint64 length) override
        {
            if (room < length)
                return -1;
            room -= length;
            return length;
        }

    public:
        qint64 room = 0;
    };
    QImage image(100, 100, QImage::Format_ARGB32);
    image.fill(Qt::red);
    const qsizetype needed = writtenByQt(image).size();
    for (const qint64 room :
         {qint64(0), qint64(8), qint64(40), qint64(60), needed - 12, needed - 1, qint64(needed)}) {
        FullDevice device;
        device.room = room;
        QVERIFY(device.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        QCOMPARE(writeArgbPng(device, image), room == needed);
    }
}

#endif

ADD_TEST_CLASS(tst_PngBytes)
#include "tst_pngbytes.moc"
