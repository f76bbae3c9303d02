#ifndef IMAGEEXPORT_H
#define IMAGEEXPORT_H

#include <QColor>
#include <QImage>
#include <QList>

class QIODevice;
struct gaugeData;

/// Properties of a picture file besides the gauge. The defaults are those of the editor.
struct PictureStyle
{
    double millimetres = 0.0; ///< The printed width and height; 0 leaves it to the format.
    bool textAsPaths = false; ///< Draws the labels of SVG and PDF files as paths, which need no font.
    bool centreDot = true;    ///< Draws the white dot at the centre.
    double rotation = 0.0;    ///< Degrees by which the gauge is turned clockwise about its centre; finite.
    QColor background = {};   ///< Fills the square below the gauge; invalid leaves it transparent.
};

/// Returns a square picture of @a size pixels of a stack of layers in
/// QImage::Format_ARGB32. A printed size sets only the pixel density. Returns a null image when @a size is
/// not from 1 to 32767 or there is not enough memory.
///
/// The format matters: Qt blends small labels over transparent pixels differently on premultiplied images.
[[nodiscard]] QImage gaugeImage(int size, const QList<gaugeData> &layers, const PictureStyle &style = {});

/// Writes gaugeImage() to an open device as a PNG. Returns false when there is not enough memory or the
/// device does not take it.
bool writePng(QIODevice &device, int size, const QList<gaugeData> &layers, const PictureStyle &style = {});

/// Writes a stack of layers to an open device as an SVG. Its view box is @a size units wide and high; its
/// width and height are the printed size or, without one, @a size pixels. Returns false when the device does
/// not take it.
bool writeSvg(QIODevice &device, int size, const QList<gaugeData> &layers, const PictureStyle &style = {});

/// Writes a stack of layers to an open device as a PDF of one square page. @a size is above 0. The drawing
/// has the printed size or, without one, @a size pixels of 1/96 inch. The page is rounded up to whole points;
/// the drawing is in its upper left corner. Lines without a width are one of these pixels wide, because the
/// finest line of a printer is hardly visible. Returns false when the device does not take it.
bool writePdf(QIODevice &device, int size, const QList<gaugeData> &layers, const PictureStyle &style = {});

#endif
