// What reading and writing gauge documents costs beside the least that Qt itself needs for the same bytes.

#include "compare.h"
#include "model/gaugefile.h"

#include <QJsonDocument>

namespace {

/// A gauge of @a count layers, no two alike, with values as the window's controls give them: at most three
/// decimals, so that numbers are as long in the file as users' are.
QList<gaugeLayer> gaugeOf(int count)
{
    QList<gaugeLayer> layers;
    layers.reserve(count);
    for (int i = 0; i < count; ++i) {
        gaugeLayer layer;
        layer.name = QStringLiteral("Layer %1").arg(i + 1);
        gaugeData &data = layer.data;
        data.startAngle = i % 720 - 360;
        data.angleLength = i % 361;
        data.bias = (i % 101) / 100.0;
        data.midpointBias = i % 2 == 1;
        for (int ring = 0; ring < 3; ++ring) {
            const auto index = static_cast<size_t>(ring);
            data.divisionCount[index] = (i + 7 * ring) % 100;
            data.divisionInnerRadius[index] = ((i + ring) % 1000) / 1000.0;
            data.divisionLineWidth[index] = ((i + ring) % 64) / 4.0;
            data.divisionColor[index] = QColor::fromRgb((i * 37) % 256, (i * 11) % 256, ring * 100);
        }
        for (int arc = 0; arc < 4; ++arc) {
            const auto index = static_cast<size_t>(arc);
            data.arcStartAngle[index] = (i + 30 * arc) % 360;
            data.arcAngleLength[index] = (i + 45 * arc) % 360;
            data.arcRadius[index] = ((i + arc) % 1000) / 1000.0;
            data.arcColor[index] = QColor::fromRgb(arc * 60, (i * 37) % 256, (i * 11) % 256);
        }
        data.tickCountStart = i;
        data.tickCountIncrement = (i % 50) / 10.0;
        data.tickCountFont = QFont(QStringLiteral("DejaVu Sans"), 6 + i % 30);
        layers.append(layer);
    }
    return layers;
}

QList<gaugeLayer> read(const QByteArray &bytes)
{
    QList<gaugeLayer> layers;
    gaugeFile::read(bytes, &layers, nullptr);
    return layers;
}

/// The least that reading needs: parsing, and as many records, their values left as they are built.
QList<gaugeLayer> parseAndBuildRecords(const QByteArray &bytes, int count)
{
    const QJsonDocument document = QJsonDocument::fromJson(bytes);
    benchmark::DoNotOptimize(document.isNull());
    QList<gaugeLayer> layers;
    layers.reserve(count);
    for (int i = 0; i < count; ++i)
        layers.append(gaugeLayer());
    return layers;
}

} // namespace

bool registerBenchmarks()
{
    for (const int count : {100, 1'000, 10'000}) {
        const std::string layers = std::to_string(count);
        compare(
            "read/" + layers,
            [count] {
                return [bytes = gaugeFile::write(gaugeOf(count))] { benchmark::DoNotOptimize(read(bytes)); };
            },
            [count] {
                return [count, bytes = gaugeFile::write(gaugeOf(count))] {
                    benchmark::DoNotOptimize(parseAndBuildRecords(bytes, count));
                };
            });
        // Bare is less than the least that writing needs: the text alone, of a document that is there
        // already.
        compare(
            "write/" + layers,
            [count] {
                return [layers = gaugeOf(count)] { benchmark::DoNotOptimize(gaugeFile::write(layers)); };
            },
            [count] {
                return [document = QJsonDocument::fromJson(gaugeFile::write(gaugeOf(count)))] {
                    benchmark::DoNotOptimize(document.toJson(QJsonDocument::Indented));
                };
            });
    }
    return true;
}
