// The reader of measured points.

#include "fit/scalecurve.h"
#include "fit/tablereader.h"
#include "support/random.h"
#include "target.h"
#include "values.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

bool isMonotone(const QList<QPointF> &points)
{
    bool rises = false;
    bool falls = false;
    for (qsizetype point = 1; point < points.size(); ++point) {
        rises = rises || points.at(point).y() > points.at(point - 1).y();
        falls = falls || points.at(point).y() < points.at(point - 1).y();
    }
    return rises != falls;
}

void checkPoints(const QList<QPointF> &points)
{
    const auto isNumber = [](double number) { return std::abs(number) <= maxTableNumber; };
    require(points.size() >= 2, "a table has two points at least");
    require(std::ranges::all_of(
                points, [&](const QPointF &point) { return isNumber(point.x()) && isNumber(point.y()); }),
            "numbers are finite and limited");
    require(std::ranges::adjacent_find(
                points, [](const QPointF &a, const QPointF &b) { return a.x() >= b.x(); }) == points.cend(),
            "values ascend");
    require(isMonotone(points), "angles do not turn back");
}

void checkCurve(const QList<QPointF> &points)
{
    const auto [low, high] = std::minmax({points.constFirst().y(), points.constLast().y()});
    const double tolerance = 1e-9 * std::max(std::abs(low), std::abs(high));
    for (const auto kind : {ScaleCurve::Kind::Smooth, ScaleCurve::Kind::Straight}) {
        const ScaleCurve curve(points, kind);
        for (qsizetype point = 1; point < std::min<qsizetype>(points.size(), 100); ++point) {
            const double middle = (points.at(point - 1).x() + points.at(point).x()) / 2.0;
            const double angle = curve.angle(middle);
            require(angle >= low - tolerance && angle <= high + tolerance, "the curve does not overshoot");
        }
    }
}

/// Writes the points and reads them again.
void checkRoundTrip(const QList<QPointF> &points)
{
    QByteArray text;
    for (const QPointF &point : points)
        text += QByteArray::number(point.x(), 'g', 17) + ';' + QByteArray::number(point.y(), 'g', 17) + '\n';
    const MeasuredTable again = readTable(text);
    require(again.points == points, "a table that was read can be written and read");
    require(readTable(text.replace('.', ',')).points == points, "a decimal comma means the same as a point");
}

/// A number that a table may hold, or another text.
QByteArray someTableNumber(Random &random)
{
    if (random.below(8) == 0)
        return someNumber(random);
    const QByteArray number = QByteArray::number(random.between(-20, 100));
    return random.below(4) == 0 ? number + '.' + QByteArray::number(random.between(0, 9)) : number;
}

QByteArray someLine(Random &random)
{
    constexpr std::array separators{",", ";", "\t", " ", " , "};
    switch (random.below(16)) {
    case 0:
        return "# " + someText(random);
    case 1:
        return someText(random);
    default:
        return someTableNumber(random) + separators.at(random.below(separators.size())) +
               someTableNumber(random);
    }
}

QByteArray someEntry(Random &random)
{
    return "<entry><ind>" + someTableNumber(random) + "</ind><dep>" + someTableNumber(random) +
           "</dep></entry>";
}

QByteArray somePoint(Random &random)
{
    return '[' + someTableNumber(random) + ',' + someTableNumber(random) + ']';
}

/// Changes the pieces of a document between separators.
QByteArray damaged(const QByteArray &document, const char *separator, Random &random,
                   QByteArray (*somePiece)(Random &))
{
    QByteArrayList pieces;
    for (const QByteArray &piece : document.split(*separator))
        pieces.append(piece);
    damagePieces(pieces, random, [&] { return somePiece(random); });
    return pieces.join(separator);
}

/// A table whose angles rise, in one of the forms.
QByteArray risingTable(Random &random)
{
    const int count = random.between(2, 12);
    const size_t form = random.below(3);
    QByteArrayList points;
    int value = random.between(-50, 50);
    int angle = random.between(-90, 90);
    for (int point = 0; point < count; ++point) {
        const QByteArray x = QByteArray::number(value);
        const QByteArray y = QByteArray::number(angle);
        points.append(form == 0   ? x + ',' + y
                      : form == 1 ? "<entry><ind>" + x + "</ind><dep>" + y + "</dep></entry>"
                                  : '[' + x + ',' + y + ']');
        value += random.between(1, 20);
        angle += random.between(0, 20);
    }
    if (form == 1)
        return "<PropertyList><interpolation>\n" + points.join('\n') + "\n</interpolation></PropertyList>";
    if (form == 2)
        return R"({"scales": [{"points": [)" + points.join(", ") + "]}]}";
    return points.join('\n');
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int * /*argc*/, char *** /*argv*/)
{
    prepareQt();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const MeasuredTable table = readTable(toBytes(data, size));
    if (!table.failure.isEmpty()) {
        require(table.points.isEmpty(), "there are no points after a failure");
        require(!table.failure.contains(u'\n'), "a failure is one line");
        return 0;
    }
    checkPoints(table.points);
    checkCurve(table.points);
    checkRoundTrip(table.points);
    return 0;
}

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t maxSize, unsigned int seed)
{
    Random random(seed);
    QByteArray table = toBytes(data, size);
    switch (random.below(16)) {
    case 0:
        return LLVMFuzzerMutate(data, size, maxSize);
    case 1:
        damageBytes(table, random);
        break;
    case 2:
    case 3:
    case 4:
        table = risingTable(random);
        break;
    case 5:
    case 6:
        table = damaged(table, "\n", random, someEntry);
        break;
    case 7:
    case 8:
        table = damaged(table, "[", random, somePoint);
        break;
    default:
        table = damaged(table, "\n", random, someLine);
        break;
    }
    return store(table, data, maxSize);
}

extern "C" size_t LLVMFuzzerCustomCrossOver(const uint8_t *data1, size_t size1, const uint8_t *data2,
                                            size_t size2, uint8_t *out, size_t maxOutSize, unsigned int seed)
{
    Random random(seed);
    const QByteArrayList lines1 = toBytes(data1, size1).split('\n');
    const QByteArrayList lines2 = toBytes(data2, size2).split('\n');
    const auto half = [&random](const QByteArrayList &lines) {
        return static_cast<qsizetype>(random.below(static_cast<size_t>(lines.size()) + 1));
    };
    const QByteArrayList joined = lines1.first(half(lines1)) + lines2.sliced(half(lines2));
    return store(joined.join('\n'), out, maxOutSize);
}
