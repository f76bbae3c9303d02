#ifndef FITOPTIONS_H
#define FITOPTIONS_H

#include "tools/outputfile.h"

#include <QColor>
#include <QList>
#include <QString>

#include <optional>

/// The line through two pairs of a reading and its angle in degrees.
struct ReadingMap
{
    double reading1 = 0.0;
    double angle1 = 0.0;
    double reading2 = 1.0;
    double angle2 = 1.0;

    [[nodiscard]] double angle(double reading) const
    {
        return angle1 + (reading - reading1) / (reading2 - reading1) * (angle2 - angle1);
    }
};

/// An arc from one value to another.
struct ValueRange
{
    QColor color;
    double from = 0.0;
    double to = 0.0;
};

/// What corvalence-fit does. Plain values: parseFitCommandLine() checks that they are in range and go
/// together.
struct FitOptions
{
    QString table; ///< The measured points; "-" for standard input.
    std::optional<ReadingMap> map;
    bool straight = false;    ///< Straight lines between the points instead of a smooth curve.
    bool extrapolate = false; ///< Values beyond the points are allowed.
    double maxError = 0.25;   ///< In degrees.

    QList<double> labels;     ///< Ascending. Empty: by step, or round numbers.
    double step = 0.0;        ///< 0: not given.
    int minor = 1;            ///< Parts of a gap between labels.
    int subminor = 1;         ///< Parts of a gap between minor marks.
    int decimals = -1;        ///< -1: as many as each layer needs.
    bool withoutSign = false; ///< Labels without their sign.

    QString style;                     ///< FILE or FILE:LAYER. Empty: a plain look.
    QString into;                      ///< The gauge that gets the layers. Empty: a new one.
    QString replace;                   ///< The layers of that gauge that are replaced.
    QList<ValueRange> ranges;          ///< Drawn in this order.
    std::optional<double> rangeRadius; ///< A fraction of the face radius.
    std::optional<double> rangeWidth;  ///< In canvas units.

    QString output;     ///< The gauge file; "-" for standard output.
    QString angleTable; ///< The file of the curve. Empty: none.
    ExistingFile existing = ExistingFile::Refuse;
    bool jsonReport = false;

    QString checkedGauge;  ///< Compare the labels of this gauge with the table and write nothing.
    QString checkedLayers; ///< Of that gauge. Empty: all that show labels.
};

#endif
