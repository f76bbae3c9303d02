// Prints values and angles of a layer as its ticks are painted: angle_values FILE LAYER COUNT.

#include "model/gaugedata.h"
#include "model/gaugefile.h"
#include "render/sweep.h"

#include <QFile>

#include <algorithm>
#include <cstdio>

int main(int argc, char *argv[])
{
    if (argc != 4)
        return 2;
    QFile file(QString::fromUtf8(argv[1]));
    QList<gaugeLayer> layers;
    if (!file.open(QIODevice::ReadOnly) || !gaugeFile::read(file.readAll(), &layers, nullptr))
        return 1;
    const auto layer = std::ranges::find(layers, QString::fromUtf8(argv[2]), &gaugeLayer::name);
    const int count = QByteArray(argv[3]).toInt();
    if (layer == layers.end() || count < 2)
        return 1;
    const gaugeData &data = layer->data;
    for (int i = 0; i < count; ++i) {
        const double fraction = double(i) / (count - 1);
        const double value = data.tickCountStart + fraction * data.divisionCount[0] * data.tickCountIncrement;
        std::printf("%.17g %.17g\n", value, 90.0 - tickAngle(data, fraction));
    }
}
