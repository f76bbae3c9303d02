#ifndef FORMMAP_H
#define FORMMAP_H

#include <QRect>
#include <QWidget>

/// Where the controls of a window lie, known from a second form of the same size that is never shown.
class FormMap
{
public:
    explicit FormMap(QSize size);

    /// A control's rectangle within the window; the preview's by the name "preview".
    [[nodiscard]] QRect rect(const char *control) const;
    /// A place on a control that a click takes for it.
    [[nodiscard]] QPoint target(const char *control) const;
    /// The up arrow of a spin box.
    [[nodiscard]] QPoint upArrow(const char *spinBox) const;
    /// A row of the layer list.
    [[nodiscard]] QPoint row(int index) const;

private:
    [[nodiscard]] QWidget *find(const char *control) const;

    QWidget m_window;
};

#endif
