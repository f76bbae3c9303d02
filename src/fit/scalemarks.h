#ifndef SCALEMARKS_H
#define SCALEMARKS_H

#include <QList>

/// The most labels of one scale.
inline constexpr int maxLabelCount = 1000;

/// The marks of a scale. Each gap between two labels is divided by value into @a minor equal parts, and each
/// of these into @a subminor.
struct ScaleMarks
{
    QList<double> labels;     ///< ascending; the steps between them may differ
    int minor = 1;            ///< 1: no marks between labels
    int subminor = 1;         ///< 1: no marks between minor marks
    int decimals = 0;         ///< of the labels
    bool withoutSign = false; ///< write labels without their sign, as a VU meter does
};

/// Returns the multiples of @a step from @a min to @a max, ascending. Empty if there are more than
/// maxLabelCount, if a double cannot tell them apart, or if the arguments are not finite or @a step is not
/// positive.
[[nodiscard]] QList<double> steppedLabels(double min, double max, double step);

/// Returns the multiples from @a min to @a max of the smallest step of 1, 2 or 5 times a power of ten that
/// gives at most @a maxCount labels. Empty if no step gives two labels, or if the arguments are not finite.
[[nodiscard]] QList<double> roundLabels(double min, double max, int maxCount);

/// The maximum number of decimals that the editor's form can set.
inline constexpr int maxFormDecimals = 6;

/// Returns whether @a label is written exactly with @a decimals decimals.
[[nodiscard]] bool isWrittenExactly(double label, int decimals);

/// Returns the smallest number of decimals with which all @a labels are written exactly, or maxFormDecimals
/// if these do not suffice.
[[nodiscard]] int labelDecimals(const QList<double> &labels);

#endif
