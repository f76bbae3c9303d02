#include "pictures.h"

#include "model/gaugefile.h"

#include <QFile>
#include <QImageWriter>

using namespace Qt::StringLiterals;

QString sourcePath(const QString &path)
{
    return u"" CORVALENCE_SOURCE "/"_s + path;
}

QList<gaugeLayer> readGauge(const QString &path)
{
    QFile file(sourcePath(path));
    QList<gaugeLayer> layers;
    QString error;
    if (!file.open(QIODevice::ReadOnly))
        qFatal("%s: %s", qPrintable(path), qPrintable(file.errorString()));
    if (!gaugeFile::read(file.readAll(), &layers, &error))
        qFatal("%s: %s", qPrintable(path), qPrintable(error));
    return layers;
}

QList<gaugeData> dataOf(const QList<gaugeLayer> &layers)
{
    QList<gaugeData> data;
    for (const gaugeLayer &layer : layers)
        data.append(layer.data);
    return data;
}

void savePicture(const QImage &picture, const QString &path)
{
    QImageWriter writer(path, "png");
    writer.setCompression(100);
    if (!writer.write(picture))
        qFatal("%s: %s", qPrintable(path), qPrintable(writer.errorString()));
}
