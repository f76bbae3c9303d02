#include "exporter/exportformat.h"

#include "exporter/formats.h"

const QList<const ExportFormat *> &exportFormats()
{
    static const QList<const ExportFormat *> all{
        &pngFormat,  &jpegFormat, &webpFormat,   &svgFormat,  &pdfFormat,    &csvFormat,   &gaugeFormat,
        &jsonFormat, &xmlFormat,  &headerFormat, &htmlFormat, &rgb565Format, &sourceFormat};
    return all;
}

QList<gaugeData> layerData(const QList<gaugeLayer> &layers)
{
    QList<gaugeData> data;
    data.reserve(layers.size());
    for (const gaugeLayer &layer : layers)
        data.append(layer.data);
    return data;
}

QString exportFormatNames()
{
    QStringList names;
    for (const ExportFormat *format : exportFormats())
        names.append(QLatin1String(format->name));
    const QString last = names.takeLast();
    return names.join(QLatin1String(", ")) + QLatin1String(" or ") + last;
}

const ExportFormat *findExportFormat(const QString &name)
{
    if (name == QLatin1String("jpg"))
        return &jpegFormat;
    for (const ExportFormat *format : exportFormats()) {
        if (name == QLatin1String(format->name))
            return format;
    }
    return nullptr;
}
