#ifndef EDITOR_H
#define EDITOR_H

#include "render/renderarea.h"
#include "support/records.h"
#include "window.h"

#include <QLatin1StringView>
#include <QStringList>

#include <functional>

class DialogAnswers;

/// A window and its controls by object name. The window is not shown until show() is called.
class Editor
{
public:
    /// The control with this name and type. Ends the test program if there is none.
    template <typename Control>
    [[nodiscard]] Control *control(const QString &name) const
    {
        auto *found = window.findChild<Control *>(name);
        if (found == nullptr)
            qFatal("There is no control \"%s\" of this type.", qPrintable(name));
        return found;
    }
    template <typename Control>
    [[nodiscard]] Control *control(QLatin1StringView name) const
    {
        return control<Control>(name.toString());
    }
    [[nodiscard]] RenderArea *preview() const { return window.findChild<RenderArea *>(); }
    [[nodiscard]] QListWidget *layerList() const;
    /// The names in the layer list.
    [[nodiscard]] QStringList layerNames() const;

    /// Calls a slot without arguments by its name.
    void call(const char *slot);
    /// Clicks a button.
    void press(const QString &button) const;
    /// Adds a layer with the button and its dialog.
    void addLayer(const QString &name) const;
    /// Gives a field of the active layer a value with its control and, for colours and fonts, its dialog.
    void edit(const GaugeField &field, const QVariant &value) const;
    /// The layer whose values the controls show. A colour is invalid if its button has another style sheet
    /// than the window gives it.
    [[nodiscard]] gaugeData shownLayer() const;
    /// Loads a gauge with the button and its dialog. @a expectMore expects the dialogs that follow.
    void load(
        const QString &path, DialogAnswers &answers, const std::function<void()> &expectMore = [] {}) const;
    /// Shows the window and waits until it is on the screen and painted.
    void show();

    /// The layers with the names of their rows.
    [[nodiscard]] QList<gaugeLayer> gauge() const;
    /// The names and fields in which gauge() differs from @a expected, such as "2: startAngle".
    [[nodiscard]] QStringList differencesFrom(const QList<gaugeLayer> &expected) const;
    /// What the user can see or lose: the properties of all controls, the rows and the layers. For comparing.
    [[nodiscard]] QStringList state() const;

    Window window;
};

/// The slot of the window that stores the value of this field's control, and of all controls of the same
/// group, in the active layer.
[[nodiscard]] QByteArray slotOf(const GaugeField &field);

#endif
