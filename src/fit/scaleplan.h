#ifndef SCALEPLAN_H
#define SCALEPLAN_H

#include <vector>

/// The marks of a scale, in order, and what a layer can write at them.
struct PlannedMarks
{
    /// Degrees clockwise from 12 o'clock. There is a label at every @a partsPerGap-th mark, beginning with
    /// the first; a minor mark at every @a subminor-th.
    std::vector<double> angles;
    int partsPerGap = 1;
    int subminor = 1;
    /// For each label, the index of the last label that one layer can write if this label is its first.
    /// Indexes begin at 0.
    std::vector<int> lastOfRun;
};

/// Consecutive marks that one sweep draws.
struct ScalePiece
{
    int first = 0;      ///< index of a mark
    int last = 0;       ///< equal to first for a single mark
    double start = 0.0; ///< angle at which the first mark is drawn
    double end = 0.0;   ///< angle at which the last mark is drawn
};

/// How to draw a scale.
struct ScalePlan
{
    std::vector<ScalePiece> pieces; ///< in the order of the marks
    bool roundsBias = false;        ///< two decimals suffice for the bias
};

/// Returns pieces in the order of the marks that draw each of them within @a maxError degrees of its angle.
///
/// Each end of a sweep is tried at nine angles. Of the plans found, one with the fewest pieces is taken, and
/// among those one with a small largest error. Two pieces may meet at a label, or at a minor mark among
/// subminor ones: both draw it, at the same angle. A piece between labels begins and ends with marks that are
/// both minor or both subminor.
///
/// If errors of a twentieth of a degree are allowed, pieces end at hundredths of a degree, as the editor
/// shows them. So does the bias, if this takes no more pieces, unless a single sweep follows the curve
/// exactly.
///
/// No pieces if there are no marks.
[[nodiscard]] ScalePlan planScale(const PlannedMarks &marks, double maxError);

#endif
