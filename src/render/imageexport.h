#ifndef IMAGEEXPORT_H
#define IMAGEEXPORT_H

#include <QImage>
#include <QList>

class QIODevice;
struct gaugeData;

/// What a picture file may say beyond the gauge. The defaults are what the editor writes.
struct PictureStyle
{
    double millimetres = 0.0; ///< The printed width and height; 0 leaves it to the format.
    bool textAsPaths = false; ///< Labels are shapes, so that the drawing needs no font; a PNG never does.
};

/// Returns a square picture of @a size pixels of a stack of layers, on a transparent background, in
/// QImage::Format_ARGB32. A printed size sets only the pixel density. Returns a null image when @a size is
/// not positive or there is not enough memory.
///
/// The format matters: Qt blends small labels over transparent pixels differently on premultiplied images.
[[nodiscard]] QImage gaugeImage(int size, const QList<gaugeData> &layers, const PictureStyle &style = {});

/// Writes the picture to an open device as a PNG. Returns false when it could not be made or written.
bool writePng(QIODevice &device, int size, const QList<gaugeData> &layers, const PictureStyle &style = {});

/// Writes a stack of layers to an open device as an SVG drawing whose width, height and view box are @a size,
/// but for a printed size, which is then its width and height. Returns false when the device does not take
/// it.
bool writeSvg(QIODevice &device, int size, const QList<gaugeData> &layers, const PictureStyle &style = {});

/// Writes a stack of layers to an open device as a PDF of one square page, @a size pixels at 96 to the inch
/// unless it has a printed size. Lines without a width are as wide as one of these pixels, since the finest
/// line of a printer is hardly seen. Returns false when the device does not take it.
bool writePdf(QIODevice &device, int size, const QList<gaugeData> &layers, const PictureStyle &style = {});

#endif
