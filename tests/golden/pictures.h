#ifndef PICTURES_H
#define PICTURES_H

#include <QImage>

/// The largest difference of any channel of any pixel, 0 to 255. Pictures of different sizes differ by 256.
[[nodiscard]] int largestDifference(const QImage &a, const QImage &b);

/// How far two drawings of the same gauge by different rasterisers are apart, 0 to 255.
struct AreaDifference
{
    double lines = 0.0;  ///< where there are no labels
    double labels = 0.0; ///< in and right beside labels
};

/// Compares a picture with a drawing of it, given with and without its labels, by cutting all into squares of
/// @a side pixels: the largest difference of the squares' mean channels counts (colours multiplied by their
/// alpha). How an edge is smoothed evens out within a square; a line that is missing, of another width or
/// colour, or in another place does not. All must be of the same size.
[[nodiscard]] AreaDifference areaDifference(const QImage &picture, const QImage &drawing,
                                            const QImage &drawingWithoutLabels, int side);

#endif
