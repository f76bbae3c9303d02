#include "exporter/pngencoder.h"

#include <QIODevice>
#include <QImage>
#include <QImageWriter>
#include <QtEndian>

#include <zlib.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <span>
#include <vector>

namespace {

using Byte = unsigned char;
using Bytes = std::vector<Byte>;

constexpr size_t pixelBytes = 4;

/// The filters of a row, by the numbers that stand for them in the file.
enum Filter : Byte { None, Sub, Up, Average, Paeth, filterCount };

/// What a filter expects of a byte, given the byte of the pixel on its left, of the one above it, and of the
/// one above that on its left.
template <Filter filter>
short predicted(short left, short above, short aboveLeft)
{
    if constexpr (filter == Sub)
        return left;
    else if constexpr (filter == Up)
        return above;
    else if constexpr (filter == Average)
        return static_cast<short>((left + above) / 2);
    else if constexpr (filter == Paeth) {
        const auto distance = [](int x) { return static_cast<short>(x < 0 ? -x : x); };
        const short toLeft = distance(above - aboveLeft);
        const short toAbove = distance(left - aboveLeft);
        const short toAboveLeft = distance(left + above - 2 * aboveLeft);
        const short nearer = toAbove <= toAboveLeft ? above : aboveLeft;
        return toLeft <= toAbove && toLeft <= toAboveLeft ? left : nearer;
    } else
        return 0;
}

/// Part of a row with the row above it. Before both lies one more pixel.
struct Stretch
{
    const Byte *row;
    const Byte *above;
    size_t size;

    template <Filter filter>
    [[nodiscard]] Byte filtered(size_t i) const
    {
        const Byte *const left = row + i - pixelBytes;
        const Byte *const aboveLeft = above + i - pixelBytes;
        return static_cast<Byte>(row[i] - predicted<filter>(*left, above[i], *aboveLeft));
    }

    /// What the filter leaves, taken as signed numbers without their signs.
    template <Filter filter>
    [[nodiscard]] size_t cost() const
    {
        unsigned sum = 0;
        for (size_t i = 0; i < size; ++i) {
            const Byte left = filtered<filter>(i);
            sum += std::min<Byte>(left, static_cast<Byte>(-left));
        }
        return sum;
    }

    template <Filter filter>
    void write(Byte *to) const
    {
        for (size_t i = 0; i < size; ++i)
            to[i] = filtered<filter>(i);
    }

    /// Whether all pixels, those before included, are alike, so that every filter but None leaves nothing.
    [[nodiscard]] bool isFlat() const
    {
        const size_t all = size + pixelBytes;
        return std::memcmp(row - pixelBytes, above - pixelBytes, all) == 0 &&
               std::memcmp(row, row - pixelBytes, size) == 0;
    }
};

/// Chooses a filter for each row: the first of those that leave the least.
class RowFilter
{
public:
    explicit RowFilter(size_t rowBytes)
        : m_row(pixelBytes + rowBytes)
        , m_above(pixelBytes + rowBytes)
        , m_filtered(1 + rowBytes)
    {
    }

    /// The next row of pixels as it stands in the file: the filter's number, then what it leaves.
    const Bytes &next(const QRgb *pixels);

private:
    [[nodiscard]] Filter cheapest() const;

    Bytes m_row;
    Bytes m_above;
    Bytes m_filtered;
};

Filter RowFilter::cheapest() const
{
    constexpr size_t stretchBytes = 256;
    std::array<size_t, filterCount> costs{};
    for (size_t start = pixelBytes; start < m_row.size(); start += stretchBytes) {
        const Stretch stretch{&m_row[start], &m_above[start], std::min(stretchBytes, m_row.size() - start)};
        costs[None] += stretch.cost<None>();
        if (stretch.isFlat())
            continue;
        costs[Sub] += stretch.cost<Sub>();
        costs[Up] += stretch.cost<Up>();
        costs[Average] += stretch.cost<Average>();
        costs[Paeth] += stretch.cost<Paeth>();
    }
    return static_cast<Filter>(std::ranges::min_element(costs) - costs.begin());
}

const Bytes &RowFilter::next(const QRgb *pixels)
{
    m_row.swap(m_above);
    const size_t count = m_row.size() / pixelBytes - 1;
    for (size_t i = 0; i < count; ++i) {
        // ARGB to bytes in the order red, green, blue, alpha.
        const QRgb rgba = qToBigEndian((pixels[i] << 8) | (pixels[i] >> 24));
        std::memcpy(&m_row[(i + 1) * pixelBytes], &rgba, pixelBytes);
    }

    const Filter filter = cheapest();
    const Stretch whole{&m_row[pixelBytes], &m_above[pixelBytes], m_row.size() - pixelBytes};
    m_filtered[0] = filter;
    switch (filter) {
    case None:
        whole.write<None>(&m_filtered[1]);
        break;
    case Sub:
        whole.write<Sub>(&m_filtered[1]);
        break;
    case Up:
        whole.write<Up>(&m_filtered[1]);
        break;
    case Average:
        whole.write<Average>(&m_filtered[1]);
        break;
    case Paeth:
    case filterCount:
        whole.write<Paeth>(&m_filtered[1]);
        break;
    }
    return m_filtered;
}

bool writeChunk(QIODevice &device, const char *type, std::span<const Byte> content)
{
    QByteArray chunk(8, '\0');
    qToBigEndian(static_cast<quint32>(content.size()), chunk.data());
    std::memcpy(chunk.data() + 4, type, 4);
    chunk.append(reinterpret_cast<const char *>(content.data()), static_cast<qsizetype>(content.size()));
    const auto *const checked = reinterpret_cast<const Byte *>(chunk.constData()) + 4;
    const quint32 checksum =
        qToBigEndian(static_cast<quint32>(crc32(0, checked, static_cast<uInt>(content.size()) + 4)));
    chunk.append(reinterpret_cast<const char *>(&checksum), 4);
    return device.write(chunk) == chunk.size();
}

/// Compresses rows into the chunks of a PNG, each but the last of the same size.
class PixelChunks
{
public:
    explicit PixelChunks(QIODevice &device)
        : m_device(device)
    {
        constexpr int windowBits = 15;
        constexpr int memoryLevel = 8;
        m_works = deflateInit2(&m_stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, windowBits, memoryLevel,
                               Z_FILTERED) == Z_OK;
        makeRoom();
    }
    ~PixelChunks() { deflateEnd(&m_stream); }
    PixelChunks(const PixelChunks &) = delete;
    PixelChunks &operator=(const PixelChunks &) = delete;

    /// Both return false once something went wrong.
    bool add(const Bytes &row);
    bool finish();

private:
    void makeRoom();
    void writeFullChunk();

    QIODevice &m_device;
    z_stream m_stream{};
    std::array<Byte, 8192> m_chunk{};
    bool m_works = false;
};

void PixelChunks::makeRoom()
{
    m_stream.next_out = m_chunk.data();
    m_stream.avail_out = static_cast<uInt>(m_chunk.size());
}

void PixelChunks::writeFullChunk()
{
    if (m_stream.avail_out > 0)
        return;
    m_works = m_works && writeChunk(m_device, "IDAT", m_chunk);
    makeRoom();
}

bool PixelChunks::add(const Bytes &row)
{
    m_stream.next_in = const_cast<Byte *>(row.data()); // an old interface, which only reads
    m_stream.avail_in = static_cast<uInt>(row.size());
    while (m_works && m_stream.avail_in > 0) {
        m_works = deflate(&m_stream, Z_NO_FLUSH) == Z_OK;
        writeFullChunk();
    }
    return m_works;
}

bool PixelChunks::finish()
{
    int state = Z_OK;
    while (m_works && state == Z_OK) {
        state = deflate(&m_stream, Z_FINISH);
        m_works = state == Z_OK || state == Z_STREAM_END;
        writeFullChunk();
    }
    const size_t rest = m_chunk.size() - m_stream.avail_out;
    if (m_works && rest > 0)
        m_works = writeChunk(m_device, "IDAT", std::span(m_chunk).first(rest));
    return m_works;
}

/// Numbers as the file holds them.
template <size_t count>
void putNumbers(Byte *to, const std::array<int, count> &numbers)
{
    for (const int number : numbers) {
        qToBigEndian(number, to);
        to += sizeof(number);
    }
}

bool writeHeader(QIODevice &device, const QImage &image)
{
    constexpr std::array<char, 8> signature{'\x89', 'P', 'N', 'G', '\r', '\n', '\x1a', '\n'};
    // Eight bits a channel, four channels; the one compression and filtering there are; no interlacing.
    std::array<Byte, 13> header{0, 0, 0, 0, 0, 0, 0, 0, 8, 6, 0, 0, 0};
    putNumbers(header.data(), std::array{image.width(), image.height()});
    std::array<Byte, 9> density{0, 0, 0, 0, 0, 0, 0, 0, 1}; // in pixels per metre
    putNumbers(density.data(), std::array{image.dotsPerMeterX(), image.dotsPerMeterY()});
    return device.write(signature.data(), signature.size()) == signature.size() &&
           writeChunk(device, "IHDR", header) && writeChunk(device, "pHYs", density);
}

} // namespace

bool writeArgbPng(QIODevice &device, const QImage &image)
{
    const size_t rowBytes = static_cast<size_t>(image.width()) * pixelBytes;
    // So little is compressed in a smaller window.
    constexpr size_t little = size_t(16) * 1024;
    if ((rowBytes + 1) * static_cast<size_t>(image.height()) <= little)
        return QImageWriter(&device, "png").write(image);

    if (!writeHeader(device, image))
        return false;
    RowFilter filter(rowBytes);
    PixelChunks chunks(device);
    for (int y = 0; y < image.height(); ++y) {
        if (!chunks.add(filter.next(reinterpret_cast<const QRgb *>(image.constScanLine(y)))))
            return false;
    }
    return chunks.finish() && writeChunk(device, "IEND", {});
}
