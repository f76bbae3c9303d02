#ifndef SHEETCAPTION_H
#define SHEETCAPTION_H

#include <QString>

class QFontMetricsF;

/// The line of text below a dial.
struct SheetCaption
{
    QString text;
    double scale = 1.0; ///< Of the font: from 0.5 to 1, or less if not even a letter fits.
};

/// Returns a caption of @a name and @a remarks, either of which may be empty, that is at most @a width wide
/// in the units of @a metrics. Long captions get a smaller font, and then a shortened name. Where even this
/// is too wide, the end is left out.
[[nodiscard]] SheetCaption sheetCaption(const QString &name, const QString &remarks, double width,
                                        const QFontMetricsF &metrics);

#endif
