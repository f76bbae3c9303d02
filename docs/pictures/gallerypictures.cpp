#include "pictures.h"

#include "render/imageexport.h"

#include <QPainter>

#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr int gallerySize = 288; // pixels
constexpr int exampleSize = 400; // pixels
constexpr int stripSize = 144;   // pixels

QStringList gaugesIn(const QString &folder)
{
    return QDir(sourcePath(folder)).entryList({u"*.gauge"_s}, QDir::Files, QDir::Name);
}

/// Draws every gauge of a folder of the source tree on the layers of @a backdrop.
void drawFolder(const QDir &gallery, const QString &folder, const QList<gaugeData> &backdrop)
{
    QDir(gallery.filePath(folder)).removeRecursively();
    gallery.mkpath(folder);
    for (const QString &gauge : gaugesIn(folder)) {
        const QList<gaugeData> layers = backdrop + dataOf(readGauge(folder + u'/' + gauge));
        const QString name = gauge.chopped(QStringLiteral(".gauge").size());
        savePicture(gaugeImage(gallerySize, layers), gallery.filePath(folder + u'/' + name + u".png"_s));
    }
}

/// A few samples in a row.
QImage strip()
{
    constexpr int gap = 8;
    const std::array samples{u"Airspeed indicator"_s, u"Altimeter"_s, u"Barometer"_s, u"Compass"_s,
                             u"Tachometer"_s,         u"VU meter"_s};
    const int count = static_cast<int>(samples.size());
    QImage picture(count * stripSize + (count - 1) * gap, stripSize, QImage::Format_ARGB32);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    for (int i = 0; i < count; ++i) {
        const auto layers = readGauge(u"samples/"_s + samples.at(static_cast<size_t>(i)) + u".gauge"_s);
        painter.drawImage(i * (stripSize + gap), 0, gaugeImage(stripSize, dataOf(layers)));
    }
    return picture;
}

} // namespace

void drawGallery(const QDir &docs)
{
    const QDir gallery = docs.filePath(u"gallery"_s);
    drawFolder(gallery, u"samples"_s, {});
    // Presets are mostly white marks without a face.
    drawFolder(gallery, u"presets"_s, dataOf(readGauge(u"docs/pictures/backdrop.gauge"_s)));
    savePicture(strip(), docs.filePath(u"strip.png"_s));
}

void drawFittedScales(const QDir &docs)
{
    for (const QString &gauge : {u"docs/fit/Plain"_s, u"docs/fit/ESR"_s, u"samples/Voltmeter"_s}) {
        const QImage picture = gaugeImage(exampleSize, dataOf(readGauge(gauge + u".gauge"_s)));
        savePicture(picture, docs.filePath(u"fit/"_s + gauge.section(u'/', -1) + u".png"_s));
    }
}
