#include "render/keyframes.h"

#include "model/gaugedata.h"
#include "render/sweep.h"

namespace {

/// Returns @a name as a field of the table, quoted if necessary.
QString csvName(const QString &name)
{
    const bool plain = !name.contains(QLatin1Char(',')) && !name.contains(QLatin1Char('"')) &&
                       !name.contains(QLatin1Char('\n')) && !name.contains(QLatin1Char('\r'));
    if (plain)
        return name;
    QString escaped = name;
    escaped.replace(QLatin1Char('"'), QLatin1String("\"\""));
    return QLatin1Char('"') + escaped + QLatin1Char('"');
}

} // namespace

QList<QPointF> keyframes(const gaugeData &layer)
{
    const int divisions = layer.divisionCount[0];
    if (divisions < 1)
        return {};

    const qint64 ticks = primaryTickCount(layer);
    QList<QPointF> frames;
    frames.reserve(ticks);
    double value = layer.tickCountStart;
    for (qint64 i = 0; i < ticks; ++i) {
        const double angle = tickAngle(layer, divisionFraction(static_cast<double>(i), divisions));
        // Computed from the painter's angle, so that both have the same rounding errors.
        frames.append({value, -(angle - 90.0)});
        value += layer.tickCountIncrement;
    }
    return frames;
}

QString keyframeTable(const QList<gaugeLayer> &layers)
{
    QString table = QStringLiteral("Layer,Tick,Angle\r");
    for (const gaugeLayer &layer : layers) {
        const QString name = csvName(layer.name);
        const QList<QPointF> frames = keyframes(layer.data);
        for (const QPointF &frame : frames) {
            table += name + QLatin1Char(',') + csvNumber(frame.x()) + QLatin1Char(',') +
                     csvNumber(frame.y()) + QLatin1Char('\r');
        }
    }
    return table;
}

QString csvNumber(double value)
{
    QString text = QString::number(value, 'f', 10);
    if (!text.contains(QLatin1Char('.')))
        return text;
    while (text.endsWith(QLatin1Char('0')))
        text.chop(1);
    if (text.endsWith(QLatin1Char('.')))
        text.chop(1);
    return text;
}
