#ifndef RANDOMUSER_H
#define RANDOMUSER_H

#include "formview.h"
#include "support/dialogs.h"
#include "support/random.h"

#include <QStringList>

class QAbstractSpinBox;
class Window;

/// Somebody who does one thing after another to a window, by chance, and who knows what must come of it: the
/// names of the rows, the stack of layers and the row that is selected.
///
/// Left alone is the update check, whose answer comes when it likes.
class RandomUser
{
public:
    /// @a documents are the files to load, @a folder is where to save, @a presets the window's presets
    /// folder.
    RandomUser(Window &window, quint64 seed, QStringList documents, QString folder, QString presets);

    /// Does one thing.
    void act();

    /// What is not as it must be after the last action; empty when all is well.
    [[nodiscard]] QString problem();

    /// Whether the preview shows something else than an export of the stack. Empty when it does not.
    [[nodiscard]] QString previewProblem() const;

    /// The last things done, the latest last.
    [[nodiscard]] const QStringList &lastActions() const { return m_log; }

private:
    enum class LoadMode { Append, Overwrite, Nothing };
    enum class Ending { Return, Tab, None };

    // One control.
    void typeNumber();
    void typeCount();
    void stepNumber();
    void stepCount();
    void clickFlag();
    void chooseBiasType();
    void pickColor();
    void pickFont();

    // The layer list.
    void selectLayer();
    void renameLayer();
    void addLayer();
    void removeLayer();

    // Files.
    void saveGauge();
    void saveLayer();
    void loadGauge();
    void choosePreset();
    void exportPng();
    void exportSvg();
    void exportKeyframes();
    void useReference();

    void log(const QString &action);
    void fail(const QString &what);
    void click(const char *button);
    /// Writes into a spin box as one does by keyboard. True when the box reported a new value.
    bool type(QAbstractSpinBox &box, const QString &text);
    bool step(QAbstractSpinBox &box);
    void chooseFromPopup(QComboBox &box, int row);
    /// The group's controls have been pushed into the active layer.
    void expectPushed(Group group);
    /// The largest value of a ring's count that leaves the layer quick to paint.
    [[nodiscard]] int largestCount(Group ring) const;
    /// Expects a file dialog and answers it with a path or, now and then, by cancelling: then false.
    bool answerFileDialog(const QString &path);
    [[nodiscard]] QString pathToSave(const QString &suffix);
    void saveAndCheck(const char *button, const QString &path, const QList<gaugeLayer> &layers);
    /// Expects the messages that loading a file brings up, and answers them.
    LoadMode expectLoading(const QString &path);
    void expectLoaded(const QString &path, LoadMode mode);
    [[nodiscard]] QList<gaugeLayer> namedLayers() const;
    [[nodiscard]] gaugeData &activeLayer() { return m_stack[m_row]; }

    Window &m_window;
    FormView m_form;
    Random m_random;
    DialogAnswers m_dialogs;
    QStringList m_documents;
    QString m_folder;
    QString m_presets;
    QStringList m_log;
    QString m_failure;

    // What must be.
    QStringList m_names;
    QList<gaugeData> m_stack;
    int m_row = 0;
    bool m_fontShown = false; ///< The font button starts with the application's font, not with the layer's.
};

#endif
