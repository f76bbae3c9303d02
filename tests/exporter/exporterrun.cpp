#include "exporterrun.h"

#include "model/gaugefile.h"
#include "support/warnings.h"

using namespace Qt::StringLiterals;

QByteArray gaugeOf(const gaugeData &data, qsizetype layerCount, const QString &name)
{
    return gaugeFile::write(QList<gaugeLayer>(layerCount, gaugeLayer{name, data}));
}

QStringList layerNames(const QByteArray &gauge)
{
    QList<gaugeLayer> layers;
    gaugeFile::read(gauge, &layers, nullptr);
    QStringList names;
    for (const gaugeLayer &layer : std::as_const(layers))
        names.append(layer.name);
    return names;
}

ExporterTest::ExporterTest()
    : ProgramTest(QStringLiteral(CORVALENCE_EXPORT))
{
}

void ExporterTest::init()
{
    failOnUnexpectedWarnings();
    makeFolder();
    writeGauge(u"Dial.gauge"_s);
}

void ExporterTest::writeGauge(const QString &name, const QStringList &layers) const
{
    QList<gaugeLayer> stack;
    for (const QString &layerName : layers) {
        gaugeLayer layer{layerName, {}};
        layer.data.divisionCount[0] = 3 + static_cast<int>(stack.size());
        stack.append(layer);
    }
    write(name, gaugeFile::write(stack));
}
