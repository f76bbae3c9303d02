#ifndef FORMTEXT_H
#define FORMTEXT_H

#include <QStringList>

class QWidget;

/// Describes a form, one line for each layout, spacer and widget, indented by their nesting.
///
/// Cells of a grid are (row,column), followed by rows x columns when an item takes more than one. Margins are
/// left, top, right, bottom; "-" is the style's own margin. Of a widget's properties, those are named that
/// differ from a new widget of the same class; of a spin box always the range, the step, the decimals and the
/// value.
[[nodiscard]] QStringList formText(const QWidget &form);

/// The lines of a file in the folder of these tests.
[[nodiscard]] QStringList expectedLines(const QString &fileName);

#endif
