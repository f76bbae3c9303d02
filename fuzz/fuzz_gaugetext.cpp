// The reader and the writer of the comma-separated format.

#include "gaugemutator.h"
#include "gaugeoracle.h"
#include "model/gaugefile.h"
#include "support/random.h"
#include "support/records.h"
#include "target.h"
#include "values.h"

#include <QRegularExpression>

namespace {

void checkReader(const QString &text)
{
    gaugeData layer = sampleLayer();
    const bool succeeded = layer.fromQString(text);
    require(succeeded == hasEnoughFields(text), "50 fields are accepted, 49 are rejected");
    if (succeeded)
        require(differingFields(layer, expectedLayer(text, sampleLayer())).isEmpty(),
                "each field is read from its position");
    else
        require(differingFields(layer, sampleLayer()).isEmpty(), "a rejected text changes nothing");
}

void checkFile(const QByteArray &bytes)
{
    QList<gaugeLayer> layers;
    const bool succeeded = gaugeFile::read(bytes, &layers, nullptr);
    require(succeeded == hasEnoughFields(QString::fromUtf8(bytes.trimmed())), "a file needs 50 fields");
    require(layers.size() == (succeeded ? 1 : 0), "a file in the comma-separated format has one layer");
}

void checkRoundTrip(const gaugeData &layer)
{
    const QString text = layer.toQString();
    const QString font = layer.tickCountFont.toString();
    // QString::arg() replaces placeholders in the font.
    static const QRegularExpression placeholder(QStringLiteral("%L?\\d"));
    if (font.contains(placeholder))
        return;
    require(hasEnoughFields(text), "a written layer has enough fields");
    require(text.section(QLatin1Char(','), 48, -2) == font, "the font follows field 47");

    gaugeData again = sampleLayer();
    require(again.fromQString(text), "a written layer can be read");
    for (const GaugeField &field : gaugeFields()) {
        if (field.kind == GaugeField::Integer || field.kind == GaugeField::Flag) {
            if (field.position >= 0)
                require(field.get(again) == field.get(layer), "integers and flags are read back");
        }
    }
    require(again.toQString().section(QLatin1Char(','), 0, 47) == text.section(QLatin1Char(','), 0, 47),
            "a layer that was read is written in the same way");
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int * /*argc*/, char *** /*argv*/)
{
    prepareQt();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes = toBytes(data, size);
    const QString text = QString::fromUtf8(bytes);
    checkReader(text);
    if (!bytes.trimmed().startsWith('{'))
        checkFile(bytes);

    gaugeData layer;
    if (layer.fromQString(text))
        checkRoundTrip(layer);
    return 0;
}

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t maxSize, unsigned int seed)
{
    Random random(seed);
    QByteArray text = toBytes(data, size);
    switch (random.below(16)) {
    case 0:
        return LLVMFuzzerMutate(data, size, maxSize);
    case 1:
        damageBytes(text, random);
        break;
    case 2:
    case 3:
        text = someGaugeText(random);
        break;
    default:
        text = damagedGaugeText(text, random);
        break;
    }
    return store(text, data, maxSize);
}

extern "C" size_t LLVMFuzzerCustomCrossOver(const uint8_t *data1, size_t size1, const uint8_t *data2,
                                            size_t size2, uint8_t *out, size_t maxOutSize, unsigned int seed)
{
    Random random(seed);
    return store(joinedGaugeTexts(toBytes(data1, size1), toBytes(data2, size2), random), out, maxOutSize);
}
