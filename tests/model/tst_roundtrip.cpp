#include "model/gaugefile.h"
#include "support/random.h"
#include "support/records.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QTest>

#include <cmath>

using namespace Qt::StringLiterals;

/// Random layers are read back as they were written.
class tst_RoundTrip : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void gaugeIsReadBack();
    void commaSeparatedFormatIsReadBack();
};

namespace {

constexpr int recordCount = 1000;
constexpr quint64 seed = 20260;

double someNumber(Random &random)
{
    const double fraction = random.between(0, 1000000) / 1000000.0;
    switch (random.between(0, 3)) {
    case 0:
        return random.between(-360000, 360000) / 1000.0;
    case 1:
        return fraction;
    case 2:
        return random.between(-1000, 1000);
    default:
        return std::ldexp(fraction - 0.5, random.between(-1000, 1000));
    }
}

/// A font family without commas, percent signs and spaces at the ends, which the comma-separated format
/// changes.
QString someFamily(Random &random)
{
    QString family = u"Face"_s;
    for (int i = random.between(0, 7); i > 0; --i)
        family += QChar(random.between(0x00a1, 0x2fff));
    return family + u'x';
}

QVariant someValue(const GaugeField &field, Random &random)
{
    switch (field.kind) {
    case GaugeField::Number:
        return someNumber(random);
    case GaugeField::Integer:
        if (field.position == GaugeField::insideFont)
            return random.between(1, 500);
        return random.oneIn(2) ? random.between(-100, 100) : int(random.next());
    case GaugeField::Flag:
        return random.oneIn(2);
    case GaugeField::Color:
        return QColor::fromRgba(QRgb(random.next()));
    case GaugeField::Text:
        return someFamily(random);
    }
    return {};
}

gaugeData someLayer(Random &random)
{
    gaugeData data;
    for (const GaugeField &field : gaugeFields())
        field.set(data, someValue(field, random));
    return data;
}

} // namespace

void tst_RoundTrip::gaugeIsReadBack()
{
    Random random(seed);
    QList<gaugeLayer> written;
    for (int i = 0; i < recordCount; ++i)
        written.append({u"Layer %1"_s.arg(i), someLayer(random)});

    QList<gaugeLayer> read;
    QVERIFY(gaugeFile::read(gaugeFile::write(written), &read, nullptr));
    QCOMPARE(read.size(), recordCount);
    for (qsizetype i = 0; i < recordCount; ++i) {
        QCOMPARE(read.at(i).name, written.at(i).name);
        QCOMPARE(read.at(i).data.toJson(), written.at(i).data.toJson());
    }
}

void tst_RoundTrip::commaSeparatedFormatIsReadBack()
{
    Random random(seed);
    for (int i = 0; i < recordCount; ++i) {
        const gaugeData written = someLayer(random);
        gaugeData expected = written;
        for (const GaugeField &field : gaugeFields()) {
            const QVariant value = field.get(written);
            if (field.kind == GaugeField::Number)
                field.set(expected, asText(value).toDouble());
            else if (field.kind == GaugeField::Color)
                field.set(expected, QColor::fromRgb(value.value<QColor>().rgb()));
        }
        gaugeData read;
        QVERIFY(read.fromQString(written.toQString()));
        QCOMPARE(differingFields(read, expected), QStringList());
    }
}

ADD_TEST_CLASS(tst_RoundTrip)
#include "tst_roundtrip.moc"
