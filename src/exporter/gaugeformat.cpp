#include "exporter/formats.h"
#include "model/gaugefile.h"

#include <QIODevice>

namespace {

bool writeGauge(QIODevice &device, const ExportJob &job)
{
    const QByteArray bytes = gaugeFile::write(job.layers);
    return device.write(bytes) == bytes.size();
}

} // namespace

constinit const ExportFormat gaugeFormat{.name = "gauge", .write = writeGauge};
