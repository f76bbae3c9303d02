// What reading and writing gauge documents costs beside the least that Qt itself needs for the same bytes.
//
// Each kind of work is one function that is never inlined, so that a profiler can count its instructions
// alone; README.md beside this file tells how.

#include "gaugefile.h"

#include <QJsonDocument>

#include <benchmark/benchmark.h>

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

[[gnu::noinline]] QList<gaugeLayer> readGauge(const QByteArray &bytes)
{
    QList<gaugeLayer> layers;
    gaugeFile::read(bytes, &layers, nullptr);
    return layers;
}

[[gnu::noinline]] QByteArray writeGauge(const QList<gaugeLayer> &layers)
{
    return gaugeFile::write(layers);
}

/// The least that reading needs: parsing, and as many records, their values left as they are built.
[[gnu::noinline]] QList<gaugeLayer> parseAndBuildRecords(const QByteArray &bytes, qsizetype count)
{
    const QJsonDocument document = QJsonDocument::fromJson(bytes);
    benchmark::DoNotOptimize(document.isNull());
    QList<gaugeLayer> layers;
    layers.reserve(count);
    for (qsizetype i = 0; i < count; ++i)
        layers.append(gaugeLayer());
    return layers;
}

/// Less than the least that writing needs: the text alone, of a document that is there already.
[[gnu::noinline]] QByteArray serialiseDocument(const QJsonDocument &document)
{
    return document.toJson(QJsonDocument::Indented);
}

void report(benchmark::State &state)
{
    state.SetItemsProcessed(state.iterations() * state.range(0));
    state.SetComplexityN(state.range(0));
}

void reading(benchmark::State &state)
{
    const QByteArray bytes = gaugeFile::write(gaugeOf(static_cast<int>(state.range(0))));
    while (state.KeepRunning())
        benchmark::DoNotOptimize(readGauge(bytes));
    report(state);
}

void readingBare(benchmark::State &state)
{
    const QByteArray bytes = gaugeFile::write(gaugeOf(static_cast<int>(state.range(0))));
    while (state.KeepRunning())
        benchmark::DoNotOptimize(parseAndBuildRecords(bytes, state.range(0)));
    report(state);
}

void writing(benchmark::State &state)
{
    const QList<gaugeLayer> layers = gaugeOf(static_cast<int>(state.range(0)));
    while (state.KeepRunning())
        benchmark::DoNotOptimize(writeGauge(layers));
    report(state);
}

void writingBare(benchmark::State &state)
{
    const QJsonDocument document =
        QJsonDocument::fromJson(gaugeFile::write(gaugeOf(static_cast<int>(state.range(0)))));
    while (state.KeepRunning())
        benchmark::DoNotOptimize(serialiseDocument(document));
    report(state);
}

void sizes(benchmark::internal::Benchmark *benchmark)
{
    benchmark->Arg(100)->Arg(1000)->Arg(10000)->Complexity(benchmark::oN)->Unit(benchmark::kMillisecond);
}

BENCHMARK(reading)->Apply(sizes);
BENCHMARK(readingBare)->Apply(sizes);
BENCHMARK(writing)->Apply(sizes);
BENCHMARK(writingBare)->Apply(sizes);

} // namespace
