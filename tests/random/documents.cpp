#include "documents.h"

#include "model/gaugefile.h"

#include <QDir>
#include <QFile>
#include <QFont>

#include <algorithm>
#include <cmath>

namespace {

constexpr double mostTicks = 1000.0;
constexpr qsizetype mostLayers = 10;

/// The ticks that a layer draws, in floating point: the product of three counts leaves every whole number
/// type behind.
double tickCount(const gaugeData &layer)
{
    const double primaries = layer.divisionCount[0] + 1.0;
    const double secondaries = std::max(1, layer.divisionCount[1]);
    const double tertiaries = secondaries > 1.0 ? std::max(1, layer.divisionCount[2]) : 1.0;
    return std::max(0.0, primaries) * secondaries * tertiaries;
}

QByteArray unnamedLayers(int count)
{
    return "{\"layers\": [" + QByteArray("{},").repeated(count - 1) + "{}]}";
}

QByteArray olderText(const QByteArray &number)
{
    QByteArrayList fields;
    for (int field = 0; field < 48; ++field)
        fields.append(number);
    // A count that is no whole number is 0, so the first ring draws a single tick at no place at all.
    for (const int color : {17, 18, 19, 37, 38, 39, 40})
        fields[color] = "#336699";
    fields.append("DejaVu Sans,11,-1,5,700,1,0,0,0,0,0,0,0,0,0,1");
    fields.append("#abcdef");
    return fields.join(',');
}

QByteArray beyondEveryRange()
{
    gaugeData layer;
    layer.startAngle = 1234.5678;
    layer.angleLength = -99999.0;
    layer.bias = 7.25;
    layer.midpointBias = true;
    layer.divisionCount = {150, -7, 2000};
    layer.divisionInnerRadius = {-3.0, 2.5, 1e9};
    layer.divisionLineWidth = {250.0, 1e-12, 0.12345678};
    layer.arcStartAngle = {-1e6, 1e300, 0.001, 719.0};
    layer.arcAngleLength = {1e-9, -1e6, 5000.0, 0.0005};
    layer.arcRadius = {4.0, -1.0, 0.0, 0.33333333333333};
    layer.tickCountStart = 98765.4321;
    layer.tickCountIncrement = -1e6;
    layer.tickCountDecimalPlaces = 11;
    layer.tickCountFont = QFont(QStringLiteral("DejaVu Serif"), 23, QFont::Bold, true);
    return gaugeFile::write({{QStringLiteral("Beyond, every \"range\""), layer}});
}

QByteArray everySwitch()
{
    gaugeData lower;
    lower.startAngle = -135.0;
    lower.angleLength = 270.0;
    lower.bias = 0.3;
    lower.midpointBias = true;
    lower.roundedTickCaps = lower.roundedArcCaps = true;
    lower.divisionCount = {9, 5, 2};
    lower.divisionLineWidth = {4.0, 2.0, 0.5};
    lower.divisionColor = {Qt::cyan, Qt::magenta, Qt::darkYellow};
    lower.arcAngleLength = {100.0, 80.0, 60.0, 40.0};
    lower.arcWidth = {1.0, 5.0, 9.0, 13.0};
    lower.tickCountStart = -0.125;
    lower.tickCountIncrement = 0.375;
    lower.tickCountDecimalPlaces = 3;
    lower.tickCountRotate = lower.tickCountSkipFirst = true;
    gaugeData upper;
    upper.angleLength = 360.0;
    upper.tickCountEnabled = false;
    return gaugeFile::write({{QStringLiteral("Lower"), lower}, {QStringLiteral("Upper"), upper}});
}

} // namespace

QStringList writeDocuments(const QString &folder)
{
    const std::initializer_list<std::pair<const char *, QByteArray>> documents{
        {"default.gauge", unnamedLayers(1)},
        {"three.unnamed.gauge", unnamedLayers(3)},
        {"switches.gauge", everySwitch()},
        {"beyond.gauge", beyondEveryRange()},
        {"older.gauge", olderText("1")},
        {"oldernan.gauge", olderText("nan")},
        {"olderinf.gauge", olderText("-inf")},
        {"wrongtypes.gauge",
         R"({"layers": [{"name": 5, "gauge": [], "ticks": {"enabled": 1}}, 7, {"arcs": {}, "divisions": [3]}]})"},
        {"alpha.gauge", R"({"layers": [{"name": "Alpha", "divisions": [{"color": "#80ff0000"}]}]})"},
        {"empty.gauge", "  \n"},
        {"nolayers.gauge", R"({"layers": []})"},
        {"cut.gauge", everySwitch().left(300)},
        {"poem.gauge", "Round the face, the ticks, the ticks"},
    };
    QStringList paths;
    for (const auto &[name, bytes] : documents) {
        QFile file(QDir(folder).filePath(QLatin1String(name)));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("%s cannot be written.", name);
        paths.append(file.fileName());
    }
    return paths;
}

QString unfitForUse(const QString &path)
{
    QFile file(path);
    QList<gaugeLayer> layers;
    if (!file.open(QIODevice::ReadOnly) || !gaugeFile::read(file.readAll(), &layers, nullptr))
        return {};
    if (layers.size() > mostLayers)
        return QStringLiteral("%1 layers, more than anyone removes by hand").arg(layers.size());
    double ticks = 0.0;
    for (const gaugeLayer &layer : std::as_const(layers))
        ticks += tickCount(layer.data);
    return ticks > mostTicks ? QStringLiteral("%1 ticks to paint each time").arg(ticks) : QString();
}
