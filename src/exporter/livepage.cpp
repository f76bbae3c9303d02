#include "exporter/livepage.h"

#include "render/gaugepainter.h"
#include "render/imageexport.h"

#include <QBuffer>
#include <QFile>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cmath>

namespace {

/// A file of the folder page, which is compiled into the program.
QByteArray pageFile(const QString &name)
{
    QFile file(QStringLiteral(":/page/") + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// A text for HTML, also in an attribute. Control characters become blanks.
QByteArray inHtml(QString text)
{
    for (QChar &c : text) {
        if (c.category() == QChar::Other_Control)
            c = QLatin1Char(' ');
    }
    return text.toHtmlEscaped().toUtf8();
}

/// JSON for a script element. These characters are only in strings, where JSON allows the escapes.
QByteArray inScript(const QJsonArray &data)
{
    QByteArray json = QJsonDocument(data).toJson(QJsonDocument::Compact);
    json.replace('<', "\\u003c").replace('>', "\\u003e").replace('&', "\\u0026");
    return json.replace("\xe2\x80\xa8", "\\u2028").replace("\xe2\x80\xa9", "\\u2029");
}

/// Returns an svg element with these attributes around @a content.
QByteArray svgElement(const QByteArray &attributes, const QByteArray &content)
{
    const QByteArray side = QByteArray::number(canvasSize);
    return "<svg viewBox=\"0 0 " + side + ' ' + side + "\" " + attributes + ">\n" + content + "</svg>\n";
}

/// Removes ticks without a finite position, such as that of a ring of 0 divisions. Browsers report such
/// coordinates as errors.
QByteArray withoutInvalidTicks(const QByteArray &drawing)
{
    QByteArray kept;
    for (const QByteArray &line : drawing.split('\n')) {
        if (!line.startsWith("<polyline") || !(line.contains("nan,") || line.contains("inf,")))
            kept += line + '\n';
    }
    return kept;
}

/// Returns the drawing of a part without the head of an SVG file. Empty when it cannot be made.
QByteArray drawing(const GaugePart &part, bool centreDot)
{
    QList<gaugeData> data;
    for (const gaugeLayer &layer : part.layers)
        data.append(layer.data);
    QBuffer file;
    const PictureStyle style{.textAsPaths = true, .centreDot = centreDot, .rotation = -part.needleAngle};
    if (!file.open(QIODevice::WriteOnly) || !writeSvg(file, canvasSize, data, style))
        return {};
    const QByteArray headEnd("</defs>");
    const qsizetype start = file.data().indexOf(headEnd) + headEnd.size();
    return withoutInvalidTicks(file.data().mid(start, file.data().lastIndexOf("</svg>") - start));
}

QByteArray needleAttributes(const QString &label, double angle, const QList<QPointF> &points)
{
    const auto number = [](double value) { return QByteArray::number(value, 'g', 17); };
    return R"(class="needle" role="meter" aria-label=")" + inHtml(label) + R"(" aria-valuemin=")" +
           number(points.constFirst().x()) + R"(" aria-valuemax=")" + number(points.constLast().x()) +
           R"(" style="transform: rotate()" + number(angle) + "deg)\"";
}

QJsonObject needleData(qsizetype index, const QString &label, double angle, const QList<QPointF> &points)
{
    QJsonArray pairs;
    for (const QPointF &point : points)
        pairs.append(QJsonArray{point.x(), point.y()});
    const QString key = index == 0 ? QStringLiteral("value") : QStringLiteral("value%1").arg(index + 1);
    return {{QStringLiteral("key"), key},
            {QStringLiteral("label"), label},
            {QStringLiteral("points"), pairs},
            {QStringLiteral("value"), valueAtAngle(points, angle)}};
}

/// Replaces each @name@ of a template by its value. Values are not searched for names.
QByteArray filledIn(const QByteArray &pattern, const QHash<QByteArray, QByteArray> &values)
{
    QByteArray result;
    const QList<QByteArray> pieces = pattern.split('@');
    for (qsizetype i = 0; i < pieces.size(); ++i)
        result += i % 2 == 0 ? pieces.at(i) : values.value(pieces.at(i));
    return result;
}

} // namespace

double valueAtAngle(const QList<QPointF> &points, double angle)
{
    constexpr double fullTurn = 360.0;
    constexpr double tolerance = 0.05; // files hold angles with two decimals
    const auto [low, high] = std::ranges::minmax(points, {}, &QPointF::y);
    const double direction = std::fmod(angle, fullTurn);
    const double turned = direction + std::ceil((low.y() - tolerance - direction) / fullTurn) * fullTurn;
    if (!(turned <= high.y() + tolerance))
        return points.constFirst().x();
    const double wanted = std::clamp(turned, low.y(), high.y());
    for (qsizetype i = 1; i < points.size(); ++i) {
        const QPointF &from = points.at(i - 1);
        const QPointF &to = points.at(i);
        const auto [min, max] = std::minmax({from.y(), to.y()});
        if (wanted >= min && wanted <= max && min < max)
            return from.x() + (to.x() - from.x()) * ((wanted - from.y()) / (to.y() - from.y()));
    }
    return points.constFirst().x();
}

QByteArray livePage(const QString &gaugeName, const QList<GaugePart> &parts, const QList<AngleTable> &tables)
{
    if (tables.isEmpty())
        return {};
    const auto isNeedle = [](const GaugePart &part) { return part.isNeedle; };
    const auto needleCount = std::ranges::count_if(parts, isNeedle);
    QByteArray dial;
    QJsonArray needles;
    const auto append = [&](const QString &label, double angle, qsizetype table, const QByteArray &content) {
        const QList<QPointF> &points = tables.at(std::min(table, tables.size() - 1)).points;
        dial += svgElement(needleAttributes(label, angle, points), content);
        needles.append(needleData(needles.size(), label, angle, points));
    };
    for (const GaugePart &part : parts) {
        if (part.layers.isEmpty())
            continue;
        const QByteArray content = drawing(part, part.name == parts.constFirst().name);
        if (content.isEmpty())
            return {};
        if (part.isNeedle)
            append(needleCount == 1 ? gaugeName : part.layers.constFirst().name, part.needleAngle,
                   part.choice, content);
        else
            dial += svgElement("aria-hidden=\"true\"", content);
    }
    if (needleCount == 0)
        append(gaugeName, tables.constFirst().points.constFirst().y(), 0,
               pageFile(QStringLiteral("pointer.svg")));

    return filledIn(pageFile(QStringLiteral("page.html")),
                    {{"title", inHtml(gaugeName)},
                     {"style", pageFile(QStringLiteral("gauge.css"))},
                     {"data", inScript(needles)},
                     {"dial", dial},
                     {"script", pageFile(QStringLiteral("gauge.js"))}});
}
