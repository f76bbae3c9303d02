#ifndef WINDOW_H
#define WINDOW_H

#include "model/gaugedata.h"
#include "render/keyframes.h"
#include "ui_window.h"

#include <QList>
#include <QNetworkReply> // complete, for the meta-type of the pointer
#include <QString>
#include <QUrl>
#include <QWidget>

#include <array>

class QListWidgetItem;
class QNetworkAccessManager;
class RenderArea;

/// The editor's only top-level window. It connects the form's controls with the active layer, and reads and
/// writes the files that the user picks.
///
/// The active layer is the current row of the layer list. The list and the preview's stack of layers always
/// have the same length and order.
class Window : public QWidget
{
    Q_OBJECT

public:
    explicit Window(QWidget *parent = nullptr);
    ~Window() override;

    /// Where the published version description is fetched from.
    static const QUrl VERSION_XML_URL;

    /// Shows the tool tips of the colour buttons.
    bool eventFilter(QObject *watched, QEvent *event) override;

private Q_SLOTS:
    // Each of these slots copies the controls of its group to the preview's working copy, and the working
    // copy to the active layer.
    void angleChanged();
    void capsChanged();
    void divisions1Changed();
    void divisions2Changed();
    void divisions3Changed();
    void arc1Changed();
    void arc2Changed();
    void arc3Changed();
    void arc4Changed();
    // The slots of the colour buttons ask for a colour. Cancelling makes the element black.
    void divisions1ColorChanged();
    void divisions2ColorChanged();
    void divisions3ColorChanged();
    void arc1ColorChanged();
    void arc2ColorChanged();
    void arc3ColorChanged();
    void arc4ColorChanged();
    void tickSettingsChanged();
    void tickDecimalsChanged();
    // Slots that ask for a file do nothing if the dialog is cancelled.
    void saveSVG();
    void savePNG();
    void saveGauge();
    void saveLayer();
    void saveKeyframes();
    void loadGauge();
    void tickFontButton();
    void tickColorChanged();
    void presetChanged();
    /// Shows the preview's working copy in all controls. The controls emit no signals.
    void setActiveGauge();
    /// Asks for a colour. Returns an invalid colour if the user cancels.
    QColor getColor();
    /// Asks for a font. The dialog starts with the font of the font button, and returns it if the user
    /// cancels.
    QFont getFont();
    /// Blocks or unblocks the signals of all controls of the active layer.
    void blockWidgetSignals(bool inEnable);
    void layerChanged(QListWidgetItem *current, QListWidgetItem *previous);
    void layerRenamed(QListWidgetItem *item);
    void addLayer();
    void removeLayer();
    void loadReference();
    void clearReference();
    /// Fills the preset list with the files of the presets folder, unsorted.
    void getPresetsFromFolder();
    /// Tells the user the result of an update check: a newer version always, anything else only if the user
    /// asked for the check.
    void onUpdateCheckFinished(QNetworkReply *reply);

private:
    /// The controls of one ring of divisions and of one arc.
    struct RingControls
    {
        QSpinBox *count;
        QDoubleSpinBox *innerRadius;
        QDoubleSpinBox *outerRadius;
        QDoubleSpinBox *lineWidth;
        QToolButton *color;
    };
    struct ArcControls
    {
        QDoubleSpinBox *startAngle;
        QDoubleSpinBox *angleLength;
        QDoubleSpinBox *radius;
        QDoubleSpinBox *width;
        QToolButton *color;
    };
    [[nodiscard]] std::array<RingControls, 3> ringControls() const;
    [[nodiscard]] std::array<ArcControls, 4> arcControls() const;

    // Construction.
    void connectLayerControls();
    void connectColorButtons();
    void connectTickControls();
    void connectDocumentControls();
    void connectLayerList();
    void connectReferenceAndUpdateControls();
    void placePreview();
    void pushInitialValues();

    // Binding.
    void pushRing(size_t ring, const QColor &color);
    void pushArc(size_t arc, const QColor &color);
    void pushTickCounts(const QFont &font, const QColor &color);
    void ringChanged(size_t ring);
    void arcChanged(size_t arc);
    void ringColorChanged(size_t ring);
    void arcColorChanged(size_t arc);
    void saveActiveLayer();

    // Layers.
    /// Appends a row. The caller appends the layer to the stack.
    void addLayerItem(const QString &name);
    /// Sets the shown name and the last accepted name of a row.
    void setLayerItemName(QListWidgetItem *item, const QString &name);
    /// All layers with their names, bottom layer first, including the latest edits.
    [[nodiscard]] QList<gaugeLayer> collectLayers() const;
    /// Loads a layer into the working copy and the controls.
    void showLayer(int row);

    // Documents.
    enum class LoadMode { Append, Overwrite, Cancel };
    /// Asks whether to append a loaded gauge or to overwrite the active layer.
    [[nodiscard]] LoadMode askForLoadMode();
    /// Asks for a file and writes the layers to it. Shows a message if it cannot be opened.
    void saveLayersToFile(const QList<gaugeLayer> &gaugeLayers, const QString &title,
                          const QString &directory);
    /// Reads a gauge file and adds its layers. Shows a message if it cannot be opened or is not valid.
    void loadGaugeFile(const QString &path);
    /// Appends loaded layers, or overwrites the active layer with the first and appends the others.
    /// @a baseName is the name of a single layer without a name.
    void applyLoadedLayers(const QList<gaugeLayer> &gaugeLayers, const QString &baseName);
    [[nodiscard]] QString presetsDirectory() const;
    /// Asks for the file to save to. Returns an empty string if the user cancels.
    [[nodiscard]] QString askForSaveFile(const QString &title, const QString &filter, const QString &suffix,
                                         const QString &directory);
    void showCannotOpen(const QString &reason);
    // The parent of the presets folder, and the folder in which file dialogs start. Both are @a path, the
    // program's folder. Ports to platforms with other conventions change these functions.
    [[nodiscard]] static QString dataDirectory(const QString &path);
    [[nodiscard]] static QString documentDirectory(const QString &path);
    /// Does nothing. Ports to platforms on which the presets folder is empty at first can fill it here.
    void seedBundledPresets();

    // Updates.
    /// Requests the version description. onUpdateCheckFinished() receives the reply.
    void checkForUpdates();
    /// Starts a check for which the user asked.
    void checkForUpdatesButton();
    void offerUpdate(const QString &version, const QString &notes, const QString &downloadUrl);

    Ui_Window ui;
    RenderArea *renderArea = nullptr;
    QNetworkAccessManager *networkManager = nullptr;
    QNetworkReply *updateReply = nullptr;
    bool manualUpdateCheck = false;
    QString dataDir;
    QString documentDir;
};

#endif
