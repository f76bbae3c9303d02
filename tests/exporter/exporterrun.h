#ifndef EXPORTERRUN_H
#define EXPORTERRUN_H

#include "support/programrun.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

struct gaugeData;

/// The result of a run of the exporter.
using ExporterRun = ProgramRun;

/// The bytes of a gauge file of equal layers.
[[nodiscard]] QByteArray gaugeOf(const gaugeData &data, qsizetype layerCount = 1,
                                 const QString &name = QStringLiteral("Layer"));

/// The names of the layers in the bytes of a gauge file.
[[nodiscard]] QStringList layerNames(const QByteArray &gauge);

/// A test class that runs the exporter. In its folder, Dial.gauge is a gauge of one default layer.
class ExporterTest : public ProgramTest
{
    Q_OBJECT

public:
    ExporterTest();

private Q_SLOTS:
    void init();

protected:
    /// Writes a gauge of layers with these names. No two have the same number of divisions.
    void writeGauge(const QString &name, const QStringList &layers = {QStringLiteral("Dial")}) const;
};

#endif
