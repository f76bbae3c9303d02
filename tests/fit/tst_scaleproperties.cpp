#include "drawnscale.h"
#include "fit/scalefit.h"
#include "support/random.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QTest>

#include <algorithm>
#include <cmath>
#include <set>

using namespace Qt::StringLiterals;

namespace {

constexpr int usualTables = 1000;
constexpr uint64_t firstSeed = 1;

/// A table and what is asked for.
struct FitRequest
{
    QList<QPointF> points;
    ScaleCurve::Kind kind = ScaleCurve::Kind::Smooth;
    ScaleMarks marks;
    double maxError = 0.25;
};

/// A number from 0 to 1.
double fraction(Random &random)
{
    return static_cast<double>(random.below(1'000'001)) / 1e6;
}

/// A number from @a min to @a max, whose logarithm is evenly distributed.
double magnitude(Random &random, double min, double max)
{
    return min * std::pow(max / min, fraction(random));
}

/// Points whose angles rise or fall, with steep and flat parts.
QList<QPointF> randomPoints(Random &random)
{
    const int count = random.oneIn(4) ? random.between(2, 200) : random.between(2, 12);
    const bool hasEqualSteps = random.oneIn(2);
    const double step = magnitude(random, 1e-3, 1e4);
    const double roughness = magnitude(random, 1.0, 1e3);
    QList<QPointF> points{{random.oneIn(2) ? 0.0 : step * random.between(-100, 100), 0.0}};
    for (int i = 1; i < count; ++i) {
        const double x = points.last().x() + step * (hasEqualSteps ? 1.0 : magnitude(random, 0.01, 10.0));
        const double rise = random.oneIn(8) ? 0.0 : magnitude(random, 1.0, roughness);
        points.append({x, points.last().y() + rise});
    }
    const double whole = points.last().y();
    const double movement =
        (random.oneIn(8) ? 1000.0 : 320.0) * fraction(random) * (random.oneIn(2) ? 1.0 : -1.0);
    const double start = random.between(-400, 400);
    for (QPointF &point : points)
        point.setY(whole == 0.0 ? start : start + movement * (point.y() / whole));
    return points;
}

/// Labels on the curve: with equal steps, or anywhere.
QList<double> randomLabels(Random &random, double min, double max)
{
    QList<double> rounded = roundLabels(min, max, random.between(2, 25));
    if (!rounded.isEmpty() && !random.oneIn(3))
        return rounded;
    std::set<double> values;
    for (int i = random.between(1, 12); i > 0; --i)
        values.insert(random.oneIn(10) ? min : min + (max - min) * fraction(random));
    return {values.cbegin(), values.cend()};
}

FitRequest randomRequest(Random &random)
{
    FitRequest request;
    request.points = randomPoints(random);
    request.kind = random.oneIn(4) ? ScaleCurve::Kind::Straight : ScaleCurve::Kind::Smooth;
    request.marks.labels = randomLabels(random, request.points.first().x(), request.points.last().x());
    request.marks.minor = random.oneIn(3) ? 1 : random.between(2, 6);
    request.marks.subminor = request.marks.minor == 1 || random.oneIn(2) ? 1 : random.between(2, 4);
    request.marks.decimals = labelDecimals(request.marks.labels);
    request.marks.withoutSign = random.oneIn(4);
    request.maxError = random.oneIn(2) ? 0.25 : magnitude(random, 0.001, 3.0);
    return request;
}

/// Returns what is wrong with the scale that is made, or an empty string.
QString faultOf(const FitRequest &request)
{
    const ScaleCurve curve(request.points, request.kind);
    const ScaleFit fit = fitScale(curve, request.marks, request.maxError, rankedLook());
    if (!fit.failure.isEmpty())
        return fit.failure;
    return faultOfDrawnScale(fit.layers, curve, request.marks, request.maxError);
}

/// Returns simpler requests: with fewer points or labels, or without divisions.
QList<FitRequest> simplerRequests(const FitRequest &request)
{
    QList<FitRequest> simpler;
    const qsizetype count = request.points.size();
    for (qsizetype length = count / 2; length > 0; length /= 2) {
        for (qsizetype from = 0; from + length <= count && count - length >= 2; from += length) {
            simpler.append(request);
            simpler.last().points.remove(from, length);
        }
    }
    for (qsizetype i = 0; i < request.marks.labels.size() && request.marks.labels.size() > 1; ++i) {
        simpler.append(request);
        simpler.last().marks.labels.removeAt(i);
    }
    if (request.marks.subminor > 1) {
        simpler.append(request);
        simpler.last().marks.subminor = 1;
    } else if (request.marks.minor > 1) {
        simpler.append(request);
        simpler.last().marks.minor = 1;
    }
    // Without the points at the ends, some labels are beyond the curve.
    simpler.removeIf([](const FitRequest &smaller) {
        return smaller.points.first().x() > smaller.marks.labels.first() ||
               smaller.points.last().x() < smaller.marks.labels.last();
    });
    return simpler;
}

/// Returns the simplest request that also fails.
FitRequest shrunk(FitRequest request)
{
    for (;;) {
        const QList<FitRequest> simpler = simplerRequests(request);
        const auto failing = std::find_if(simpler.cbegin(), simpler.cend(),
                                          [](const FitRequest &other) { return !faultOf(other).isEmpty(); });
        if (failing == simpler.cend())
            return request;
        request = *failing;
    }
}

QString description(const FitRequest &request)
{
    QString text;
    for (const QPointF &point : request.points)
        text += u"%1,%2\n"_s.arg(point.x(), 0, 'g', 17).arg(point.y(), 0, 'g', 17);
    QStringList labels;
    for (const double label : request.marks.labels)
        labels.append(QString::number(label, 'g', 17));
    return text +
           u"%1 labels %2, minor %3, subminor %4, decimals %5, %6, max-error %7"_s
               .arg(request.kind == ScaleCurve::Kind::Smooth ? u"smooth"_s : u"straight"_s, labels.join(u','))
               .arg(request.marks.minor)
               .arg(request.marks.subminor)
               .arg(request.marks.decimals)
               .arg(request.marks.withoutSign ? u"without sign"_s : u"with sign"_s)
               .arg(request.maxError);
}

} // namespace

/// Scales of random tables, as the painter draws them.
///
/// CORVALENCE_RANDOM_TABLES sets the number of tables, CORVALENCE_RANDOM_SEED the seed of the first.
class tst_ScaleProperties : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void allMarksAreOnTheCurve();
};

void tst_ScaleProperties::allMarksAreOnTheCurve()
{
    bool isNumber = false;
    const int tables = qEnvironmentVariableIntValue("CORVALENCE_RANDOM_TABLES", &isNumber);
    const uint64_t first = qEnvironmentVariableIsSet("CORVALENCE_RANDOM_SEED")
                               ? qEnvironmentVariable("CORVALENCE_RANDOM_SEED").toULongLong()
                               : firstSeed;
    const auto count = static_cast<uint64_t>(isNumber ? tables : usualTables);
    for (uint64_t seed = first; seed < first + count; ++seed) {
        Random random(seed);
        const FitRequest request = randomRequest(random);
        if (faultOf(request).isEmpty())
            continue;
        const FitRequest simplest = shrunk(request);
        QFAIL(qPrintable(u"seed %1: %2\n%3"_s.arg(seed).arg(faultOf(simplest), description(simplest))));
    }
}

ADD_TEST_CLASS(tst_ScaleProperties)
#include "tst_scaleproperties.moc"
