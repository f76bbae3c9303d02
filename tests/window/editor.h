#ifndef EDITOR_H
#define EDITOR_H

#include "render/renderarea.h"
#include "window.h"

#include <QEvent>
#include <QLatin1StringView>
#include <QStringList>
#include <QVariantMap>

/// The editor as a test meets it: a real window, its controls by their object names, its preview. It is not
/// shown unless a test shows it.
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

/// The names of the 50 controls that are bound to the layer, in the order in which their signals are blocked.
[[nodiscard]] QStringList boundControls();

/// Counts how often a widget is painted.
class PaintCounter : public QObject
{
    Q_OBJECT

public:
    explicit PaintCounter(QWidget *watched) { watched->installEventFilter(this); }
    [[nodiscard]] int count() const { return m_count; }

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    int m_count = 0;
};

/// The fields of a record by name, members of an array with their index, such as "arcRadius[2]". A font is
/// told by family, size, bold and italic.
[[nodiscard]] QVariantMap fieldsOf(const gaugeData &layer);

/// The names of the fields in which two records differ, doubles told apart bit by bit.
[[nodiscard]] QStringList differingFields(const gaugeData &one, const gaugeData &other);

/// A record in which every field differs from its default and that every control can show as it is. A larger
/// @a variant gives another one.
[[nodiscard]] gaugeData unusualLayer(int variant = 0);

#endif
