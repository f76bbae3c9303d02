#ifndef FITREPORT_H
#define FITREPORT_H

#include "fit/gaugecheck.h"
#include "fit/scalelabels.h"
#include "model/gaugedata.h"

#include <QList>
#include <QString>
#include <QStringList>

/// What was made, for the user.
struct FitReport
{
    QString output;
    QList<gaugeLayer> scale; ///< The new layers that have marks.
    qsizetype labelCount = 0;
    qsizetype markCount = 0;
    double maxError = 0.0;
    double worstError = 0.0;
    double worstValue = 0.0;
    QList<LabelPair> overlaps;
};

/// Returns the report as lines of text, at most one screen, or as one line of JSON.
[[nodiscard]] QStringList fitReportText(const FitReport &report);
[[nodiscard]] QString fitReportJson(const FitReport &report);

/// What was compared, for the user.
struct CheckReport
{
    QString gauge;
    QString table;
    QList<CheckedMark> marks;
    double maxError = 0.0;

    /// The marks that are off by more than maxError or beyond the table.
    [[nodiscard]] QList<CheckedMark> failures() const;
    /// The mark with the largest error. Those beyond the table are not compared. Null if there is none.
    [[nodiscard]] const CheckedMark *worst() const;
};

/// Returns the report as lines of text, at most one screen, or as one line of JSON.
[[nodiscard]] QStringList checkReportText(const CheckReport &report);
[[nodiscard]] QString checkReportJson(const CheckReport &report);

#endif
