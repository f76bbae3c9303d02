#include "fit/scaleplan.h"

#include "fit/sweepfit.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <span>
#include <tuple>
#include <utility>

namespace {

/// A layer of a full circle lacks the last tick.
constexpr double maxSweep = 359.99;

/// Where a sweep may end, in parts of the largest error off the mark's angle. The best is the first.
constexpr std::array<double, 9> departures{0.0, 0.25, -0.25, 0.5, -0.5, 0.75, -0.75, 1.0, -1.0};

/// If errors of at least this many degrees are allowed, sweeps end at hundredths of a degree, as the editor
/// shows them.
constexpr double minRoundedError = 0.05;

/// With such ends, an error cannot be much smaller.
constexpr double smallestRoundedError = 0.01;

/// With such ends, a single sweep that is not further off follows its curve exactly.
constexpr double exactError = 0.02;

/// Fewer pieces are better. With as many, those that begin and end with labels, and then ends that depart
/// less.
struct Cost
{
    int pieces = std::numeric_limits<int>::max();
    int withoutLabels = 0;
    double departure = 0.0;

    [[nodiscard]] Cost plusInside(int count) const
    {
        return {.pieces = pieces + count, .withoutLabels = withoutLabels + count, .departure = departure};
    }
    [[nodiscard]] Cost plusRun(double moreDeparture) const
    {
        return {.pieces = pieces + 1, .withoutLabels = withoutLabels, .departure = departure + moreDeparture};
    }
    friend bool operator<(const Cost &a, const Cost &b)
    {
        return std::tie(a.pieces, a.withoutLabels, a.departure) <
               std::tie(b.pieces, b.withoutLabels, b.departure);
    }
};

/// The best pieces that draw all marks up to a label.
struct Drawn
{
    Cost cost;
    int from = 0;           ///< label at which the last piece begins
    size_t fromPlace = 0;   ///< index of a departure
    bool meetsLast = false; ///< whether the piece before ends there, too
};

/// The best pieces that draw all marks before a label.
struct Before
{
    Cost cost;
    size_t place = 0;               ///< where the label before it is drawn
    std::vector<ScalePiece> inside; ///< pieces of the gap before the label
};

/// How a label is best drawn at each of its places.
using PlacesOfLabel = std::array<Drawn, departures.size()>;

size_t cheapest(const PlacesOfLabel &places)
{
    size_t best = 0;
    for (size_t i = 1; i < places.size(); ++i) {
        if (places.at(i).cost < places.at(best).cost)
            best = i;
    }
    return best;
}

struct Plan
{
    Cost cost;
    std::vector<ScalePiece> pieces;

    /// Whether it has as few pieces as @a other, and of these as few without labels.
    [[nodiscard]] bool isAsGoodAs(const Plan &other) const
    {
        return cost.pieces <= other.cost.pieces && cost.withoutLabels <= other.cost.withoutLabels;
    }
};

/// Finds the fewest pieces, by dynamic programming over the labels.
class Planner
{
public:
    Planner(const PlannedMarks &marks, double maxError)
        : m_marks(marks)
        , m_roundsAngles(maxError >= minRoundedError)
        , m_ruledOut(marks.lastOfRun.size())
    {
    }

    /// Returns the best pieces for a largest error that is at most that of the constructor.
    Plan plan(double error);

    /// From now on, allows only sweeps whose bias has two decimals.
    void roundBias() { m_roundsBias = true; }

private:
    [[nodiscard]] int markOf(int label) const { return label * m_marks.partsPerGap; }
    [[nodiscard]] std::span<const double> angles(int first, int last) const
    {
        return std::span(m_marks.angles)
            .subspan(static_cast<size_t>(first), static_cast<size_t>(last - first) + 1);
    }
    [[nodiscard]] double place(int mark, size_t departure) const;
    [[nodiscard]] bool sweepFits(int first, double start, int last, double end) const;
    [[nodiscard]] bool isRuledOut(int from, int to);
    [[nodiscard]] bool canBeOnePiece(int first, int last) const;
    [[nodiscard]] std::vector<double> places(int mark) const;
    [[nodiscard]] ScalePiece longestPiece(int first, const std::vector<double> &starts, int last) const;
    [[nodiscard]] std::vector<ScalePiece> piecesInside(int gap) const;
    [[nodiscard]] Before before(int label) const;
    [[nodiscard]] Drawn runFrom(int label, size_t start, size_t end) const;
    void extend(int label);
    [[nodiscard]] std::vector<ScalePiece> piecesTo(int label, size_t end) const;

    const PlannedMarks &m_marks;
    bool m_roundsAngles;
    bool m_roundsBias = false;
    double m_error = 0.0;
    std::vector<std::vector<double>> m_ruledOut; ///< for each run, an error that is too small for it
    std::vector<PlacesOfLabel> m_drawn;
    std::vector<Before> m_before;
};

/// Returns an angle within the error at which a sweep that draws @a mark may end.
double Planner::place(int mark, size_t departure) const
{
    const double departed = departures.at(departure) * m_error;
    const double angle = m_marks.angles.at(static_cast<size_t>(mark)) + departed;
    if (!m_roundsAngles)
        return angle;
    const double hundredths = angle * 100.0;
    // Towards the mark's own angle.
    const double rounded = departed > 0.0   ? std::floor(hundredths)
                           : departed < 0.0 ? std::ceil(hundredths)
                                            : std::round(hundredths);
    return rounded / 100.0;
}

bool Planner::sweepFits(int first, double start, int last, double end) const
{
    return std::abs(end - start) <= maxSweep && fits(angles(first, last), start, end, m_error, m_roundsBias);
}

/// Returns whether no sweep can draw the labels from @a from to @a to and all marks between them.
bool Planner::isRuledOut(int from, int to)
{
    std::vector<double> &runs = m_ruledOut.at(static_cast<size_t>(from));
    runs.resize(std::max(runs.size(), static_cast<size_t>(to - from)), -1.0);
    double &error = runs.at(static_cast<size_t>(to - from) - 1);
    if (error < m_error && !maybeFits(angles(markOf(from), markOf(to)), m_error))
        error = m_error;
    return error >= m_error;
}

/// Returns whether the marks between labels from @a first to @a last have the ranks of one layer's ticks.
bool Planner::canBeOnePiece(int first, int last) const
{
    const int subminor = m_marks.subminor;
    const bool betweenMinors = first % subminor != 0 && first / subminor == last / subminor;
    return first == last || betweenMinors || (first % subminor == 0 && last % subminor == 0);
}

/// Returns the angles at which a sweep that draws @a mark may end.
std::vector<double> Planner::places(int mark) const
{
    std::vector<double> angles;
    for (size_t i = 0; i < departures.size(); ++i)
        angles.push_back(place(mark, i));
    return angles;
}

/// Returns the longest piece that begins with mark @a first, at one of the angles @a starts, and ends at
/// @a last or before. None of the marks is a label.
ScalePiece Planner::longestPiece(int first, const std::vector<double> &starts, int last) const
{
    for (int to = last; to > first; --to) {
        if (!canBeOnePiece(first, to) || !maybeFits(angles(first, to), m_error))
            continue;
        for (const double start : starts) {
            for (const double end : places(to)) {
                if (sweepFits(first, start, to, end))
                    return {.first = first, .last = to, .start = start, .end = end};
            }
        }
    }
    return {.first = first, .last = first, .start = starts.front(), .end = starts.front()};
}

/// Returns pieces that draw the marks of a gap between its labels.
std::vector<ScalePiece> Planner::piecesInside(int gap) const
{
    std::vector<ScalePiece> pieces;
    const int last = markOf(gap + 1) - 1;
    for (int mark = markOf(gap) + 1; mark <= last; mark = pieces.back().last + 1) {
        ScalePiece piece = longestPiece(mark, places(mark), last);
        // A layer can draw subminor marks after a minor mark only; without one it draws a single mark.
        const bool followsMinor = mark % m_marks.subminor == 1 && !pieces.empty();
        if (followsMinor) {
            const ScalePiece meeting = longestPiece(mark - 1, {pieces.back().end}, last);
            if (meeting.last > piece.last)
                piece = meeting;
        }
        pieces.push_back(piece);
    }
    return pieces;
}

/// Returns the best way to draw all marks before @a label. That of the labels before it must be known.
Before Planner::before(int label) const
{
    if (label == 0)
        return {.cost = {.pieces = 0}, .place = 0, .inside = {}};
    const PlacesOfLabel &places = m_drawn.at(static_cast<size_t>(label) - 1);
    Before best{.cost = {}, .place = cheapest(places), .inside = piecesInside(label - 1)};
    best.cost = places.at(best.place).cost.plusInside(static_cast<int>(best.inside.size()));
    return best;
}

/// Tries all runs that begin with @a label.
void Planner::extend(int label)
{
    const int last = m_marks.lastOfRun.at(static_cast<size_t>(label));
    for (int to = label + 1; to <= last; ++to) {
        PlacesOfLabel &ends = m_drawn.at(static_cast<size_t>(to));
        bool isPossible = false;
        for (size_t end = 0; end < departures.size(); ++end) {
            for (size_t start = 0; start < departures.size(); ++start) {
                // The cheapest comparison first.
                const Drawn run = runFrom(label, start, end);
                if (!(run.cost < ends.at(end).cost))
                    continue;
                if (!isPossible && isRuledOut(label, to))
                    break;
                isPossible = true;
                if (sweepFits(markOf(label), place(markOf(label), start), markOf(to), place(markOf(to), end)))
                    ends.at(end) = run;
            }
        }
    }
}

/// Returns the cost of a run from @a label, if it fits.
Drawn Planner::runFrom(int label, size_t start, size_t end) const
{
    const Cost &meeting = m_drawn.at(static_cast<size_t>(label)).at(start).cost;
    const Cost &fresh = m_before.at(static_cast<size_t>(label)).cost;
    const bool meets = !(fresh < meeting);
    const double startDeparture = meets ? 0.0 : std::abs(departures.at(start));
    return {.cost = (meets ? meeting : fresh).plusRun(startDeparture + std::abs(departures.at(end))),
            .from = label,
            .fromPlace = start,
            .meetsLast = meets};
}

Plan Planner::plan(double error)
{
    m_error = error;
    const size_t count = m_marks.lastOfRun.size();
    m_drawn.assign(count, {});
    m_before.clear();
    for (int label = 0; label < static_cast<int>(count); ++label) {
        m_before.push_back(before(label));
        const Cost alone = m_before.back().cost.plusRun(0.0);
        Drawn &drawn = m_drawn.at(static_cast<size_t>(label)).front();
        if (alone < drawn.cost)
            drawn = {.cost = alone, .from = label};
        extend(label);
    }
    const size_t end = cheapest(m_drawn.back());
    return {.cost = m_drawn.back().at(end).cost, .pieces = piecesTo(static_cast<int>(count) - 1, end)};
}

/// Returns the best pieces that draw all marks up to @a label, and this at the place @a end.
std::vector<ScalePiece> Planner::piecesTo(int label, size_t end) const
{
    std::vector<ScalePiece> pieces; // from the last to the first
    for (;;) {
        const Drawn &drawn = m_drawn.at(static_cast<size_t>(label)).at(end);
        pieces.push_back({.first = markOf(drawn.from),
                          .last = markOf(label),
                          .start = place(markOf(drawn.from), drawn.fromPlace),
                          .end = place(markOf(label), end)});
        if (drawn.meetsLast) {
            label = drawn.from;
            end = drawn.fromPlace;
            continue;
        }
        if (drawn.from == 0)
            break;
        const Before &earlier = m_before.at(static_cast<size_t>(drawn.from));
        pieces.insert(pieces.end(), earlier.inside.crbegin(), earlier.inside.crend());
        label = drawn.from - 1;
        end = earlier.place;
    }
    std::reverse(pieces.begin(), pieces.end());
    return pieces;
}

/// Replaces @a best, a plan for the error @a largest, by one that is as good and has the smallest error that
/// is found, which is more than @a limit. Returns this error.
double reduceError(Planner &planner, Plan &best, double largest, double limit)
{
    for (int i = 0; i < 8; ++i) {
        const double middle = (limit + largest) / 2.0;
        Plan plan = planner.plan(middle);
        const bool isAsGood = plan.isAsGoodAs(best);
        (isAsGood ? largest : limit) = middle;
        if (isAsGood)
            best = std::move(plan);
    }
    return largest;
}

} // namespace

ScalePlan planScale(const PlannedMarks &marks, double maxError)
{
    if (marks.lastOfRun.empty())
        return {};
    Planner planner(marks, maxError);
    Plan best = planner.plan(maxError);
    if (maxError < minRoundedError) {
        reduceError(planner, best, maxError, 0.0);
        return {.pieces = best.pieces, .roundsBias = false};
    }
    const double error = reduceError(planner, best, maxError, smallestRoundedError);
    if (best.pieces.size() == 1 && error <= exactError)
        return {.pieces = best.pieces, .roundsBias = false};
    planner.roundBias();
    Plan rounded = planner.plan(maxError);
    if (!rounded.isAsGoodAs(best))
        return {.pieces = best.pieces, .roundsBias = false};
    reduceError(planner, rounded, maxError, smallestRoundedError);
    return {.pieces = rounded.pieces, .roundsBias = true};
}
