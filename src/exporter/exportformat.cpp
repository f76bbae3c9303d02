#include "exporter/exportformat.h"

#include "exporter/formats.h"

const QList<const ExportFormat *> &exportFormats()
{
    static const QList<const ExportFormat *> all{&pngFormat, &svgFormat, &pdfFormat, &csvFormat,
                                                 &gaugeFormat};
    return all;
}

const ExportFormat *findExportFormat(const QString &name)
{
    for (const ExportFormat *format : exportFormats()) {
        if (name == QLatin1String(format->name))
            return format;
    }
    return nullptr;
}
