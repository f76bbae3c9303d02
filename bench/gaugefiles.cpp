// Reading and writing gauge files compared with QJsonDocument alone.

#include "compare.h"
#include "model/gaugefile.h"

#include <QJsonDocument>

#include <cstdio>

namespace {

/// Layers that are all different, with values as the controls of the window give them.
QList<gaugeLayer> someLayers(int count)
{
    QList<gaugeLayer> layers;
    for (int i = 0; i < count; ++i) {
        gaugeLayer layer{QStringLiteral("Layer %1").arg(i + 1), {}};
        layer.data.startAngle = i % 720 - 360;
        layer.data.bias = (i % 101) / 100.0;
        layer.data.divisionCount = {i % 100, i % 7, i % 11};
        layer.data.divisionLineWidth = {(i % 64) / 4.0, 1.25, 0.5};
        layer.data.divisionColor.fill(QColor::fromRgb(i % 256, i * 37 % 256, 100));
        layer.data.arcRadius.fill((i % 1000) / 1000.0);
        layer.data.tickCountFont = QFont(QStringLiteral("DejaVu Sans"), 6 + i % 30);
        layers.append(layer);
    }
    return layers;
}

} // namespace

void benchGaugeFiles()
{
    std::puts("\n| Gauge file | ours, ms | QJsonDocument, ms | ratio |\n|---|---:|---:|---:|");
    for (const int count : {100, 1000}) {
        const QList<gaugeLayer> layers = someLayers(count);
        const QByteArray bytes = gaugeFile::write(layers);
        const QJsonDocument document = QJsonDocument::fromJson(bytes);
        compare(
            "read " + std::to_string(count) + " layers",
            [&] {
                QList<gaugeLayer> result;
                gaugeFile::read(bytes, &result, nullptr);
            },
            [&] { (void)QJsonDocument::fromJson(bytes); });
        compare(
            "write " + std::to_string(count) + " layers", [&] { (void)gaugeFile::write(layers); },
            [&] { (void)document.toJson(); });
    }
}
