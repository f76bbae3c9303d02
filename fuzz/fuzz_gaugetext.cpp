// The older text form: its reader held against the order of its fields, and its writer against its reader.

#include "gaugeoracle.h"
#include "model/gaugefile.h"
#include "promise.h"
#include "random.h"
#include "target.h"
#include "textmutator.h"
#include "values.h"

#include <QStringList>

namespace {

constexpr qsizetype fixedFields = 48;

/// A record in which no field has its default, so that one which a reader forgets, or touches, shows.
gaugeData unusualRecord()
{
    gaugeData record;
    record.startAngle = 12.5;
    record.angleLength = -33.0;
    record.bias = 0.25;
    record.midpointBias = true;
    record.roundedTickCaps = true;
    record.divisionCount = {7, 8, 9};
    record.divisionInnerRadius = {0.11, 0.12, 0.13};
    record.divisionOuterRadius = {0.21, 0.22, 0.23};
    record.divisionLineWidth = {3.1, 3.2, 3.3};
    record.divisionColor = {Qt::cyan, Qt::magenta, Qt::blue};
    record.roundedArcCaps = true;
    record.arcStartAngle = {4.1, 4.2, 4.3, 4.4};
    record.arcAngleLength = {5.1, 5.2, 5.3, 5.4};
    record.arcRadius = {0.61, 0.62, 0.63, 0.64};
    record.arcWidth = {7.1, 7.2, 7.3, 7.4};
    record.arcColor = {Qt::darkCyan, Qt::darkGray, Qt::darkBlue, Qt::darkRed};
    record.tickCountEnabled = false;
    record.tickCountStart = -8.5;
    record.tickCountIncrement = 2.5;
    record.tickCountDecimalPlaces = 3;
    record.tickCountRadius = 0.33;
    record.tickCountRotate = true;
    record.tickCountSkipFirst = false;
    record.tickCountFont = QFont(QStringLiteral("Unusual"), 23, QFont::Light, true);
    record.tickCountColor = QColor(1, 2, 3, 4);
    return record;
}

void checkReader(const QString &text)
{
    const gaugeData before = unusualRecord();
    gaugeData record = before;
    const bool succeeded = record.fromQString(text);
    require(succeeded == isOlderForm(text), "50 fields are enough, 49 are not");
    require(sameRecord(record, succeeded ? expectedRecord(text, before) : before),
            succeeded ? "each field is read from its position" : "a rejected text changes nothing");
}

/// Text that QString::arg takes for a place of its own changes as the form is put together; that is so by the
/// form's definition. No other font may come apart.
bool hasPlaceholder(const QString &text)
{
    for (qsizetype i = 0; i + 1 < text.size(); ++i) {
        if (text.at(i) == QLatin1Char('%') &&
            (text.at(i + 1).isDigit() || text.at(i + 1) == QLatin1Char('L')))
            return true;
    }
    return false;
}

void checkRoundTrip(const gaugeData &record)
{
    const QString text = record.toQString();
    const QString font = record.tickCountFont.toString();
    require(isOlderForm(text), "a written record has fields enough");
    require(!text.endsWith(QLatin1Char(',')), "there is no comma after the last field");
    if (hasPlaceholder(font))
        return;
    const QStringList fields = text.split(QLatin1Char(','));
    require(fields.sliced(fixedFields, fields.size() - fixedFields - 1).join(QLatin1Char(',')) == font,
            "between field 47 and the last there is the font");
    require(fields.last() == record.tickCountColor.name(), "the colour of the labels comes last");

    gaugeData again = unusualRecord();
    require(again.fromQString(text), "a written record can be read");
    require(again.tickCountEnabled == record.tickCountEnabled, "labels stay on or off");
    require(again.tickCountRotate == record.tickCountRotate, "labels stay rotated or upright");
    require(again.tickCountSkipFirst == record.tickCountSkipFirst, "the first label stays skipped or not");
    require(again.divisionCount == record.divisionCount, "integers read back as they were written");
    QFont sameFont = unusualRecord().tickCountFont;
    if (sameFont.fromString(font))
        require(again.tickCountFont == sameFont, "the font is the one that was written");
    const QStringList fieldsAgain = again.toQString().split(QLatin1Char(','));
    require(fieldsAgain.first(fixedFields) == fields.first(fixedFields),
            "what was written once is written again, to the last digit");
}

void checkFile(const QByteArray &bytes, const QString &text)
{
    const QByteArray trimmed = bytes.trimmed();
    if (trimmed.isEmpty() || trimmed.startsWith('{') || trimmed.size() != bytes.size())
        return;
    QList<gaugeLayer> layers;
    require(gaugeFile::read(bytes, &layers, nullptr) == isOlderForm(text), "a file is judged by its fields");
    require(layers.size() == (isOlderForm(text) ? 1 : 0), "a file of the older form has one layer");
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
    checkFile(bytes, text);

    gaugeData record;
    if (record.fromQString(text))
        checkRoundTrip(record);
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
        text = someOlderForm(random);
        break;
    default:
        text = damagedOlderForm(text, random);
        break;
    }
    return store(text, data, maxSize);
}

extern "C" size_t LLVMFuzzerCustomCrossOver(const uint8_t *data1, size_t size1, const uint8_t *data2,
                                            size_t size2, uint8_t *out, size_t maxOutSize, unsigned int seed)
{
    Random random(seed);
    return store(crossedOlderForms(toBytes(data1, size1), toBytes(data2, size2), random), out, maxOutSize);
}
