#ifndef RAWPICTURE_H
#define RAWPICTURE_H

#include <QByteArray>
#include <QImage>
#include <QPointF>
#include <QRect>
#include <QString>

struct ExportJob;

/// The order of the two bytes of a pixel.
enum class ByteOrder { Little, Big };

/// A picture for a microcontroller, without a header. Rows are from the top, without gaps.
struct RawPicture
{
    QRect area;         ///< The part of the whole square picture, in pixels.
    QPointF pivot;      ///< The centre of the gauge, in pixels from the area's left and upper edge.
    QByteArray colours; ///< RGB565: five bits of red, six of green, five of blue, the upper ones of eight.
    QByteArray alpha;   ///< A byte for each pixel, 255 is opaque. Empty when all pixels are.
};

/// The smallest rectangle that holds all pixels that are not fully transparent; one pixel at the centre when
/// there is none.
[[nodiscard]] QRect markedArea(const QImage &image);

/// The pixels of a rectangle of a picture in QImage::Format_ARGB32. Fully transparent pixels are black.
[[nodiscard]] RawPicture rawPicture(const QImage &image, const QRect &area, ByteOrder order);

/// Draws the picture of a job, cropped to its marks if the job says so. The area is null
/// when there is not enough memory.
[[nodiscard]] RawPicture drawRawPicture(const ExportJob &job, ByteOrder order);

#endif
