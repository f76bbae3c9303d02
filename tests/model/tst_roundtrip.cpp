#include "model/gaugefile.h"
#include "support/records.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QRandomGenerator>
#include <QTest>

#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>

/// What is written comes back, for records of every kind. The seed is fixed, so a failure can be repeated.
class tst_RoundTrip : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void randomGaugeComesBack();
    void randomRecordComesBackFromTheOlderForm();
    void damagedDocumentKeepsThePromise();
};

namespace {

constexpr int recordCount = 1000;
constexpr quint32 seed = 20260;

class RandomRecords
{
public:
    gaugeData record()
    {
        gaugeData data;
        for (const GaugeField &field : gaugeFields())
            field.set(data, value(field));
        return data;
    }

private:
    QVariant value(const GaugeField &field)
    {
        switch (field.kind) {
        case GaugeField::Number:
            return number();
        case GaugeField::Integer:
            return field.position == GaugeField::insideFont ? m_random.bounded(1, 500) : integer();
        case GaugeField::Flag:
            return m_random.bounded(2) == 1;
        case GaugeField::Color:
            return QColor::fromRgba(m_random.generate());
        case GaugeField::Text:
            return family();
        }
        return {};
    }

    /// Now such a number as the window's controls give, now one of any magnitude.
    double number()
    {
        switch (m_random.bounded(4)) {
        case 0:
            return m_random.bounded(-360000, 360000) / 1000.0;
        case 1:
            return m_random.generateDouble();
        case 2:
            return m_random.bounded(-1000, 1000);
        default:
            return std::ldexp(m_random.generateDouble() - 0.5, m_random.bounded(-1000, 1000));
        }
    }

    int integer()
    {
        return m_random.bounded(2) == 0 ? m_random.bounded(-100, 100) : static_cast<int>(m_random.generate());
    }

    /// No comma, which parts families, no percent sign, which the older form fills in, and no space at either
    /// end, which Qt trims there (there are several beyond Latin-1).
    QString family()
    {
        QString family = QStringLiteral("Face");
        for (int i = m_random.bounded(8); i > 0; --i)
            family += QChar(m_random.bounded(0x00a1, 0x2fff));
        return family + QLatin1Char('x');
    }

    QRandomGenerator m_random{seed};
};

/// The number that is left of @a value when it is written with six significant digits.
double inSixDigits(double value)
{
    std::array<char, 64> text{};
    if (std::snprintf(text.data(), text.size(), "%.6g", value) < 0)
        qFatal("no text for a number");
    return std::strtod(text.data(), nullptr);
}

QColor withoutAlpha(const QColor &color)
{
    return QColor::fromRgb(color.rgb());
}

} // namespace

void tst_RoundTrip::randomGaugeComesBack()
{
    RandomRecords random;
    QList<gaugeLayer> written;
    for (int i = 0; i < recordCount; ++i)
        written.append({QStringLiteral("Layer %1").arg(i), random.record()});

    const QByteArray bytes = gaugeFile::write(written);
    QList<gaugeLayer> read;
    QVERIFY(gaugeFile::read(bytes, &read, nullptr));
    QCOMPARE(read.size(), recordCount);
    for (qsizetype i = 0; i < recordCount; ++i) {
        QCOMPARE(read.at(i).name, written.at(i).name);
        QCOMPARE(read.at(i).data.toJson(), written.at(i).data.toJson());
    }
    QCOMPARE(gaugeFile::write(read), bytes);
}

void tst_RoundTrip::randomRecordComesBackFromTheOlderForm()
{
    RandomRecords random;
    for (int i = 0; i < recordCount; ++i) {
        const gaugeData written = random.record();
        gaugeData expected = written;
        for (const GaugeField &field : gaugeFields()) {
            if (field.kind == GaugeField::Number)
                field.set(expected, inSixDigits(field.get(written).toDouble()));
            else if (field.kind == GaugeField::Color)
                field.set(expected, withoutAlpha(field.get(written).value<QColor>()));
        }
        gaugeData read;
        QVERIFY(read.fromQString(written.toQString()));
        QCOMPARE(valuesOf(read), valuesOf(expected));
    }
}

void tst_RoundTrip::damagedDocumentKeepsThePromise()
{
    QRandomGenerator random(seed);
    const QByteArray whole = gaugeFile::write({{QStringLiteral("A"), gaugeData()}}).trimmed();
    int refused = 0;
    for (int i = 0; i < 2000; ++i) {
        QByteArray damaged = whole;
        // The brace stays: without it the text is of the older form.
        damaged[random.bounded(1, static_cast<int>(whole.size()))] = static_cast<char>(random.bounded(256));
        QList<gaugeLayer> layers(3);
        QString error;
        const bool accepted = gaugeFile::read(damaged, &layers, &error);
        QCOMPARE(error.isEmpty(), accepted);
        QCOMPARE(layers.isEmpty(), !accepted);
        refused += accepted ? 0 : 1;
    }
    QVERIFY(refused > 0 && refused < 2000);
}

ADD_TEST_CLASS(tst_RoundTrip)
#include "tst_roundtrip.moc"
