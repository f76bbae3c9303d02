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
