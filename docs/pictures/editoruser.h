#ifndef EDITORUSER_H
#define EDITORUSER_H

#include "model/gaugedata.h"
#include "window.h"

#include <QImage>
#include <QLatin1StringView>

/// Uses an editor window as a person does: sets its controls, answers its dialogs and takes pictures of it.
///
/// Controls are found by their object names; a name that does not exist ends the program. Angles are degrees
/// clockwise from 12 o'clock, radii fractions of the face radius, widths canvas units.
class EditorUser
{
public:
    EditorUser();

    void set(QLatin1StringView spinBox, double value);
    void toggle(QLatin1StringView checkBox);
    void pickColor(const QString &button, const QColor &color);
    void pickLabelFont(const QFont &font);
    /// Selects "Midpoint", the second bias type.
    void selectMidpointBias();

    /// Sets a whole ring, numbered from 1, or its start, length, radius and width. An invalid color leaves
    /// the color as it is.
    void setRing(int ring, int count, double width, double innerRadius, double outerRadius,
                 const QColor &color = {});
    void setArc(int arc, double start, double length, double radius, double width, const QColor &color = {});
    void setSweep(double start, double length);
    /// Sets the primary count to 0 and hides the numbers, so that the layer draws only arcs.
    void showOnlyArcs();
    /// Sets the length of arc 1 to 0 and hides the numbers, so that the layer draws only ticks.
    void showOnlyTicks();

    void renameLayer(const QString &name);
    /// Adds a layer and selects it.
    void addLayer(const QString &name);

    void loadGauge(const QString &path);
    void loadReference(const QString &path);
    /// Loads a second gauge, takes a picture of the question that the editor asks then, and cancels it.
    [[nodiscard]] QImage questionOnLoading(const QString &path);

    [[nodiscard]] QList<gaugeLayer> layers() const;
    [[nodiscard]] QImage windowPicture();
    /// The preview alone, 512 by 512 pixels.
    [[nodiscard]] QImage previewPicture();

private:
    template <typename Control>
    [[nodiscard]] Control *control(const QString &name) const;
    void click(const QString &button);

    Window m_window;
};

#endif
