#include "exporter/formats.h"
#include "exporter/pngfile.h"
#include "render/drawingsize.h"

namespace {

bool writePng(QIODevice &device, const ExportJob &job)
{
    return writePngFile(device, gaugeImage(job.size, layerData(job.layers), job.style), job.compression);
}

bool writeSvg(QIODevice &device, const ExportJob &job)
{
    return ::writeSvg(device, job.size, layerData(job.layers), job.style);
}

bool writePdf(QIODevice &device, const ExportJob &job)
{
    return ::writePdf(device, job.size, layerData(job.layers), job.style);
}

double svgSize(const ExportJob &job)
{
    return svgDrawingSize(layerData(job.layers), job.style.textAsPaths);
}

double pdfSize(const ExportJob &job)
{
    return pdfDrawingSize(layerData(job.layers), job.style.textAsPaths);
}

} // namespace

constinit const ExportFormat pngFormat{.name = "png", .isPicture = true, .isRaster = true, .write = writePng};
constinit const ExportFormat svgFormat{
    .name = "svg", .isPicture = true, .write = writeSvg, .estimatedSize = svgSize};
constinit const ExportFormat pdfFormat{
    .name = "pdf", .isPicture = true, .write = writePdf, .estimatedSize = pdfSize};
