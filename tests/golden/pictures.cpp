#include "pictures.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr int differentSizes = 256;

std::array<int, 4> channels(QRgb pixel)
{
    return {qRed(pixel), qGreen(pixel), qBlue(pixel), qAlpha(pixel)};
}

/// The mean channels of a square, as far as it lies within the image.
std::array<double, 4> meanChannels(const QImage &image, const QRect &square)
{
    const QRect area = square & image.rect();
    std::array<double, 4> sums{};
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            const auto values = channels(qPremultiply(image.pixel(x, y)));
            for (size_t channel = 0; channel < sums.size(); ++channel)
                sums.at(channel) += values.at(channel);
        }
    }
    for (double &sum : sums)
        sum /= area.width() * area.height();
    return sums;
}

double difference(const QImage &a, const QImage &b, const QRect &square)
{
    const auto one = meanChannels(a, square);
    const auto other = meanChannels(b, square);
    double largest = 0.0;
    for (size_t channel = 0; channel < one.size(); ++channel)
        largest = std::max(largest, std::abs(one.at(channel) - other.at(channel)));
    return largest;
}

} // namespace

int largestDifference(const QImage &a, const QImage &b)
{
    if (a.size() != b.size())
        return differentSizes;
    int largest = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const auto left = channels(a.pixel(x, y));
            const auto right = channels(b.pixel(x, y));
            for (size_t channel = 0; channel < left.size(); ++channel)
                largest = std::max(largest, std::abs(left.at(channel) - right.at(channel)));
        }
    }
    return largest;
}

AreaDifference areaDifference(const QImage &picture, const QImage &drawing,
                              const QImage &drawingWithoutLabels, int side)
{
    AreaDifference largest;
    for (int top = 0; top < picture.height(); top += side) {
        for (int left = 0; left < picture.width(); left += side) {
            const QRect square(left, top, side, side);
            // A label of the picture may reach a little further than that of the drawing.
            const QRect around = square.adjusted(-side, -side, side, side) & picture.rect();
            const bool labelled = drawing.copy(around) != drawingWithoutLabels.copy(around);
            double &sum = labelled ? largest.labels : largest.lines;
            sum = std::max(sum, difference(picture, drawing, square));
        }
    }
    return largest;
}
