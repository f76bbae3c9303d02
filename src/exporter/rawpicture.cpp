#include "exporter/rawpicture.h"

#include "exporter/exportformat.h"

#include <algorithm>

namespace {

bool isMarked(QRgb pixel)
{
    return qAlpha(pixel) != 0;
}

const QRgb *row(const QImage &image, int y)
{
    return reinterpret_cast<const QRgb *>(image.constScanLine(y));
}

} // namespace

QRect markedArea(const QImage &image)
{
    QRect area;
    for (int y = 0; y < image.height(); ++y) {
        const QRgb *const begin = row(image, y);
        const QRgb *const end = begin + image.width();
        const QRgb *const first = std::find_if(begin, end, isMarked);
        if (first == end)
            continue;
        const QRgb *last = end - 1;
        while (!isMarked(*last))
            --last;
        area |= QRect(static_cast<int>(first - begin), y, static_cast<int>(last - first) + 1, 1);
    }
    return area.isNull() ? QRect(image.width() / 2, image.height() / 2, 1, 1) : area;
}

RawPicture rawPicture(const QImage &image, const QRect &area, ByteOrder order)
{
    const qsizetype count = qsizetype(area.width()) * area.height();
    RawPicture picture{area, QPointF(image.width(), image.height()) / 2.0 - area.topLeft(),
                       QByteArray(count * 2, Qt::Uninitialized), QByteArray(count, Qt::Uninitialized)};
    char *colour = picture.colours.data();
    char *alpha = picture.alpha.data();
    bool isOpaque = true;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        const QRgb *const pixels = row(image, y);
        for (int x = area.left(); x <= area.right(); ++x) {
            const QRgb pixel = isMarked(pixels[x]) ? pixels[x] : 0;
            const int value = (qRed(pixel) >> 3 << 11) | (qGreen(pixel) >> 2 << 5) | (qBlue(pixel) >> 3);
            const auto low = static_cast<char>(value & 0xff);
            const auto high = static_cast<char>(value >> 8);
            *colour++ = order == ByteOrder::Little ? low : high;
            *colour++ = order == ByteOrder::Little ? high : low;
            *alpha++ = static_cast<char>(qAlpha(pixel));
            isOpaque = isOpaque && qAlpha(pixel) == 255;
        }
    }
    if (isOpaque)
        picture.alpha.clear();
    return picture;
}

RawPicture drawRawPicture(const ExportJob &job, ByteOrder order)
{
    const QImage image = gaugeImage(job.size, layerData(job.layers), job.style);
    if (image.isNull())
        return {};
    return rawPicture(image, job.cropped ? markedArea(image) : image.rect(), order);
}
