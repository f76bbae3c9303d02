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

/// The editor: the one top-level window. It binds the form's controls to the active layer, keeps the layer
/// list and the preview's stack in step, and reads and writes the files that the user picks.
///
/// The active layer is the current row of the layer list. The list and the stack always have the same length
/// and order.
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
    // Controls to the active layer: each reads its group's controls, hands the values to the preview's
    // working copy and saves that into the active row.
    void angleChanged();
    void capsChanged();
    void divisions1Changed();
    void divisions2Changed();
    void divisions3Changed();
    void arc1Changed();
    void arc2Changed();
    void arc3Changed();
    void arc4Changed();
    // A colour button pressed: asks for the colour. A cancelled dialog makes the element black.
    void divisions1ColorChanged();
    void divisions2ColorChanged();
    void divisions3ColorChanged();
    void arc1ColorChanged();
    void arc2ColorChanged();
    void arc3ColorChanged();
    void arc4ColorChanged();
    void tickSettingsChanged();
    void tickDecimalsChanged();
    // Files. A cancelled dialog does nothing.
    void saveSVG();
    void savePNG();
    void saveGauge();
    void saveLayer();
    void saveKeyframes();
    void loadGauge();
    void tickFontButton();
    void tickColorChanged();
    void presetChanged();
    /// Shows the preview's working copy in all controls, without one of them reporting a change.
    void setActiveGauge();
    /// Asks for a colour. Invalid when the user cancels.
    QColor getColor();
    /// Asks for a font, starting at the one of the font button, which is also the answer when the user
    /// cancels.
    QFont getFont();
    /// Blocks, or unblocks, the signals of every control that is bound to the layer.
    void blockWidgetSignals(bool inEnable);
    void layerChanged(QListWidgetItem *current, QListWidgetItem *previous);
    void layerRenamed(QListWidgetItem *item);
    void addLayer();
    void removeLayer();
    void loadReference();
    void clearReference();
    /// Fills the preset list from the presets folder, in the folder's own order.
    void getPresetsFromFolder();
    /// Tells the user what came of an update check: always when a newer version is out, of anything else only
    /// when the user had asked.
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
    /// Appends a row; the caller keeps the stack in step.
    void addLayerItem(const QString &name);
    /// Gives a row its name, both the shown and the last accepted one.
    void setLayerItemName(QListWidgetItem *item, const QString &name);
    /// The stack with its names, bottom layer first, the latest edits included.
    [[nodiscard]] QList<gaugeLayer> collectLayers() const;
    /// Loads a row of the stack into the working copy and the controls.
    void showLayer(int row);

    // Documents.
    enum class LoadMode { Append, Overwrite, Cancel };
    /// Asks whether a loaded gauge comes beside the active layer or over it.
    [[nodiscard]] LoadMode askForLoadMode();
    /// Asks for a file and writes the layers into it; tells the user when it cannot be opened.
    void saveLayersToFile(const QList<gaugeLayer> &gaugeLayers, const QString &title,
                          const QString &directory);
    /// Reads a gauge file and adds its layers; tells the user when it cannot be opened or read.
    void loadGaugeFile(const QString &path);
    /// Appends loaded layers, or overwrites the active layer with the first of them and appends the rest.
    /// @a baseName names a single layer that has no name of its own.
    void applyLoadedLayers(const QList<gaugeLayer> &gaugeLayers, const QString &baseName);
    [[nodiscard]] QString presetsDirectory() const;
    /// Asks where to save. Empty when the user cancels.
    [[nodiscard]] QString askForSaveFile(const QString &title, const QString &filter, const QString &suffix,
                                         const QString &directory);
    void showCannotOpen(const QString &reason);
    /// The folder that presets lie under, and the one that file dialogs start in, for a program that lies in
    /// @a path: the one place where a platform maps them to other folders.
    [[nodiscard]] static QString dataDirectory(const QString &path);
    [[nodiscard]] static QString documentDirectory(const QString &path);
    /// The place for a platform whose presets folder starts empty to fill it.
    void seedBundledPresets();

    // Updates.
    /// Sends the request; the answer comes to onUpdateCheckFinished().
    void checkForUpdates();
    /// A check that the user asked for.
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
