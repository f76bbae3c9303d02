#include "render/gaugeparts.h"

#include "model/layerselection.h"
#include "render/sweep.h"

#include <algorithm>
#include <cmath>

namespace {

/// The rows of one needle: the first one and how many.
struct NeedleRows
{
    qsizetype first = 0;
    qsizetype count = 0;
    double angle = 0.0;
    qsizetype choice = 0;
};

/// The angle of the layer's first primary tick; 0 without one.
double firstTickAngle(const gaugeData &layer)
{
    if (primaryTickCount(layer) < 1)
        return 0.0;
    const double angle = 90.0 - tickAngle(layer, divisionFraction(0.0, layer.divisionCount[0]));
    return std::isfinite(angle) ? angle : 0.0;
}

/// Returns the reason for a failure.
QString findNeedle(const NeedleChoice &needle, const QList<gaugeLayer> &layers, NeedleRows &found)
{
    QString unknown;
    QList<qsizetype> rows = findLayers(needle.layers, layers, unknown);
    if (rows.isEmpty() || !unknown.isNull())
        return describeUnknownLayer(unknown, layers);
    std::sort(rows.begin(), rows.end());
    rows.resize(std::unique(rows.begin(), rows.end()) - rows.begin());
    found.first = rows.constFirst();
    found.count = rows.size();
    for (qsizetype i = 0; i < rows.size(); ++i) {
        const qsizetype expected = found.first + i;
        if (rows.at(i) != expected)
            return QStringLiteral("The layers of a needle must be consecutive: \"%1\" lies between those of "
                                  "\"%2\".")
                .arg(layers.at(expected).name, needle.layers);
    }
    found.angle = needle.angle.value_or(firstTickAngle(layers.at(found.first).data));
    return {};
}

QString numbered(const QString &name, qsizetype index)
{
    return index == 0 ? name : QStringLiteral("%1-%2").arg(name).arg(index + 1);
}

} // namespace

QStringList partNames(qsizetype needleCount)
{
    QStringList names;
    for (qsizetype i = 0; i < needleCount; ++i)
        names << numbered(QStringLiteral("face"), i) << numbered(QStringLiteral("needle"), i);
    return names << QStringLiteral("cover");
}

GaugeParts splitGauge(const QList<gaugeLayer> &layers, const QList<NeedleChoice> &needles)
{
    GaugeParts result;
    QList<NeedleRows> found;
    for (const NeedleChoice &needle : needles) {
        NeedleRows rows;
        result.failure = findNeedle(needle, layers, rows);
        if (!result.failure.isEmpty())
            return result;
        rows.choice = found.size();
        found.append(rows);
    }
    std::ranges::sort(found, {}, &NeedleRows::first);

    const QStringList names = partNames(found.size());
    const auto append = [&](qsizetype first, qsizetype count) {
        result.parts.append({names.at(result.parts.size()), layers.mid(first, count)});
    };
    qsizetype next = 0;
    for (const NeedleRows &needle : std::as_const(found)) {
        if (needle.first < next)
            return {{},
                    QStringLiteral("The layer \"%1\" cannot belong to two needles.")
                        .arg(layers.at(needle.first).name)};
        append(next, needle.first - next);
        append(needle.first, needle.count);
        GaugePart &part = result.parts.last();
        part.isNeedle = true;
        part.needleAngle = needle.angle;
        part.choice = needle.choice;
        next = needle.first + needle.count;
    }
    append(next, layers.size() - next);
    return result;
}
