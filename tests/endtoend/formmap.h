#ifndef FORMMAP_H
#define FORMMAP_H

#include "support/editor.h"

#include <QRect>

/// The positions of the controls in the program's window. They are those of a second window with the same
/// size, which is never on the screen.
class FormMap
{
public:
    explicit FormMap(QSize size);

    [[nodiscard]] QRect rect(const QWidget &widget) const;
    /// A point of a control where a click activates it.
    [[nodiscard]] QPoint target(const QString &control) const;
    [[nodiscard]] QPoint upArrow(const QString &spinBox) const;
    [[nodiscard]] QPoint layerRow(int row) const;
    /// The part of the preview with the black backdrop, which may be a pixel off the preview.
    [[nodiscard]] QRect blackPreview() const;
    [[nodiscard]] const Editor &editor() const { return m_editor; }

private:
    Editor m_editor;
};

#endif
