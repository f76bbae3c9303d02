// Reads a gauge file, writes it, reads it again, and draws it.

#include "gaugemutator.h"
#include "gaugeoracle.h"
#include "model/gaugefile.h"
#include "render/gaugepainter.h"
#include "render/imageexport.h"
#include "render/keyframes.h"
#include "support/random.h"
#include "support/records.h"
#include "target.h"
#include "values.h"

#include <QBuffer>
#include <QGuiApplication>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QPainter>
#include <QXmlStreamReader>

#include <algorithm>
#include <array>
#include <cmath>

namespace {

bool isJson(const QByteArray &bytes)
{
    return bytes.trimmed().startsWith('{');
}

QList<gaugeLayer> read(const QByteArray &bytes)
{
    const QString untouched = QStringLiteral("untouched");
    QList<gaugeLayer> layers(1);
    QString error = untouched;
    const bool succeeded = gaugeFile::read(bytes, &layers, &error);
    require(succeeded == !layers.isEmpty(), "the list is empty after a failure and only then");
    require(succeeded == (error == untouched), "the error is set after a failure and only then");
    require(!error.isEmpty(), "an error has a text");
    require(!gaugeFile::read(bytes, nullptr, &error), "reading without a list fails");
    return layers;
}

void checkLayers(const QByteArray &bytes, const QList<gaugeLayer> &layers)
{
    const QByteArray trimmed = bytes.trimmed();
    if (!isJson(trimmed)) {
        const QString text = QString::fromUtf8(trimmed);
        require(layers.size() == (hasEnoughFields(text) ? 1 : 0), "50 fields are one layer");
        if (!layers.isEmpty()) {
            require(layers.first().name.isEmpty(), "the layer of a comma-separated file has no name");
            require(differingFields(layers.first().data, expectedLayer(text, gaugeData())).isEmpty(),
                    "each field is read from its position");
        }
        return;
    }

    const QJsonArray elements =
        QJsonDocument::fromJson(trimmed).object().value(QLatin1String("layers")).toArray();
    require(layers.size() == elements.size(), "each element is a layer");
    for (qsizetype i = 0; i < layers.size(); ++i) {
        const QJsonObject element = elements.at(i).toObject();
        require(layers.at(i).name == element.value(QLatin1String("name")).toString(), "a layer has its name");
        require(differingFields(layers.at(i).data, expectedLayer(element)).isEmpty(),
                "a layer has the values of its keys");
    }
}

void checkRoundTrip(const QList<gaugeLayer> &layers)
{
    QList<gaugeLayer> again;
    require(gaugeFile::read(gaugeFile::write(layers), &again, nullptr), "a written document can be read");
    require(again.size() == layers.size(), "a written document has all layers");
    for (qsizetype i = 0; i < layers.size(); ++i) {
        // Qt writes NaN as null, and reads a text without its byte-order mark.
        QJsonObject layer = layers.at(i).data.toJson();
        layer.insert(QLatin1String("name"), layers.at(i).name);
        layer = QJsonDocument::fromJson(QJsonDocument(layer).toJson()).object();
        require(again.at(i).name == layer.value(QLatin1String("name")).toString(),
                "a written name is read back");
        require(differingFields(again.at(i).data, expectedLayer(layer)).isEmpty(),
                "a written layer is read back");
    }
}

/// The first layers with few ticks. Drawing many millions of ticks takes long by design.
QList<gaugeData> withFewTicks(const QList<gaugeLayer> &layers)
{
    constexpr std::array maxCounts{12, 5, 4};
    QList<gaugeData> result;
    for (const gaugeLayer &layer : layers.first(std::min<qsizetype>(layers.size(), 6))) {
        result.append(layer.data);
        for (size_t ring = 0; ring < maxCounts.size(); ++ring)
            result.last().divisionCount[ring] = std::min(layer.data.divisionCount[ring], maxCounts[ring]);
    }
    return result;
}

void checkImage(const QList<gaugeData> &layers, int size)
{
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    paintGauge(painter, size, layers);
    const QTransform transform = painter.worldTransform();
    const double scale = size / 512.0;
    for (const double difference : {transform.m11() - scale, transform.m12(), transform.m21(),
                                    transform.m22() - scale, transform.dx(), transform.dy()})
        require(std::abs(difference) < 1e-3, "the transform is the same after drawing");
}

void checkSvg(const QList<gaugeData> &layers, int size, const PictureStyle &style)
{
    QBuffer svg;
    svg.open(QIODevice::WriteOnly);
    require(writeSvg(svg, size, layers, style), "an SVG is written");
    QXmlStreamReader reader(svg.data());
    while (!reader.atEnd())
        reader.readNext();
    require(!reader.hasError(), "an SVG is well-formed XML");
}

void checkPdf(const QList<gaugeData> &layers, int size, const PictureStyle &style)
{
    QBuffer pdf;
    pdf.open(QIODevice::WriteOnly);
    require(writePdf(pdf, size, layers, style), "a PDF is written");
}

/// Draws in one of the formats. @a choice depends on the input only.
void checkDrawing(QList<gaugeData> layers, uint choice)
{
    constexpr std::array sizes{64, 1, 7, 128};
    const int size = sizes[choice / 16 % sizes.size()];
    if (choice % 16 > 3) {
        checkImage(layers, size);
        return;
    }
    const PictureStyle style{.millimetres = choice / 64 % 2 == 0 ? 80.0 : 0.0,
                             .textAsPaths = choice / 128 % 2 == 0};
    for (gaugeData &layer : layers) // long labels take long as paths
        layer.tickCountDecimalPlaces = std::min(layer.tickCountDecimalPlaces, 20);
    if (choice % 4 == 0)
        checkPdf(layers, size, style);
    else
        checkSvg(layers, size, style);
}

void checkKeyframes(const QList<gaugeData> &layers)
{
    for (const gaugeData &layer : layers) {
        const int divisions = layer.divisionCount[0];
        const qsizetype ticks = std::abs(layer.angleLength) >= 360.0 ? divisions : divisions + 1;
        require(keyframes(layer).size() == (divisions < 1 ? 0 : ticks), "each primary tick has a keyframe");
        const QString table = keyframeTable({{QStringLiteral("a"), layer}});
        require(table.count(QLatin1Char('\r')) == keyframes(layer).size() + 1, "each keyframe has a line");
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int * /*argc*/, char *** /*argv*/)
{
    static int count = 1;
    static std::array<char, 5> name{"fuzz"};
    static std::array<char *, 2> arguments{name.data(), nullptr};
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static auto *application = new QGuiApplication(count, arguments.data()); // never deleted
    Q_UNUSED(application)
    prepareQt();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes = toBytes(data, size);
    const QList<gaugeLayer> layers = read(bytes);
    checkLayers(bytes, layers);
    if (layers.isEmpty())
        return 0;
    checkRoundTrip(layers);

    const QList<gaugeData> drawn = withFewTicks(layers);
    checkDrawing(drawn, qChecksum(bytes));
    checkKeyframes(drawn);
    QCoreApplication::processEvents(); // lets Qt's timer clear the font cache
    return 0;
}

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t maxSize, unsigned int seed)
{
    Random random(seed);
    QByteArray document = toBytes(data, size);
    const bool json = isJson(document);
    switch (random.below(16)) {
    case 0:
        return LLVMFuzzerMutate(data, size, maxSize);
    case 1:
        damageBytes(document, random);
        break;
    case 2:
    case 3:
        document = someGaugeDocument(random);
        break;
    case 4:
    case 5:
        document = someGaugeText(random);
        break;
    default:
        // Texts are shorter than JSON and would soon be most of the corpus.
        document = json || !random.oneIn(4) ? damagedGaugeDocument(document, random)
                                            : damagedGaugeText(document, random);
        break;
    }
    return store(document, data, maxSize);
}

extern "C" size_t LLVMFuzzerCustomCrossOver(const uint8_t *data1, size_t size1, const uint8_t *data2,
                                            size_t size2, uint8_t *out, size_t maxOutSize, unsigned int seed)
{
    Random random(seed);
    const QByteArray first = toBytes(data1, size1);
    const QByteArray second = toBytes(data2, size2);
    return store(isJson(first) || isJson(second) ? joinedGaugeDocuments(first, second, random)
                                                 : joinedGaugeTexts(first, second, random),
                 out, maxOutSize);
}
