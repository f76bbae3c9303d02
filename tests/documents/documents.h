#ifndef DOCUMENTS_H
#define DOCUMENTS_H

#include "model/gaugedata.h"

#include <QByteArray>
#include <QList>
#include <QStringList>
#include <QWidget>

#include <functional>

class DialogAnswers;

/// The control of a window by its object name.
template <typename Control>
[[nodiscard]] Control *control(const QWidget &window, const char *name)
{
    return window.findChild<Control *>(QLatin1String(name));
}

void press(const QWidget &window, const char *button);
/// Adds a layer as the user does, through "Add Layer".
void addLayer(const QWidget &window, DialogAnswers &answers, const QString &name);
/// Loads a file as the user does, through "Load". What else it brings up is expected by @a andThen.
void load(
    const QWidget &window, DialogAnswers &answers, const QString &path,
    const std::function<void()> &andThen = [] {});

/// Expects the question whether a loaded gauge comes beside the active layer or over it, and takes the
/// former.
void expectAndAppend(DialogAnswers &answers);

/// Everything that a user of a window could see or lose, a line each: the rows, all controls, the stack and
/// the working copy to the last digit.
[[nodiscard]] QStringList stateOf(const QWidget &window);
/// The gauge as the window holds it: the names of its rows with the layers of its stack.
[[nodiscard]] QList<gaugeLayer> gaugeOf(const QWidget &window);
/// Layers in the JSON form with their names, comparable and readable.
[[nodiscard]] QStringList linesOf(const QList<gaugeLayer> &layers);

/// A layer that differs from the default, and from that of every other number, in each of its values.
[[nodiscard]] gaugeData sampleLayer(int number);

[[nodiscard]] bool writeFile(const QString &path, const QByteArray &content);
/// The content of a file. Null when there is none.
[[nodiscard]] QByteArray contentOf(const QString &path);

/// The presets folder beside the test program, which is there while this lives.
class PresetsFolder
{
public:
    PresetsFolder();
    ~PresetsFolder();

    PresetsFolder(const PresetsFolder &) = delete;
    PresetsFolder &operator=(const PresetsFolder &) = delete;

    [[nodiscard]] static QString path();
    [[nodiscard]] static QString filePath(const QString &fileName);
};

#endif
