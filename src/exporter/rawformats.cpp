#include "exporter/formats.h"
#include "exporter/rawpicture.h"
#include "render/cnames.h"

#include <QIODevice>

#include <array>
#include <cmath>

namespace {

bool writeRgb565(QIODevice &device, const ExportJob &job)
{
    const RawPicture picture = drawRawPicture(job, job.byteOrder);
    return !picture.area.isNull() && device.write(picture.colours) == picture.colours.size() &&
           device.write(picture.alpha) == picture.alpha.size();
}

/// What the names in the C source of a picture begin with.
QByteArray prefixOf(const ExportJob &job)
{
    QByteArray prefix = gaugePrefix(job.gaugeName);
    if (!job.partName.isEmpty())
        prefix += '_' + job.partName.toLatin1().replace('-', '_');
    if (job.sizes.size() > 1)
        prefix += '_' + QByteArray::number(job.size);
    return prefix;
}

/// Bytes as the elements of an array.
void appendElements(QByteArray &code, const QByteArray &bytes)
{
    constexpr qsizetype bytesInLine = 20;
    constexpr std::array digits{'0', '1', '2', '3', '4', '5', '6', '7',
                                '8', '9', 'a', 'b', 'c', 'd', 'e', 'f'};
    for (qsizetype index = 0; index < bytes.size(); ++index) {
        const auto byte = static_cast<unsigned char>(bytes.at(index));
        if (index % bytesInLine == 0)
            code += "\n    ";
        code += "0x";
        code += digits.at(byte >> 4);
        code += digits.at(byte & 15);
        code += ',';
    }
}

constexpr const char *sourceStart = R"(/*
 * The gauge @TITLE@ as a picture of @WIDTH@ x @HEIGHT@ pixels. C99 and C++.
 *
 * @NAME@_pixels has @NAME@_height rows from the top, each of @NAME@_stride bytes. A
 * pixel is two bytes, the low one first: red in the upper 5 bits, green in 6, blue in the lower 5.
 *@ALPHA@
 * @NAME@_pivot_x and _y are where the needle turns, in pixels from the left and upper edge of the
 * picture (exactly @X@ and @Y@).
 */
#include <stdint.h>

/* Define CORVALENCE_LVGL to get @NAME@_image for LVGL 9. */
#ifdef CORVALENCE_LVGL
#include "lvgl.h"
#endif
#ifndef LV_ATTRIBUTE_MEM_ALIGN
#define LV_ATTRIBUTE_MEM_ALIGN
#endif
#ifndef LV_ATTRIBUTE_LARGE_CONST
#define LV_ATTRIBUTE_LARGE_CONST
#endif

#ifdef __cplusplus
extern "C" {
#endif

extern const uint16_t @NAME@_width;
extern const uint16_t @NAME@_height;
extern const uint16_t @NAME@_stride;
extern const int16_t @NAME@_pivot_x;
extern const int16_t @NAME@_pivot_y;
extern const uint8_t @NAME@_pixels[@COUNT@];

const uint16_t @NAME@_width = @WIDTH@;
const uint16_t @NAME@_height = @HEIGHT@;
const uint16_t @NAME@_stride = @STRIDE@;
const int16_t @NAME@_pivot_x = @PIVOTX@;
const int16_t @NAME@_pivot_y = @PIVOTY@;

LV_ATTRIBUTE_MEM_ALIGN LV_ATTRIBUTE_LARGE_CONST const uint8_t @NAME@_pixels[@COUNT@] = {)";

constexpr const char *alphaComment =
    R"( After the last row, there is a byte of alpha for each pixel: 0 is transparent, 255 opaque.
 *)";

// C++17 has no designated initialisers, and the order of bit fields in C may depend on the processor.
constexpr const char *sourceEnd = R"(
};

#ifdef CORVALENCE_LVGL
extern const lv_image_dsc_t @NAME@_image;
#ifdef __cplusplus
const lv_image_dsc_t @NAME@_image = {
    {LV_IMAGE_HEADER_MAGIC, @FORMAT@, 0, @WIDTH@, @HEIGHT@, @STRIDE@, 0}, @COUNT@, @NAME@_pixels, 0};
#else
const lv_image_dsc_t @NAME@_image = {
    .header = {.magic = LV_IMAGE_HEADER_MAGIC,
               .cf = @FORMAT@,
               .flags = 0,
               .w = @WIDTH@,
               .h = @HEIGHT@,
               .stride = @STRIDE@},
    .data_size = @COUNT@,
    .data = @NAME@_pixels};
#endif
#endif

#ifdef __cplusplus
}
#endif
)";

QByteArray sourceCode(const ExportJob &job, const RawPicture &picture)
{
    const auto number = [](double value) { return QByteArray::number(value, 'g', 10); };
    // A width of up to maxPictureSize gives a stride that fits in 16 bits.
    static_assert(2 * maxPictureSize <= 0xffff);
    const QList<std::pair<QByteArray, QByteArray>> values{
        {"@ALPHA@", picture.alpha.isEmpty() ? QByteArray() : QByteArray(alphaComment)},
        {"@NAME@", prefixOf(job)},
        {"@WIDTH@", QByteArray::number(picture.area.width())},
        {"@HEIGHT@", QByteArray::number(picture.area.height())},
        {"@STRIDE@", QByteArray::number(2 * picture.area.width())},
        {"@COUNT@", QByteArray::number(picture.colours.size() + picture.alpha.size())},
        {"@FORMAT@", picture.alpha.isEmpty() ? "LV_COLOR_FORMAT_RGB565" : "LV_COLOR_FORMAT_RGB565A8"},
        {"@PIVOTX@", number(std::floor(picture.pivot.x()))},
        {"@PIVOTY@", number(std::floor(picture.pivot.y()))},
        {"@X@", number(picture.pivot.x())},
        {"@Y@", number(picture.pivot.y())},
        {"@TITLE@", commentText(job.gaugeName)}, // last: it can hold any text
    };
    const auto filledIn = [&values](QByteArray text) {
        for (const auto &[name, value] : values)
            text.replace(name, value);
        return text;
    };
    QByteArray code = filledIn(sourceStart);
    code.reserve(code.size() + 6 * (picture.colours.size() + picture.alpha.size()));
    appendElements(code, picture.colours);
    appendElements(code, picture.alpha);
    // No comma after the last element.
    code.chop(1);
    return code + filledIn(sourceEnd);
}

bool writeSource(QIODevice &device, const ExportJob &job)
{
    const RawPicture picture = drawRawPicture(job, ByteOrder::Little);
    if (picture.area.isNull())
        return false;
    const QByteArray code = sourceCode(job, picture);
    return device.write(code) == code.size();
}

double sourceSize(const ExportJob &job)
{
    constexpr double bytesOfPixel = 3.0;
    constexpr double charactersOfByte = 5.3;
    return double(job.size) * job.size * bytesOfPixel * charactersOfByte;
}

} // namespace

constinit const ExportFormat rgb565Format{.name = "rgb565",
                                          .isPicture = true,
                                          .isRaster = true,
                                          .write = writeRgb565,
                                          .estimatedSize = nullptr,
                                          .cropsParts = true};
constinit const ExportFormat sourceFormat{.name = "c",
                                          .isPicture = true,
                                          .isRaster = true,
                                          .write = writeSource,
                                          .estimatedSize = sourceSize,
                                          .cropsParts = true};
