#ifndef RANDOMUSER_H
#define RANDOMUSER_H

#include "support/dialogs.h"
#include "support/editor.h"
#include "support/random.h"

#include <QStringList>

/// Performs random actions on a window and predicts the names of the rows, the layers and the current row.
///
/// It does not check for updates, since the answer arrives at an unpredictable time.
class RandomUser
{
public:
    /// @a documents are the files to load, @a folder is where to save. @a presets is the presets folder of
    /// the window.
    RandomUser(Editor &editor, quint64 seed, QStringList documents, QString folder, QString presets);

    /// Performs one action.
    void act();
    /// What differs from the prediction after the last action, or what went wrong in it. Empty if nothing.
    [[nodiscard]] QString problem();
    /// The last actions, the latest last.
    [[nodiscard]] const QStringList &lastActions() const { return m_log; }

private:
    enum class LoadMode { Append, Overwrite, Nothing };

    // Controls.
    void typeValue();
    void stepValue();
    void clickFlag();
    void chooseBiasType();
    void pickColor();
    void pickFont();

    // Layers.
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
    void loadReference();
    void clearReference();

    void log(const QString &action);
    void fail(const QString &what);
    void click(QLatin1StringView button);
    [[nodiscard]] QStringList names();
    /// A random field of some kinds that is not part of the font.
    const GaugeField &pickField(std::initializer_list<GaugeField::Kind> kinds);
    /// Types into a spin box. Returns whether its value changed.
    bool type(QAbstractSpinBox &box, const QString &text);
    void chooseFromPopup(QComboBox &box, int row);
    /// The window stores all controls of the field's group in the active layer.
    void predictStored(const GaugeField &field);
    /// A control that does not show the active layer within its range and decimals. Empty if there is none.
    [[nodiscard]] QString wrongControl() const;
    /// Expects a file dialog. Accepts @a path in it, or cancels it and returns false.
    bool answerFileDialog(const QString &path);
    [[nodiscard]] QString pathToSave(const QString &suffix);
    void saveAndCheck(QLatin1StringView button, const QString &path, const QList<gaugeLayer> &layers);
    /// Expects the messages that loading a file shows, and answers them.
    LoadMode expectLoading(const QString &path);
    void predictLoaded(const QString &path, LoadMode mode);
    [[nodiscard]] QList<gaugeLayer> namedLayers() const;
    [[nodiscard]] gaugeData &activeLayer() { return m_stack[m_row]; }

    Editor &m_editor;
    Random m_random;
    DialogAnswers m_dialogs;
    QStringList m_documents;
    QString m_folder;
    QString m_presets;
    QStringList m_log;
    QString m_failure;

    // The prediction.
    QStringList m_names{QStringLiteral("Layer 1")};
    QList<gaugeData> m_stack{gaugeData()};
    int m_row = 0;
    bool m_fontShown =
        false; ///< At first, the font button shows the application's font instead of the layer's.
};

#endif
