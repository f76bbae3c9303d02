// The document reader, the writer after it, the reader again, and a repaint of what was read.

#include "gaugeoracle.h"
#include "jsonmutator.h"
#include "model/gaugefile.h"
#include "promise.h"
#include "random.h"
#include "render/gaugepainter.h"
#include "render/imageexport.h"
#include "render/keyframes.h"
#include "target.h"
#include "textmutator.h"
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

/// Enough of each for every branch of the painter. Only counts are held down: a count of many millions is
/// drawn as it stands and takes its time, which is no finding.
constexpr qsizetype mostLayersPainted = 6;
constexpr std::array mostDivisions{12, 5, 4};
constexpr int mostOutlinedDecimals = 20;

bool isJson(const QByteArray &bytes)
{
    return bytes.trimmed().startsWith('{');
}

QList<gaugeLayer> read(const QByteArray &bytes)
{
    const QString untouched = QStringLiteral("untouched");
    QList<gaugeLayer> layers{gaugeLayer{QStringLiteral("left over"), {}}};
    QString error = untouched;
    const bool succeeded = gaugeFile::read(bytes, &layers, &error);
    require(succeeded == !layers.isEmpty(), "the list is empty after a failure and only then");
    require(succeeded == (error == untouched), "an error is told after a failure and only then");
    require(!error.isEmpty(), "an error has a text");

    QList<gaugeLayer> again;
    require(gaugeFile::read(bytes, &again, nullptr) == succeeded, "nobody need ask for the error");
    require(again.size() == layers.size(), "reading twice reads the same");
    require(!gaugeFile::read(bytes, nullptr, &error), "without a list nothing is read");
    return layers;
}

/// Holds what was read against the format.
void checkLayers(const QByteArray &bytes, const QList<gaugeLayer> &layers)
{
    const QByteArray trimmed = bytes.trimmed();
    if (!isJson(trimmed)) {
        const QString text = QString::fromUtf8(trimmed);
        require(layers.size() == (isOlderForm(text) ? 1 : 0), "the older form has 50 fields and one layer");
        if (!layers.isEmpty()) {
            require(layers.first().name.isEmpty(), "a layer of the older form has no name");
            require(sameRecord(layers.first().data, expectedRecord(text, gaugeData())),
                    "each field of the older form has its place");
        }
        return;
    }

    const QJsonArray elements =
        QJsonDocument::fromJson(trimmed).object().value(QLatin1String("layers")).toArray();
    require(layers.size() == elements.size(), "each element is a layer");
    for (qsizetype i = 0; i < layers.size(); ++i) {
        const QJsonObject element = elements.at(i).toObject();
        require(layers.at(i).name == element.value(QLatin1String("name")).toString(), "a layer has its name");
        require(layers.at(i).data.toJson() == expectedRecord(element), "a layer has the values of its keys");
    }
}

/// What is left of an object that Qt writes and reads again: numbers that JSON cannot hold become null, and a
/// text loses a byte-order mark at its beginning.
QJsonObject throughText(const QJsonObject &object)
{
    return QJsonDocument::fromJson(QJsonDocument(object).toJson()).object();
}

/// Writes the layers and reads them back.
void checkRoundTrip(const QList<gaugeLayer> &layers)
{
    const QByteArray written = gaugeFile::write(layers);
    QList<gaugeLayer> again;
    QString error;
    require(gaugeFile::read(written, &again, &error), "a written document can be read");
    require(again.size() == layers.size(), "a written document has all layers");
    for (qsizetype i = 0; i < layers.size(); ++i) {
        QJsonObject layer = layers.at(i).data.toJson();
        layer.insert(QLatin1String("name"), layers.at(i).name);
        layer = throughText(layer);
        require(again.at(i).name == layer.value(QLatin1String("name")).toString(),
                "a written name reads back");
        require(again.at(i).data.toJson() == expectedRecord(layer), "a written record reads back");
    }
}

QList<gaugeData> withSmallCounts(const QList<gaugeLayer> &layers)
{
    QList<gaugeData> small;
    for (const gaugeLayer &layer : layers.first(std::min(layers.size(), mostLayersPainted))) {
        small.append(layer.data);
        for (size_t ring = 0; ring < mostDivisions.size(); ++ring)
            small.last().divisionCount[ring] = std::min(layer.data.divisionCount[ring], mostDivisions[ring]);
    }
    return small;
}

void checkRepaint(const QList<gaugeData> &layers, int size)
{
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    paintGauge(painter, size, layers);
    const double scale = size / 512.0;
    const QTransform left = painter.worldTransform();
    const auto near = [](double a, double b) { return std::abs(a - b) < 1e-3; };
    require(near(left.m11(), scale) && near(left.m22(), scale) && near(left.m12(), 0) &&
                near(left.m21(), 0) && near(left.dx(), 0) && near(left.dy(), 0),
            "the transform is the same after drawing");
    painter.end();
}

void checkSvg(const QList<gaugeData> &layers, int size, const PictureStyle &style)
{
    QBuffer svg;
    svg.open(QIODevice::WriteOnly);
    require(writeSvg(svg, size, layers, style), "a memory buffer takes an SVG");
    QXmlStreamReader reader(svg.data());
    while (!reader.atEnd())
        reader.readNext();
    require(!reader.hasError(), "an SVG is well-formed XML");
}

void checkPdf(const QList<gaugeData> &layers, int size, const PictureStyle &style)
{
    QBuffer pdf;
    pdf.open(QIODevice::WriteOnly);
    require(writePdf(pdf, size, layers, style), "a memory buffer takes a PDF");
}

/// Paints in one of the forms that there are, the same for the same document.
void checkPainting(QList<gaugeData> layers, uint choice)
{
    constexpr std::array sizes{64, 1, 7, 128};
    const int size = sizes[choice / 16 % sizes.size()];
    const PictureStyle style{.millimetres = choice / 64 % 2 == 0 ? 80.0 : 0.0,
                             .textAsPaths = choice / 128 % 2 == 0};
    if (choice % 16 > 3)
        return checkRepaint(layers, size);

    for (gaugeData &layer : layers) {
        if (style.textAsPaths)
            layer.tickCountDecimalPlaces = std::min(layer.tickCountDecimalPlaces, mostOutlinedDecimals);
    }
    return choice % 4 == 0 ? checkPdf(layers, size, style) : checkSvg(layers, size, style);
}

void checkKeyframes(const QList<gaugeData> &layers)
{
    QList<gaugeLayer> named;
    qsizetype lines = 1;
    for (const gaugeData &layer : layers) {
        named.append({QStringLiteral("a\r\"b\""), layer});
        const qsizetype ticks = keyframes(layer).size();
        const int divisions = layer.divisionCount[0];
        const qsizetype expected = std::abs(layer.angleLength) >= 360.0 ? divisions : divisions + 1;
        require(ticks == (divisions < 1 ? 0 : expected), "each primary tick has its keyframe");
        lines += 2 * ticks; // the quoted name holds a carriage return of its own
    }
    require(keyframeTable(named).count(QLatin1Char('\r')) == lines, "each keyframe has its line");
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int * /*argc*/, char *** /*argv*/)
{
    static int count = 1;
    static std::array<char, 5> name{"fuzz"};
    static std::array<char *, 2> arguments{name.data(), nullptr};
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static auto *application = new QGuiApplication(count, arguments.data()); // lives as long as the process
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

    const QList<gaugeData> small = withSmallCounts(layers);
    checkPainting(small, qChecksum(bytes));
    checkKeyframes(small);
    QCoreApplication::processEvents(); // Qt's font cache is cut back by a timer
    return 0;
}

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t maxSize, unsigned int seed)
{
    Random random(seed);
    QByteArray document = toBytes(data, size);
    const bool json = isJson(document);
    if (!json && !random.oneIn(4)) // or the older form, being short, would crowd out today's
        return store(someGaugeDocument(random), data, maxSize);
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
        document = someOlderForm(random);
        break;
    default:
        document = json ? damagedGaugeDocument(document, random) : damagedOlderForm(document, random);
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
    const bool older = !isJson(first) && !isJson(second);
    return store(older ? crossedOlderForms(first, second, random)
                       : crossedGaugeDocuments(first, second, random),
                 out, maxOutSize);
}
