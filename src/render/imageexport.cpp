#include "imageexport.h"

#include "gaugedata.h"
#include "gaugepainter.h"

#include <QCoreApplication>
#include <QImage>
#include <QImageWriter>
#include <QPainter>
#include <QSvgGenerator>

bool writePng(QIODevice &device, int size, const QList<gaugeData> &layers)
{
    QImage image(size, size, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter;
    if (!painter.begin(&image))
        return false;
    paintGauge(painter, size, layers);
    painter.end();

    return QImageWriter(&device, "png").write(image);
}

bool writeSvg(QIODevice &device, int size, const QList<gaugeData> &layers)
{
    QSvgGenerator generator;
    generator.setOutputDevice(&device);
    generator.setSize(QSize(size, size));
    generator.setViewBox(QRect(0, 0, size, size));
    generator.setResolution(96);
    generator.setTitle(QCoreApplication::translate("Window", "Corvalence 2 Gauge"));
    generator.setDescription(
        QCoreApplication::translate("Window", "A gauge generated in Corvalence 2Saved to SVG."));
    QPainter painter;
    if (!painter.begin(&generator))
        return false;
    paintGauge(painter, size, layers);
    return painter.end();
}
