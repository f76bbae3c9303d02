#include "render/imageexport.h"

#include "model/gaugedata.h"
#include "render/gaugepainter.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QImage>
#include <QImageWriter>
#include <QPainter>
#include <QPdfWriter>
#include <QStringEncoder>
#include <QStringList>
#include <QSvgGenerator>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace {

constexpr double millimetresPerInch = 25.4;
constexpr double pointsPerInch = 72.0;
/// The resolution of the editor's display, at which label fonts are measured on every device.
constexpr int dotsPerInch = 96;

PaintStyle paintStyle(const PictureStyle &style)
{
    return {.textAsPaths = style.textAsPaths, .centreDot = style.centreDot, .rotation = style.rotation};
}

void paintBackground(QPainter &painter, int size, const PictureStyle &style)
{
    if (style.background.isValid())
        painter.fillRect(0, 0, size, size, style.background);
}

/// Escapes a text for an XML attribute and removes the characters that XML does not allow.
QString inAttribute(QString text)
{
    text.removeIf([](QChar c) { return c < QLatin1Char(' ') || c == QChar(0xfffe) || c == QChar(0xffff); });
    return text.toHtmlEscaped();
}

/// Returns the families of label fonts that need escaping in an attribute, longest first.
QStringList oddFamilies(const QList<gaugeData> &layers)
{
    QStringList families;
    for (const gaugeData &layer : layers) {
        const QString family = layer.tickCountFont.family();
        if (family != inAttribute(family) && !families.contains(family))
            families.append(family);
    }
    std::sort(families.begin(), families.end(),
              [](const QString &a, const QString &b) { return a.size() > b.size(); });
    return families;
}

QByteArray familyAttribute(const QString &family)
{
    // As in QSvgGenerator's text stream: toUtf8() writes one half of a surrogate pair differently.
    QStringEncoder utf8(QStringConverter::Utf8);
    return utf8.encode(QStringLiteral("font-family=\"") + family + QLatin1Char('"'));
}

/// Returns an SVG whose width and height are @a size pixels.
QByteArray svgInPixels(int size, const QList<gaugeData> &layers, const PictureStyle &style)
{
    QBuffer drawing;
    QSvgGenerator generator;
    generator.setOutputDevice(&drawing);
    generator.setSize(QSize(size, size));
    generator.setViewBox(QRect(0, 0, size, size));
    generator.setResolution(dotsPerInch);
    generator.setTitle(QCoreApplication::translate("Window", "Corvalence 2 Gauge"));
    generator.setDescription(
        QCoreApplication::translate("Window", "A gauge generated in Corvalence 2Saved to SVG."));
    QPainter painter(&generator);
    paintBackground(painter, size, style);
    paintGauge(painter, size, layers, paintStyle(style));
    painter.end();
    return drawing.data();
}

/// Replaces the first value of @a attribute. The document must contain it.
void setAttribute(QByteArray &document, const QByteArray &attribute, const QByteArray &value)
{
    const qsizetype start = document.indexOf(attribute + "=\"") + attribute.size() + 2;
    document.replace(start, document.indexOf('"', start) - start, value);
}

/// The raster engine does not draw beyond this coordinate.
constexpr int maxImageSize = 32767;

/// Returns a null image for sizes outside 1 to maxImageSize or without enough memory. The system supplies
/// zeroed pages at the first write, so that the empty parts of a large picture take no memory.
QImage transparentImage(int size)
{
    if (size <= 0 || size > maxImageSize)
        return {};
    const qsizetype bytesPerLine = qsizetype(size) * 4;
    void *const pixels = std::calloc(static_cast<size_t>(size), static_cast<size_t>(bytesPerLine));
    if (pixels == nullptr)
        return {};
    QImage image(static_cast<uchar *>(pixels), size, size, bytesPerLine, QImage::Format_ARGB32, std::free,
                 pixels);
    if (image.isNull())
        std::free(pixels);
    return image;
}

} // namespace

QImage gaugeImage(int size, const QList<gaugeData> &layers, const PictureStyle &style)
{
    QImage image = transparentImage(size);
    if (image.isNull())
        return image;
    if (style.background.isValid())
        image.fill(style.background);
    QPainter painter(&image);
    PaintStyle options = paintStyle(style);
    options.textAsPaths = false;
    paintGauge(painter, size, layers, options);
    painter.end();
    // After painting: the density of an image changes the size of fonts.
    if (style.millimetres > 0.0) {
        const int dotsPerMetre = qRound(size * 1000.0 / style.millimetres);
        image.setDotsPerMeterX(dotsPerMetre);
        image.setDotsPerMeterY(dotsPerMetre);
    }
    return image;
}

bool writePng(QIODevice &device, int size, const QList<gaugeData> &layers, const PictureStyle &style)
{
    const QImage image = gaugeImage(size, layers, style);
    return !image.isNull() && device.isWritable() && QImageWriter(&device, "png").write(image);
}

bool writeSvg(QIODevice &device, int size, const QList<gaugeData> &layers, const PictureStyle &style)
{
    if (!device.isWritable())
        return false;
    // Written to memory first: QSvgGenerator does not report write errors, does not escape font families, and
    // takes whole pixels only; another resolution would change the size of the fonts.
    QByteArray document = svgInPixels(size, layers, style);
    for (const QString &family : oddFamilies(layers))
        document.replace(familyAttribute(family), familyAttribute(inAttribute(family)));
    if (style.millimetres > 0.0) {
        const QByteArray side = QByteArray::number(style.millimetres, 'g', 10) + "mm";
        setAttribute(document, "width", side);
        setAttribute(document, "height", side);
    }
    return device.write(document) == document.size();
}

bool writePdf(QIODevice &device, int size, const QList<gaugeData> &layers, const PictureStyle &style)
{
    const double inches =
        style.millimetres > 0.0 ? style.millimetres / millimetresPerInch : double(size) / dotsPerInch;
    const double points = inches * pointsPerInch;

    QBuffer page;
    if (!device.isWritable() || !page.open(QIODevice::WriteOnly))
        return false;
    QPdfWriter writer(&page);
    writer.setTitle(QCoreApplication::translate("Window", "Corvalence 2 Gauge"));
    writer.setCreator(QStringLiteral("Corvalence"));
    writer.setResolution(dotsPerInch);
    writer.setPageSize(QPageSize(QSizeF(std::ceil(points), std::ceil(points)), QPageSize::Point, QString(),
                                 QPageSize::ExactMatch));
    writer.setPageMargins(QMarginsF());
    QPainter painter;
    if (!painter.begin(&writer))
        return false;
    const double pagePixelsPerPixel = inches * dotsPerInch / size;
    painter.scale(pagePixelsPerPixel, pagePixelsPerPixel);
    PaintStyle options = paintStyle(style);
    options.hairline = double(canvasSize) / size;
    paintBackground(painter, size, style);
    paintGauge(painter, size, layers, options);
    if (!painter.end())
        return false;

    return device.write(page.data()) == page.size();
}
