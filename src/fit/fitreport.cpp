#include "fit/fitreport.h"

#include "render/labels.h"
#include "tools/program.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cmath>

namespace {

// With the other lines, a report has at most 24.
constexpr qsizetype maxLayerLines = 16;
constexpr qsizetype maxPairs = 4;
constexpr qsizetype lineWidth = 79;

QString degrees(double angle)
{
    return QString::number(angle, 'f', 3);
}

QString number(double value)
{
    return QString::number(value, 'g', 6);
}

QStringList labelsOf(const gaugeLayer &layer)
{
    QStringList texts;
    for (const GaugeLabel &label : gaugeLabels(layer.data))
        texts.append(label.text);
    return texts;
}

QString cut(const QString &text, qsizetype maxSize)
{
    return text.size() > maxSize ? text.first(maxSize - 1) + u'…' : text;
}

QString quotedName(const CheckedMark &mark)
{
    constexpr qsizetype maxNameSize = 40;
    return u'"' + cut(mark.layer, maxNameSize) + u'"';
}

/// Returns one line of JSON in ASCII. Characters that a terminal must not get are escaped like all others.
QString line(const QJsonObject &object)
{
    const QString json = QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
    QString text;
    for (const QChar character : json) {
        // Outside of texts, JSON has none of these.
        if (character < u' ' || character > u'~')
            text += QStringLiteral("\\u%1").arg(ushort(character.unicode()), 4, 16, QLatin1Char('0'));
        else
            text += character;
    }
    return text;
}

/// NaN, for which JSON has no number, gives null.
QJsonValue jsonNumber(double value)
{
    return std::isfinite(value) ? QJsonValue(value) : QJsonValue();
}

QJsonObject jsonMark(const CheckedMark &mark)
{
    return {{QStringLiteral("layer"), mark.layer},
            {QStringLiteral("value"), jsonNumber(mark.value)},
            {QStringLiteral("angle"), jsonNumber(mark.angle)},
            {QStringLiteral("expected"), jsonNumber(mark.expected)},
            {QStringLiteral("error"), jsonNumber(mark.error)}};
}

QString describe(const CheckedMark &mark)
{
    const QString where = QStringLiteral("%1 in %2: ").arg(number(mark.value), quotedName(mark));
    if (std::isnan(mark.expected))
        return where + QLatin1String("beyond the table (--extrapolate continues its curve)");
    return where + QStringLiteral("%1 degrees instead of %2, %3 off")
                       .arg(degrees(mark.angle), degrees(mark.expected), degrees(mark.error));
}

} // namespace

QStringList fitReportText(const FitReport &report)
{
    QStringList lines;
    lines.append(QStringLiteral("%1: %2, %3, %4 in all")
                     .arg(report.output, countText(report.scale.size(), QStringLiteral("layer")),
                          countText(report.labelCount, QStringLiteral("label")),
                          countText(report.markCount, QStringLiteral("mark"))));
    lines.append(QStringLiteral("Worst error: %1 degrees at %2 (limit %3)")
                     .arg(degrees(report.worstError), number(report.worstValue), number(report.maxError)));
    for (const gaugeLayer &layer : report.scale.first(std::min(report.scale.size(), maxLayerLines))) {
        const QString labels = labelsOf(layer).join(u' ');
        const QString text = labels.isEmpty() ? QStringLiteral("no label of its own") : labels;
        lines.append(cut(QStringLiteral("  %1: %2").arg(layer.name, text), lineWidth));
    }
    if (report.scale.size() > maxLayerLines)
        lines.append(QStringLiteral("  and %1 more layers").arg(report.scale.size() - maxLayerLines));
    if (!report.overlaps.isEmpty()) {
        QStringList pairs;
        for (const auto &[first, second] : report.overlaps.first(std::min(report.overlaps.size(), maxPairs)))
            pairs.append(QStringLiteral("%1 and %2").arg(first, second));
        if (report.overlaps.size() > maxPairs)
            pairs.append(QStringLiteral("%1 more").arg(report.overlaps.size() - maxPairs));
        lines.append(QStringLiteral("Labels that overlap: ") + pairs.join(QLatin1String(", ")));
    }
    return lines;
}

QString fitReportJson(const FitReport &report)
{
    QJsonArray layers;
    for (const gaugeLayer &layer : report.scale)
        layers.append(QJsonObject{{QStringLiteral("name"), layer.name},
                                  {QStringLiteral("labels"), QJsonArray::fromStringList(labelsOf(layer))}});
    QJsonArray overlaps;
    for (const auto &[first, second] : report.overlaps)
        overlaps.append(QJsonArray{first, second});
    return line({{QStringLiteral("output"), report.output},
                 {QStringLiteral("layers"), layers},
                 {QStringLiteral("labels"), report.labelCount},
                 {QStringLiteral("marks"), report.markCount},
                 {QStringLiteral("maxError"), report.maxError},
                 {QStringLiteral("worstError"), report.worstError},
                 {QStringLiteral("worstValue"), report.worstValue},
                 {QStringLiteral("overlaps"), overlaps}});
}

QList<CheckedMark> CheckReport::failures() const
{
    QList<CheckedMark> failed;
    for (const CheckedMark &mark : marks) {
        if (!(mark.error <= maxError)) // NaN fails
            failed.append(mark);
    }
    return failed;
}

const CheckedMark *CheckReport::worst() const
{
    const CheckedMark *worst = nullptr;
    for (const CheckedMark &mark : marks) {
        if (!std::isnan(mark.error) && (worst == nullptr || mark.error > worst->error))
            worst = &mark;
    }
    return worst;
}

QStringList checkReportText(const CheckReport &report)
{
    const QList<CheckedMark> failed = report.failures();
    QStringList lines;
    lines.append(QStringLiteral("%1: %2 compared with %3, %4 off by more than %5 degrees")
                     .arg(report.gauge, countText(report.marks.size(), QStringLiteral("label")), report.table,
                          QString::number(failed.size()), QString::number(report.maxError)));
    if (const CheckedMark *worst = report.worst())
        lines.append(QStringLiteral("Worst error: %1 degrees at %2 in %3")
                         .arg(degrees(worst->error), number(worst->value), quotedName(*worst)));
    for (const CheckedMark &mark : failed.first(std::min(failed.size(), maxLayerLines)))
        lines.append(QLatin1String("  ") + describe(mark));
    if (failed.size() > maxLayerLines)
        lines.append(QStringLiteral("  and %1 more labels").arg(failed.size() - maxLayerLines));
    return lines;
}

QString checkReportJson(const CheckReport &report)
{
    QJsonArray failed;
    for (const CheckedMark &mark : report.failures())
        failed.append(jsonMark(mark));
    const CheckedMark *worst = report.worst();
    return line({{QStringLiteral("gauge"), report.gauge},
                 {QStringLiteral("table"), report.table},
                 {QStringLiteral("labels"), report.marks.size()},
                 {QStringLiteral("maxError"), report.maxError},
                 {QStringLiteral("worst"), worst == nullptr ? QJsonValue() : QJsonValue(jsonMark(*worst))},
                 {QStringLiteral("failures"), failed}});
}
