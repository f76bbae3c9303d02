#ifndef FORMATS_H
#define FORMATS_H

#include "exporter/exportformat.h"

// qtimageformats.cpp
extern const ExportFormat jpegFormat;
extern const ExportFormat webpFormat;

// rawformats.cpp
extern const ExportFormat rgb565Format;
extern const ExportFormat sourceFormat;

// pictureformats.cpp
extern const ExportFormat pngFormat;
extern const ExportFormat svgFormat;
extern const ExportFormat pdfFormat;

// angleformats.cpp
extern const ExportFormat jsonFormat;
extern const ExportFormat xmlFormat;
extern const ExportFormat headerFormat;

extern const ExportFormat csvFormat;   // csvformat.cpp
extern const ExportFormat gaugeFormat; // gaugeformat.cpp
extern const ExportFormat htmlFormat;  // htmlformat.cpp

#endif
