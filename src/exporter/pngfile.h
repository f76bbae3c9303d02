#ifndef PNGFILE_H
#define PNGFILE_H

class QIODevice;
class QImage;

/// The levels of compression: 0 stores the pixels, 9 makes the smallest files and takes longest.
inline constexpr int maxCompression = 9;

/// The fastest level whose files are not larger than QImageWriter's, over all presets and samples: see
/// bench/results.md.
inline constexpr int defaultCompression = 3;

/// Writes @a image, which must have QImage::Format_ARGB32, to an open device as a PNG with the image's pixel
/// density. Up to 256 colours are written as a palette; more as RGB when no pixel is transparent, else as
/// RGBA. The bytes depend on the arguments and on the versions of libspng and zlib only.
///
/// Returns false when the image is null or the device does not take all bytes.
[[nodiscard]] bool writePngFile(QIODevice &device, const QImage &image, int compression = defaultCompression);

#endif
