#ifndef EDITOR_H
#define EDITOR_H

#include "render/renderarea.h"
#include "window.h"

#include <QLatin1StringView>
#include <QStringList>

/// A real window, its controls by object name, and its preview. Not shown until show() is called.
class Editor
{
public:
    /// The control of that name and type. Ends the test program when there is none.
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

    /// Calls a slot without arguments by its name.
    void call(const char *slot);
    /// Adds a layer as a user does, through the button and its dialog.
    void addLayer(const QString &name) const;
    /// Shows the window and waits until it is on the screen and painted.
    void show();

    Window window;
};

/// The object names of the 50 controls that show the active layer, in the order in which their signals are
/// blocked.
[[nodiscard]] QStringList boundControls();

#endif
