#include "fit/scalefit.h"

#include "fit/scalecurve.h"
#include "fit/scalemarks.h"
#include "fit/scaleplan.h"
#include "fit/sweepfit.h"
#include "render/sweep.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace {

constexpr int maxMarkCount = 100'000;

/// The editor's form shows no more divisions of a ring.
constexpr int maxDivisions = 100;

/// Labels of one layer: the painter adds the increment once for each label.
struct LabelRun
{
    int last = 0;
    double increment = 1.0;
};

QString written(double value)
{
    return QString::number(value, 'g', 10);
}

/// Returns the first thing that is wrong with the arguments of fitScale(), or an empty string.
QString faultOf(const ScaleMarks &marks, double maxError)
{
    const QList<double> &labels = marks.labels;
    if (!(maxError > 0.0) || !std::isfinite(maxError))
        return QStringLiteral("the largest error is not a positive number");
    if (labels.isEmpty())
        return QStringLiteral("there are no labels");
    if (labels.size() > maxLabelCount)
        return QStringLiteral("there are more than %1 labels").arg(maxLabelCount);
    for (const int parts : {marks.minor, marks.subminor}) {
        if (parts < 1 || parts > maxDivisions)
            return QStringLiteral("gaps are divided into 1 to %1 parts, not %2").arg(maxDivisions).arg(parts);
    }
    if (marks.minor == 1 && marks.subminor > 1)
        return QStringLiteral("there are no minor parts to divide");
    if ((labels.size() - 1) * marks.minor * marks.subminor >= maxMarkCount)
        return QStringLiteral("there are more than %1 marks").arg(maxMarkCount);
    for (qsizetype i = 0; i < labels.size(); ++i) {
        if (!std::isfinite(labels.at(i)))
            return QStringLiteral("a label is not a finite number");
        if (i > 0 && !(labels.at(i) > labels.at(i - 1)))
            return QStringLiteral("label %1 does not ascend").arg(written(labels.at(i)));
    }
    return {};
}

/// Returns the values of all marks.
std::vector<double> valuesOf(const ScaleMarks &marks)
{
    const int parts = marks.minor * marks.subminor;
    std::vector<double> values;
    for (qsizetype i = 0; i + 1 < marks.labels.size(); ++i) {
        for (int part = 0; part < parts; ++part) {
            const double fraction = static_cast<double>(part) / parts;
            values.push_back(marks.labels.at(i) * (1.0 - fraction) + marks.labels.at(i + 1) * fraction);
        }
    }
    values.push_back(marks.labels.last());
    return values;
}

/// The labels of a scale as layers write them.
class LabelWriter
{
public:
    explicit LabelWriter(const ScaleMarks &marks)
        : m_marks(marks)
    {
    }

    /// Returns the number that is written at the label with the index @a label.
    [[nodiscard]] double number(int label) const
    {
        const double value = m_marks.labels.at(label);
        return m_marks.withoutSign ? std::abs(value) : value;
    }

    /// Returns the longest run of labels that one layer can write, beginning with the index @a first.
    [[nodiscard]] LabelRun longestRun(int first) const;

private:
    [[nodiscard]] int lastWith(int first, double increment) const;
    [[nodiscard]] QString text(double value) const { return QString::number(value, 'f', m_marks.decimals); }

    const ScaleMarks &m_marks;
};

/// Returns the last label of those that adding @a increment gives, as numbers and as texts.
int LabelWriter::lastWith(int first, double increment) const
{
    const double tolerance = 1e-9 * std::abs(increment);
    const auto count = static_cast<int>(m_marks.labels.size());
    double sum = number(first);
    int last = first;
    while (last + 1 < count && last - first < maxDivisions) {
        sum += increment;
        const double wanted = number(last + 1);
        // The labels themselves must go on, too: without signs, -2, 2, 6 would be 2, 2, 6.
        const double step = m_marks.labels.at(last + 1) - m_marks.labels.at(last);
        if (std::abs(sum - wanted) > tolerance || std::abs(step - std::abs(increment)) > tolerance ||
            text(sum) != text(wanted)) {
            break;
        }
        ++last;
    }
    return last;
}

LabelRun LabelWriter::longestRun(int first) const
{
    LabelRun longest{.last = first, .increment = 1.0};
    if (first + 1 == m_marks.labels.size())
        return longest;
    const double step = number(first + 1) - number(first);
    const double rounded = QString::number(step, 'g', 12).toDouble();
    // A slightly different increment can avoid sums that are written "-0".
    constexpr double epsilon = 2.3e-16;
    for (const double increment : {rounded, step, step * (1.0 + epsilon), step * (1.0 + 4.0 * epsilon),
                                   step * (1.0 - epsilon), step * (1.0 - 4.0 * epsilon)}) {
        const int last = lastWith(first, increment);
        if (last > longest.last)
            longest = {.last = last, .increment = increment};
    }
    return longest;
}

/// Makes the layers of a scale from its pieces.
class LayerMaker
{
public:
    LayerMaker(const ScaleMarks &marks, const LabelWriter &writer, const std::vector<double> &values,
               const gaugeData &look)
        : m_marks(marks)
        , m_writer(writer)
        , m_values(values)
        , m_look(look)
    {
    }

    /// Returns a layer that draws @a piece with @a sweep. It writes labels where there are any, the first
    /// only if @a writesFirst.
    [[nodiscard]] gaugeLayer layer(const ScalePiece &piece, const Sweep &sweep, bool writesFirst) const;

private:
    [[nodiscard]] bool isLabel(int mark) const { return mark % (m_marks.minor * m_marks.subminor) == 0; }
    void setDivisions(gaugeData &layer, const ScalePiece &piece) const;
    void setRing(gaugeData &layer, size_t ring, size_t rank) const;

    const ScaleMarks &m_marks;
    const LabelWriter &m_writer;
    const std::vector<double> &m_values;
    const gaugeData &m_look;
};

gaugeLayer LayerMaker::layer(const ScalePiece &piece, const Sweep &sweep, bool writesFirst) const
{
    gaugeData layer = m_look;
    const bool isSingle = piece.first == piece.last;
    // The form shows up to one turn in either direction.
    layer.startAngle = std::abs(sweep.start) <= 360.0 ? sweep.start : std::fmod(sweep.start, 360.0);
    // A full circle of one division has a single tick.
    layer.angleLength = isSingle ? 360.0 : sweep.end - sweep.start;
    for (double *angle : {&layer.startAngle, &layer.angleLength}) {
        // The subtraction leaves rounding errors.
        const double rounded = std::round(*angle * 100.0) / 100.0;
        if (std::abs(rounded - *angle) < 1e-9)
            *angle = rounded + 0.0; // no negative zero
    }
    layer.bias = sweep.bias;
    layer.midpointBias = sweep.midpointBias;
    setDivisions(layer, piece);

    layer.tickCountEnabled = isLabel(piece.first);
    layer.tickCountSkipFirst = !writesFirst;
    layer.tickCountDecimalPlaces = m_marks.decimals;
    layer.tickCountStart = 0.0;
    layer.tickCountIncrement = 1.0;
    if (isLabel(piece.first)) {
        const int label = piece.first / (m_marks.minor * m_marks.subminor);
        layer.tickCountStart = m_writer.number(label);
        if (!isSingle)
            layer.tickCountIncrement = m_writer.longestRun(label).increment;
    }

    QString name = QStringLiteral("Scale ") + written(m_values.at(static_cast<size_t>(piece.first)));
    if (!isSingle)
        name += QStringLiteral(" to ") + written(m_values.at(static_cast<size_t>(piece.last)));
    return {name, layer};
}

void LayerMaker::setDivisions(gaugeData &layer, const ScalePiece &piece) const
{
    const int marks = piece.last - piece.first;
    if (isLabel(piece.first)) {
        const int gaps = marks / (m_marks.minor * m_marks.subminor);
        layer.divisionCount = {1, 1, 1};
        if (gaps > 0)
            layer.divisionCount = {gaps, m_marks.minor, m_marks.subminor};
    } else if (piece.first % m_marks.subminor == 0) {
        layer.divisionCount = {std::max(1, marks / m_marks.subminor), marks > 0 ? m_marks.subminor : 1, 1};
        setRing(layer, 0, 1);
        setRing(layer, 1, 2);
    } else {
        layer.divisionCount = {std::max(1, marks), 1, 1};
        setRing(layer, 0, 2);
    }
}

/// Gives the ticks of @a ring the look that those of the ring @a rank have.
void LayerMaker::setRing(gaugeData &layer, size_t ring, size_t rank) const
{
    layer.divisionInnerRadius.at(ring) = m_look.divisionInnerRadius.at(rank);
    layer.divisionOuterRadius.at(ring) = m_look.divisionOuterRadius.at(rank);
    layer.divisionLineWidth.at(ring) = m_look.divisionLineWidth.at(rank);
    layer.divisionColor.at(ring) = m_look.divisionColor.at(rank);
}

/// Returns the angles of all ticks of @a layer as the painter draws them, in order, in degrees clockwise from
/// 12 o'clock.
std::vector<double> drawnAngles(const gaugeData &layer)
{
    const auto [primaries, secondaries, tertiaries] = layer.divisionCount;
    std::vector<double> angles;
    for (int i = 0; i < primaryTickCount(layer); ++i) {
        const bool isLast = i == primaries;
        for (int j = 0; j < (isLast ? 1 : secondaries); ++j) {
            for (int k = 0; k < (isLast || secondaries == 1 ? 1 : tertiaries); ++k) {
                const double step = (static_cast<double>(k) / tertiaries + j) / secondaries;
                angles.push_back(90.0 - tickAngle(layer, divisionFraction(step + i, primaries)));
            }
        }
    }
    return angles;
}

ScaleFit failed(const QString &why)
{
    ScaleFit fit;
    fit.failure = why;
    return fit;
}

} // namespace

ScaleFit fitScale(const ScaleCurve &curve, const ScaleMarks &marks, double maxError, const gaugeData &look)
{
    if (const QString fault = faultOf(marks, maxError); !fault.isEmpty())
        return failed(fault);

    PlannedMarks planned{.angles = {},
                         .partsPerGap = marks.minor * marks.subminor,
                         .subminor = marks.subminor,
                         .lastOfRun = {}};
    const std::vector<double> values = valuesOf(marks);
    for (const double value : values) {
        planned.angles.push_back(curve.angle(value));
        if (!std::isfinite(planned.angles.back()))
            return failed(QStringLiteral("the curve has no angle at %1").arg(written(value)));
    }
    const LabelWriter writer(marks);
    for (int label = 0; label < marks.labels.size(); ++label)
        planned.lastOfRun.push_back(writer.longestRun(label).last);

    ScaleFit fit;
    fit.worstValue = values.front();
    const LayerMaker maker(marks, writer, values, look);
    // The painter's rounding errors come on top.
    const double plannedError = maxError * (1.0 - 1e-6);
    int lastDrawn = -1;
    const ScalePlan plan = planScale(planned, plannedError);
    for (const ScalePiece &piece : plan.pieces) {
        const auto angles =
            std::span(planned.angles)
                .subspan(static_cast<size_t>(piece.first), static_cast<size_t>(piece.last - piece.first) + 1);
        const Sweep sweep = closestSweep(angles, piece.start, piece.end, plannedError, plan.roundsBias)
                                .value_or(Sweep{.start = piece.start, .end = piece.end});
        gaugeLayer layer = maker.layer(piece, sweep, piece.first != lastDrawn);
        if (!fit.layers.isEmpty())
            layer.data.arcAngleLength = {};
        lastDrawn = piece.last;

        const std::vector<double> drawn = drawnAngles(layer.data);
        for (size_t i = 0; i < angles.size(); ++i) {
            // Whole turns make no difference. A mark that is not drawn, or whose angle is NaN, counts as 360
            // degrees off.
            double error = i < drawn.size() ? std::abs(std::remainder(drawn[i] - angles[i], 360.0)) : 360.0;
            if (std::isnan(error))
                error = 360.0;
            if (error > fit.worstError) {
                fit.worstError = error;
                fit.worstValue = values.at(static_cast<size_t>(piece.first) + i);
            }
        }
        fit.layers.append(layer);
    }
    if (!(fit.worstError <= maxError)) {
        return failed(QStringLiteral("the mark at %1 would be %2 degrees off")
                          .arg(written(fit.worstValue), written(fit.worstError)));
    }
    return fit;
}
