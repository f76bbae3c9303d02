#include "tools/gaugeinput.h"

#include "model/gaugefile.h"
#include "model/layernames.h"
#include "model/layerselection.h"
#include "render/sweep.h"
#include "tools/inputfile.h"

#include <QFileInfo>
#include <QLocale>

#include <algorithm>
#include <limits>

QString readGauge(const QByteArray &bytes, const QString &baseName, QList<gaugeLayer> &layers)
{
    QString reason = checkIsGauge(bytes);
    if (!reason.isEmpty() || !gaugeFile::read(bytes, &layers, &reason))
        return reason;
    nameUnnamedLayers(layers, baseName, LoadInto::CurrentRow, 1); // as in a new window, which has one row
    return {};
}

QString readGaugeFile(const QString &path, qint64 maxSize, QList<gaugeLayer> &layers,
                      const QString &limitOption)
{
    QByteArray bytes;
    const QString reason = readInputFile(path, maxSize, bytes, limitOption);
    return reason.isEmpty() ? readGauge(bytes, QFileInfo(path).completeBaseName(), layers) : reason;
}

QString selectLayers(const QString &wanted, const QList<gaugeLayer> &layers, QList<qsizetype> &rows)
{
    QString unknown;
    rows = findLayers(wanted, layers, unknown);
    return rows.isEmpty() || !unknown.isNull() ? describeUnknownLayer(unknown, layers) : QString();
}

QString checkTickCount(const QList<gaugeLayer> &layers, quint64 limit)
{
    constexpr quint64 maxCount = std::numeric_limits<quint64>::max();
    quint64 count = 0;
    for (const gaugeLayer &layer : layers) {
        const auto &lengths = layer.data.arcAngleLength;
        const auto arcs = static_cast<quint64>(lengths.size()) -
                          static_cast<quint64>(std::ranges::count(lengths, 0.0)); // those are not drawn
        const quint64 ticks = totalTickCount(layer.data);
        count += std::min(ticks, maxCount - count);
        count += std::min(arcs, maxCount - count);
    }
    if (count <= limit)
        return {};
    QLocale locale = QLocale::c();
    locale.setNumberOptions(QLocale::DefaultNumberOptions); // with thousands separators
    return QStringLiteral("It has %1 ticks and arcs, more than the limit of %2 (--tick-limit raises this).")
        .arg(locale.toString(count), locale.toString(limit));
}
