#include "exporter/pngfile.h"

#include <QHash>
#include <QIODevice>
#include <QImage>
#include <QtEndian>

#include <spng.h>

#include <algorithm>
#include <bit>
#include <memory>
#include <new>
#include <span>
#include <vector>

namespace {

std::span<const QRgb> pixelRow(const QImage &image, int y)
{
    return {reinterpret_cast<const QRgb *>(image.constScanLine(y)), static_cast<size_t>(image.width())};
}

bool isOpaque(const QImage &image)
{
    for (int y = 0; y < image.height(); ++y) {
        if (!std::ranges::all_of(pixelRow(image, y), [](QRgb pixel) { return qAlpha(pixel) == 255; }))
            return false;
    }
    return true;
}

/// The colours of an image and their numbers, in the order in which they appear.
class Palette
{
public:
    /// Stays empty when the image has more than 256 colours.
    explicit Palette(const QImage &image);

    [[nodiscard]] bool isEmpty() const { return m_numbers.isEmpty(); }
    /// Returns the palette for the file. libspng asks for the transparencies in a structure of their own.
    [[nodiscard]] spng_plte colours() const;
    [[nodiscard]] spng_trns transparencies() const;
    /// Replaces each pixel by the number of its colour.
    void convertRow(std::span<const QRgb> row, std::vector<uint8_t> &bytes) const;

private:
    static constexpr qsizetype maxSize = 256;

    QHash<QRgb, uint8_t> m_numbers;
};

Palette::Palette(const QImage &image)
{
    m_numbers.reserve(maxSize);
    QRgb last = *pixelRow(image, 0).begin();
    m_numbers.insert(last, 0);
    for (int y = 0; y < image.height(); ++y) {
        for (const QRgb pixel : pixelRow(image, y)) {
            if (pixel == last)
                continue;
            last = pixel;
            if (m_numbers.contains(pixel))
                continue;
            if (m_numbers.size() == maxSize) {
                m_numbers.clear();
                return;
            }
            m_numbers.insert(pixel, static_cast<uint8_t>(m_numbers.size()));
        }
    }
}

spng_plte Palette::colours() const
{
    spng_plte palette{};
    palette.n_entries = static_cast<uint32_t>(m_numbers.size());
    for (auto colour = m_numbers.cbegin(); colour != m_numbers.cend(); ++colour) {
        const QRgb rgb = colour.key();
        palette.entries[colour.value()] = {static_cast<uint8_t>(qRed(rgb)), static_cast<uint8_t>(qGreen(rgb)),
                                           static_cast<uint8_t>(qBlue(rgb)), 0};
    }
    return palette;
}

spng_trns Palette::transparencies() const
{
    spng_trns transparencies{};
    transparencies.n_type3_entries = static_cast<uint32_t>(m_numbers.size());
    for (auto colour = m_numbers.cbegin(); colour != m_numbers.cend(); ++colour)
        transparencies.type3_alpha[colour.value()] = static_cast<uint8_t>(qAlpha(colour.key()));
    return transparencies;
}

void Palette::convertRow(std::span<const QRgb> row, std::vector<uint8_t> &bytes) const
{
    QRgb last = row.front();
    uint8_t number = m_numbers.value(last);
    std::ranges::transform(row, bytes.begin(), [&](QRgb pixel) {
        if (pixel != last) {
            last = pixel;
            number = m_numbers.value(pixel);
        }
        return number;
    });
}

void convertToRgba(std::span<const QRgb> row, std::vector<uint8_t> &bytes)
{
    uint8_t *out = bytes.data();
    for (const QRgb argb : row) {
        qToBigEndian(std::rotl(argb, 8), out);
        out += 4;
    }
}

void convertToRgb(std::span<const QRgb> row, std::vector<uint8_t> &bytes)
{
    uint8_t *out = bytes.data();
    for (const QRgb pixel : row) {
        *out++ = static_cast<uint8_t>(qRed(pixel));
        *out++ = static_cast<uint8_t>(qGreen(pixel));
        *out++ = static_cast<uint8_t>(qBlue(pixel));
    }
}

int writeToDevice(spng_ctx * /*context*/, void *device, void *bytes, size_t size)
{
    const auto length = static_cast<qint64>(size);
    try {
        auto *const output = static_cast<QIODevice *>(device);
        return output->write(static_cast<char *>(bytes), length) == length ? SPNG_OK : SPNG_IO_ERROR;
    } catch (const std::bad_alloc &) {
        return SPNG_IO_ERROR; // exceptions must not pass through C code
    }
}

} // namespace

bool writePngFile(QIODevice &device, const QImage &image, int compression)
{
    if (image.isNull())
        return false;
    const Palette palette(image);
    const bool opaque = isOpaque(image);

    spng_ihdr header{};
    header.width = static_cast<uint32_t>(image.width());
    header.height = static_cast<uint32_t>(image.height());
    header.bit_depth = 8;
    size_t bytesPerPixel = 1;
    if (!palette.isEmpty()) {
        header.color_type = SPNG_COLOR_TYPE_INDEXED;
    } else {
        header.color_type = opaque ? SPNG_COLOR_TYPE_TRUECOLOR : SPNG_COLOR_TYPE_TRUECOLOR_ALPHA;
        bytesPerPixel = opaque ? 3 : 4;
    }
    constexpr uint8_t perMetre = 1;
    spng_phys density{static_cast<uint32_t>(image.dotsPerMeterX()),
                      static_cast<uint32_t>(image.dotsPerMeterY()), perMetre};
    spng_plte colours = palette.colours();
    spng_trns transparencies = palette.transparencies();

    const std::unique_ptr<spng_ctx, decltype(&spng_ctx_free)> context(spng_ctx_new(SPNG_CTX_ENCODER),
                                                                      &spng_ctx_free);
    spng_ctx *const png = context.get();
    // No filter: on flat artwork they cost time and make files larger.
    if (png == nullptr || spng_set_png_stream(png, writeToDevice, &device) != SPNG_OK ||
        spng_set_option(png, SPNG_IMG_COMPRESSION_LEVEL, compression) != SPNG_OK ||
        spng_set_option(png, SPNG_FILTER_CHOICE, SPNG_DISABLE_FILTERING) != SPNG_OK ||
        spng_set_ihdr(png, &header) != SPNG_OK || spng_set_phys(png, &density) != SPNG_OK ||
        (!palette.isEmpty() && spng_set_plte(png, &colours) != SPNG_OK) ||
        (!palette.isEmpty() && !opaque && spng_set_trns(png, &transparencies) != SPNG_OK) ||
        spng_encode_image(png, nullptr, 0, SPNG_FMT_PNG, SPNG_ENCODE_PROGRESSIVE | SPNG_ENCODE_FINALIZE) !=
            SPNG_OK)
        return false;

    std::vector<uint8_t> bytes(static_cast<size_t>(image.width()) * bytesPerPixel);
    int status = SPNG_OK;
    for (int y = 0; y < image.height() && status == SPNG_OK; ++y) {
        const std::span<const QRgb> row = pixelRow(image, y);
        if (!palette.isEmpty())
            palette.convertRow(row, bytes);
        else if (opaque)
            convertToRgb(row, bytes);
        else
            convertToRgba(row, bytes);
        status = spng_encode_row(png, bytes.data(), bytes.size());
    }
    return status == SPNG_EOI; // the last row ends the file
}
