#include "pictures.h"

#include "editoruser.h"
#include "model/gaugefile.h"
#include "render/imageexport.h"

#include <QPainter>
#include <QSaveFile>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace {

const QColor faceColor(0x0c, 0x0d, 0x0f);
const QColor steel(0x8d, 0x95, 0x9d);
const QColor green(0x1f, 0xae, 0x4b);
const QColor yellow(0xf4, 0xc2, 0x0d);
const QColor red(0xe2, 0x3b, 0x2e);
const QFont labelFont(u"DejaVu Sans"_s, 18, QFont::Bold);

/// A preview with a line of text to go below it.
struct Caption
{
    QImage picture;
    QString text;
};

QImage scaled(const QImage &picture, int side)
{
    return picture.scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

/// Previews on white, at most three in a row, each with its text below.
QImage table(const QList<Caption> &cells)
{
    constexpr int side = 256;
    constexpr int margin = 8;
    constexpr int cellWidth = side + 2 * margin;
    constexpr int cellHeight = side + 2 * margin + 20;
    const int columns = qMin(3, static_cast<int>(cells.size()));
    const int rows = (static_cast<int>(cells.size()) + columns - 1) / columns;

    QImage picture(columns * cellWidth, rows * cellHeight, QImage::Format_RGB32);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    painter.setFont(QFont(u"DejaVu Sans"_s, 10));
    for (int i = 0; i < cells.size(); ++i) {
        const QPoint corner(i % columns * cellWidth, i / columns * cellHeight);
        painter.drawImage(corner + QPoint(margin, margin), scaled(cells.at(i).picture, side));
        const QRect below(corner.x(), corner.y() + side + margin, cellWidth, cellHeight - side - margin);
        painter.drawText(below, Qt::AlignCenter, cells.at(i).text);
    }
    return picture;
}

/// The six steps of the guide's airspeed indicator, with a picture of each.
void drawAirspeedIndicator(const QDir &guide)
{
    EditorUser user;
    savePicture(user.windowPicture(), guide.filePath(u"empty.png"_s));
    const auto savePreview = [&](const QString &name) {
        savePicture(scaled(user.previewPicture(), 320), guide.filePath(name));
    };

    user.renameLayer(u"Face"_s);
    user.showOnlyArcs();
    user.setArc(1, 0, 360, 0.2, 100, faceColor);
    user.setArc(2, 0, 360, 0.5, 100, faceColor);
    user.setArc(3, 0, 360, 0.78, 100, faceColor);
    user.setArc(4, 0, 360, 0.98, 10, steel);
    savePreview(u"airspeed-1.png"_s);

    user.addLayer(u"Ranges"_s);
    user.showOnlyArcs();
    user.setArc(1, 45, 151.88, 0.875, 16, green);
    user.setArc(2, 196.88, 63.74, 0.875, 16, yellow);
    user.setArc(3, 30, 84.38, 0.8, 12, Qt::white);
    savePreview(u"airspeed-2.png"_s);

    user.addLayer(u"Knots"_s);
    user.setSweep(30, 300);
    user.setRing(1, 8, 5, 0.77, 0.91);
    user.setRing(2, 2, 3.5, 0.83, 0.91);
    user.setRing(3, 2, 2, 0.87, 0.91);
    user.set("arc1AngleLengthSpinBox"_L1, 0);
    user.set("tickCountRadiusSpinBox"_L1, 0.64);
    user.set("tickCountStartSpinBox"_L1, 40);
    user.set("tickCountIncrementSpinBox"_L1, 20);
    user.pickLabelFont(labelFont);
    savePicture(user.windowPicture(), guide.filePath(u"airspeed-3.png"_s));

    user.addLayer(u"Never exceed"_s);
    user.setSweep(260.62, 360);
    user.setRing(1, 1, 7, 0.75, 0.93, red);
    user.showOnlyTicks();
    savePreview(u"airspeed-4.png"_s);

    user.addLayer(u"Needle"_s);
    user.setSweep(155.62, 360);
    user.setRing(1, 1, 6, 0, 0.8);
    user.toggle("roundedTickCapsCheckBox"_L1);
    user.showOnlyTicks();
    savePreview(u"airspeed-5.png"_s);

    user.addLayer(u"Hub"_s);
    user.showOnlyArcs();
    user.setArc(1, 0, 360, 0.055, 27.5, faceColor);
    user.setArc(2, 0, 360, 0.11, 2, QColor(0x6b, 0x73, 0x7b));
    savePicture(user.windowPicture(), guide.filePath(u"airspeed-6.png"_s));

    QSaveFile gauge(guide.filePath(u"Airspeed.gauge"_s));
    if (!gauge.open(QIODevice::WriteOnly) || gauge.write(gaugeFile::write(user.layers())) < 0 ||
        !gauge.commit())
        qFatal("%s: %s", qPrintable(gauge.fileName()), qPrintable(gauge.errorString()));
    savePicture(user.questionOnLoading(sourcePath(u"samples/Voltmeter.gauge"_s)),
                guide.filePath(u"question.png"_s));
}

/// Makes the first layer a scale of ten parts, numbered from 0 to 100.
void makeScale(EditorUser &user)
{
    user.setSweep(-120, 240);
    user.setArc(1, -120, 240, 1, 2, steel);
    user.setRing(1, 10, 4, 0.85, 0.99);
    user.set("tickCountIncrementSpinBox"_L1, 10);
    user.set("tickCountRadiusSpinBox"_L1, 0.72);
    user.pickLabelFont(labelFont);
}

QImage biasPicture()
{
    EditorUser user;
    makeScale(user);
    QList<Caption> cells;
    for (const QString &type : {u"Exponential"_s, u"Midpoint"_s}) {
        if (type == "Midpoint"_L1)
            user.selectMidpointBias();
        for (const double bias : {0.25, 0.5, 0.75}) {
            user.set("gaugeBiasSpinBox"_L1, bias);
            cells.append({user.previewPicture(), u"%1, %2"_s.arg(type).arg(bias)});
        }
    }
    return table(cells);
}

QImage ringsPicture()
{
    EditorUser user;
    makeScale(user);
    QList<Caption> cells;
    user.setRing(1, 4, 6, 0.8, 0.99);
    cells.append({user.previewPicture(), u"Primary 4"_s});
    user.setRing(2, 5, 4, 0.85, 0.99, QColor(0xff, 0xd2, 0x1f));
    cells.append({user.previewPicture(), u"Secondary 5"_s});
    user.setRing(3, 2, 3, 0.9, 0.99, QColor(0xff, 0x5a, 0x4f));
    cells.append({user.previewPicture(), u"Tertiary 2"_s});
    return table(cells);
}

QImage arcsPicture()
{
    EditorUser user;
    makeScale(user);
    QList<Caption> cells;
    user.setArc(1, -120, 140, 0.9, 20, green);
    user.setArc(2, 20, 60, 0.9, 20, yellow);
    user.setArc(3, 80, 40, 0.9, 20, red);
    cells.append({user.previewPicture(), u"Three arcs"_s});
    user.toggle("roundedArcCapsCheckBox"_L1);
    cells.append({user.previewPicture(), u"Rounded End Caps"_s});
    user.toggle("roundedArcCapsCheckBox"_L1);
    user.setSweep(-90, 180);
    cells.append({user.previewPicture(), u"Another sweep"_s});
    return table(cells);
}

QImage labelsPicture()
{
    EditorUser user;
    makeScale(user);
    QList<Caption> cells;
    cells.append({user.previewPicture(), u"Increment 10"_s});
    user.toggle("tickCountRotateCheckBox"_L1);
    cells.append({user.previewPicture(), u"Rotate Tick Counts"_s});
    user.toggle("tickCountRotateCheckBox"_L1);
    user.set("tickCountDecimalPlacesSpinBox"_L1, 1);
    user.set("tickCountIncrementSpinBox"_L1, 0.5);
    user.toggle("skipFirstTickCheckBox"_L1);
    cells.append({user.previewPicture(), u"Increment 0.5, Skip First Tick"_s});
    return table(cells);
}

/// A sample gauge made to look like a photograph of a dial: slightly out of focus and faded.
QImage photograph()
{
    const QImage dial = gaugeImage(512, dataOf(readGauge(u"samples/Voltmeter.gauge"_s)));
    QImage picture(dial.size(), QImage::Format_RGB32);
    picture.fill(QColor(0x3a, 0x35, 0x30));
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(picture.rect(), scaled(dial, 256));
    painter.fillRect(picture.rect(), QColor(0xb9, 0xa8, 0x8a, 46));
    return picture;
}

QImage tracePicture()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"photograph.png"_s);
    savePicture(photograph(), path);
    const QColor pink(0xff, 0x2f, 0xd0);

    EditorUser user;
    user.showOnlyArcs();
    user.set("arc1AngleLengthSpinBox"_L1, 0);
    user.loadReference(path);
    QList<Caption> cells;
    cells.append({user.previewPicture(), u"A picture behind the preview"_s});
    user.setSweep(-60, 120);
    user.setArc(1, -60, 120, 0.68, 2, pink);
    user.setRing(1, 6, 3.5, 0.68, 0.78, pink);
    cells.append({user.previewPicture(), u"Its scale traced"_s});
    return table(cells);
}

QImage editorPicture()
{
    EditorUser user;
    user.loadGauge(sourcePath(u"samples/Airspeed indicator.gauge"_s));
    return user.windowPicture();
}

} // namespace

void drawGuide(const QDir &docs)
{
    const QDir guide = docs.filePath(u"guide"_s);
    guide.mkpath(u"."_s);
    drawAirspeedIndicator(guide);
    savePicture(biasPicture(), guide.filePath(u"bias.png"_s));
    savePicture(ringsPicture(), guide.filePath(u"rings.png"_s));
    savePicture(arcsPicture(), guide.filePath(u"arcs.png"_s));
    savePicture(labelsPicture(), guide.filePath(u"labels.png"_s));
    savePicture(tracePicture(), guide.filePath(u"trace.png"_s));
    savePicture(editorPicture(), docs.filePath(u"editor.png"_s));
}
