#include "exporter/formats.h"
#include "render/angletablefiles.h"

#include <QCoreApplication>
#include <QIODevice>

namespace {

bool writeAll(QIODevice &device, const QByteArray &bytes)
{
    return device.write(bytes) == bytes.size();
}

/// "[pixels, pixels]": the needle turns about the centre.
QByteArray pivotOf(int size)
{
    const QByteArray half = shortestNumber(size / 2.0);
    return '[' + half + ", " + half + ']';
}

/// A list of a field, with its elements on lines of their own.
QByteArray jsonList(const QByteArray &name, const QByteArrayList &elements)
{
    return ",\n  \"" + name + "\": [" +
           (elements.isEmpty() ? QByteArray() : "\n    " + elements.join(",\n    ") + "\n  ") + ']';
}

QByteArray jsonCrop(const PartCrop &crop)
{
    const QPointF pivot = QPointF(crop.size, crop.size) / 2.0 - crop.area.topLeft();
    const auto number = [](int value) { return QByteArray::number(value); };
    return "{\"size\": " + number(crop.size) + ", \"x\": " + number(crop.area.x()) +
           ", \"y\": " + number(crop.area.y()) + ", \"width\": " + number(crop.area.width()) +
           ", \"height\": " + number(crop.area.height()) + ", \"pivot\": [" + shortestNumber(pivot.x()) +
           ", " + shortestNumber(pivot.y()) + "]}";
}

QByteArray jsonPart(const GaugePart &part, const QList<PartCrop> &allCrops)
{
    QByteArrayList crops;
    for (const PartCrop &crop : allCrops) {
        if (crop.part == part.name)
            crops.append(jsonCrop(crop));
    }
    QByteArrayList layers;
    for (const gaugeLayer &layer : part.layers)
        layers.append(jsonString(layer.name));
    const QByteArray angle =
        part.isNeedle ? ", \"angle\": " + shortestNumber(part.needleAngle) : QByteArray();
    return "{\"name\": " + jsonString(part.name) + angle + ", \"layers\": [" + layers.join(", ") + ']' +
           (crops.isEmpty() ? QByteArray() : ", \"crops\": [" + crops.join(", ") + ']') + '}';
}

bool writeJson(QIODevice &device, const ExportJob &job)
{
    const int size = job.sizes.constFirst();
    QByteArray json = "{\n  \"gauge\": " + jsonString(job.gaugeName) +
                      ",\n  \"version\": " + jsonString(QCoreApplication::applicationVersion()) +
                      ",\n  \"angles\": \"degrees clockwise from 12 o'clock, not limited to one turn\""
                      ",\n  \"size\": " +
                      QByteArray::number(size) + ",\n  \"pivot\": " + pivotOf(size);
    if (job.sizes.size() > 1) {
        QByteArrayList sizes;
        for (const int other : job.sizes)
            sizes.append("{\"size\": " + QByteArray::number(other) + ", \"pivot\": " + pivotOf(other) + '}');
        json += jsonList("sizes", sizes);
    }
    QByteArrayList scales;
    for (const AngleTable &table : job.tables)
        scales.append(angleTableJson(table, "    "));
    json += jsonList("scales", scales);
    QByteArrayList parts;
    for (const GaugePart &part : job.parts) {
        if (!part.layers.isEmpty())
            parts.append(jsonPart(part, job.crops));
    }
    if (!job.parts.isEmpty())
        json += jsonList("parts", parts);
    return writeAll(device, json + "\n}\n");
}

bool writeXml(QIODevice &device, const ExportJob &job)
{
    return writeAll(device, angleTableXml(job.gaugeName, job.tables.constFirst()));
}

bool writeHeader(QIODevice &device, const ExportJob &job)
{
    return writeAll(device, angleTableHeader(job.gaugeName, job.tables));
}

QString checkHasScale(const ExportJob &job)
{
    return job.tables.isEmpty()
               ? QStringLiteral(
                     "It has no scale: no layer with a scale shows its labels (--scale names one).")
               : QString();
}

QString checkHeader(const ExportJob &job)
{
    const QString reason = checkHasScale(job);
    return reason.isEmpty() ? checkAngleTableHeader(job.tables) : reason;
}

} // namespace

constinit const ExportFormat jsonFormat{
    .name = "json", .write = writeJson, .scales = ScaleUse::Any, .listsCrops = true};
constinit const ExportFormat xmlFormat{
    .name = "xml", .write = writeXml, .scales = ScaleUse::OneInEachFile, .check = checkHasScale};
constinit const ExportFormat headerFormat{.name = "h",
                                          .write = writeHeader,
                                          .scales = ScaleUse::Any,
                                          .tableRounding = headerRounding,
                                          .check = checkHeader};
