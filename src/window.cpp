// Construction and destruction of the window. The order of construction matters: the connections are made
// before the initial values are pushed, and the first row is selected before the layer list is connected.

#include "window.h"

#include "projectinfo.h"
#include "render/renderarea.h"

#include <QCoreApplication>
#include <QGridLayout>
#include <QHelpEvent>
#include <QNetworkAccessManager>
#include <QToolTip>

Window::Window(QWidget *parent)
    : QWidget(parent)
{
    // For queued calls by name of the slots that take these pointers.
    qRegisterMetaType<QListWidgetItem *>();
    qRegisterMetaType<QNetworkReply *>();

    ui.setupUi(this);
    renderArea = new RenderArea(nullptr);
    addLayerItem(tr("Layer 1"));
    renderArea->layers.append(renderArea->defaultGauge());

    connectLayerControls();
    connectColorButtons();
    connectTickControls();
    connectDocumentControls();
    connectLayerList();
    connectReferenceAndUpdateControls();

    placePreview();
    angleChanged();
    pushInitialValues();

    dataDir = dataDirectory(QCoreApplication::applicationDirPath());
    documentDir = documentDirectory(QCoreApplication::applicationDirPath());
    seedBundledPresets();
    getPresetsFromFolder();

    setWindowTitle(projectInfo::name + QLatin1Char(' ') + projectInfo::version);
    networkManager = new QNetworkAccessManager(this);
    checkForUpdates();
}

Window::~Window()
{
    // The list commits an open name editor when QWidget's destructor deletes it: too late for our slots.
    ui.layerList->disconnect(this);
}

bool Window::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::ToolTip)
        return QWidget::eventFilter(watched, event);
    // A tool tip takes the style sheet of the widget that it is shown for. With the sheet of a dark colour
    // button its text could not be read, so the tip is shown for the window.
    const auto *button = qobject_cast<const QWidget *>(watched);
    QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(), button->toolTip(), this);
    return true;
}

void Window::connectLayerControls()
{
    const auto spinBox = qOverload<int>(&QSpinBox::valueChanged);
    const auto doubleSpinBox = qOverload<double>(&QDoubleSpinBox::valueChanged);

    connect(ui.gaugeStartAngleSpinBox, doubleSpinBox, this, &Window::angleChanged);
    connect(ui.gaugeAngleLengthSpinBox, doubleSpinBox, this, &Window::angleChanged);
    connect(ui.gaugeBiasSpinBox, doubleSpinBox, this, &Window::angleChanged);
    connect(ui.biasTypeComboBox, &QComboBox::activated, this, &Window::angleChanged);
    ui.biasTypeComboBox->insertItem(ui.biasTypeComboBox->count(), tr("Exponential"));
    ui.biasTypeComboBox->insertItem(ui.biasTypeComboBox->count(), tr("Midpoint"));

    const auto rings = ringControls();
    constexpr std::array ringSlots{&Window::divisions1Changed, &Window::divisions2Changed,
                                   &Window::divisions3Changed};
    for (size_t ring = 0; ring < rings.size(); ++ring)
        connect(rings.at(ring).count, spinBox, this, ringSlots.at(ring));
    for (const auto control :
         {&RingControls::innerRadius, &RingControls::outerRadius, &RingControls::lineWidth}) {
        for (size_t ring = 0; ring < rings.size(); ++ring)
            connect(rings.at(ring).*control, doubleSpinBox, this, ringSlots.at(ring));
    }

    const auto arcs = arcControls();
    constexpr std::array arcSlots{&Window::arc1Changed, &Window::arc2Changed, &Window::arc3Changed,
                                  &Window::arc4Changed};
    for (const auto control :
         {&ArcControls::startAngle, &ArcControls::angleLength, &ArcControls::radius, &ArcControls::width}) {
        for (size_t arc = 0; arc < arcs.size(); ++arc)
            connect(arcs.at(arc).*control, doubleSpinBox, this, arcSlots.at(arc));
    }
}

void Window::connectColorButtons()
{
    constexpr std::array ringSlots{&Window::divisions1ColorChanged, &Window::divisions2ColorChanged,
                                   &Window::divisions3ColorChanged};
    const auto rings = ringControls();
    for (size_t ring = 0; ring < rings.size(); ++ring)
        connect(rings.at(ring).color, &QAbstractButton::clicked, this, ringSlots.at(ring));

    constexpr std::array arcSlots{&Window::arc1ColorChanged, &Window::arc2ColorChanged,
                                  &Window::arc3ColorChanged, &Window::arc4ColorChanged};
    const auto arcs = arcControls();
    for (size_t arc = 0; arc < arcs.size(); ++arc)
        connect(arcs.at(arc).color, &QAbstractButton::clicked, this, arcSlots.at(arc));

    for (const RingControls &ring : rings)
        ring.color->installEventFilter(this);
    for (const ArcControls &arc : arcs)
        arc.color->installEventFilter(this);
    ui.tickColorButton->installEventFilter(this);
}

void Window::connectTickControls()
{
    const auto spinBox = qOverload<int>(&QSpinBox::valueChanged);
    const auto doubleSpinBox = qOverload<double>(&QDoubleSpinBox::valueChanged);

    connect(ui.tickCountRadiusSpinBox, doubleSpinBox, this, &Window::tickSettingsChanged);
    connect(ui.tickCountDecimalPlacesSpinBox, spinBox, this, &Window::tickDecimalsChanged);
    connect(ui.tickCountStartSpinBox, doubleSpinBox, this, &Window::tickSettingsChanged);
    connect(ui.tickCountIncrementSpinBox, doubleSpinBox, this, &Window::tickSettingsChanged);
    connect(ui.tickCountFontButton, &QAbstractButton::clicked, this, &Window::tickFontButton);
    connect(ui.tickColorButton, &QAbstractButton::clicked, this, &Window::tickColorChanged);
    connect(ui.tickCountRotateCheckBox, &QAbstractButton::clicked, this, &Window::tickSettingsChanged);
    connect(ui.tickCountCheckBox, &QAbstractButton::clicked, this, &Window::tickSettingsChanged);
    connect(ui.skipFirstTickCheckBox, &QAbstractButton::clicked, this, &Window::tickSettingsChanged);
    connect(ui.roundedTickCapsCheckBox, &QAbstractButton::clicked, this, &Window::capsChanged);
    connect(ui.roundedArcCapsCheckBox, &QAbstractButton::clicked, this, &Window::capsChanged);
}

void Window::connectDocumentControls()
{
    connect(ui.saveSVGButton, &QAbstractButton::clicked, this, &Window::saveSVG);
    connect(ui.savePNGButton, &QAbstractButton::clicked, this, &Window::savePNG);
    connect(ui.saveKeyFrameButton, &QAbstractButton::clicked, this, &Window::saveKeyframes);
    connect(ui.presetComboBox, &QComboBox::activated, this, &Window::presetChanged);
    connect(ui.saveButton, &QAbstractButton::clicked, this, &Window::saveGauge);
    connect(ui.SaveLayerButton, &QAbstractButton::clicked, this, &Window::saveLayer);
    connect(ui.loadButton, &QAbstractButton::clicked, this, &Window::loadGauge);
}

void Window::connectLayerList()
{
    // The first row is selected before the signals are connected: there is no previous layer to save.
    ui.layerList->setCurrentRow(0);
    ui.layerList->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed);
    connect(ui.layerList, &QListWidget::currentItemChanged, this, &Window::layerChanged);
    connect(ui.layerList, &QListWidget::itemChanged, this, &Window::layerRenamed);
    connect(ui.AddLayerButton, &QAbstractButton::clicked, this, &Window::addLayer);
    connect(ui.RemoveLayerButton, &QAbstractButton::clicked, this, &Window::removeLayer);
}

void Window::connectReferenceAndUpdateControls()
{
    connect(ui.loadReferenceButton, &QAbstractButton::clicked, this, &Window::loadReference);
    connect(ui.clearReferenceButton, &QAbstractButton::clicked, this, &Window::clearReference);
    connect(ui.checkUpdatesButton, &QAbstractButton::clicked, this, &Window::checkForUpdatesButton);
}

void Window::placePreview()
{
    renderArea->setAccessibleName(tr("Gauge Preview"));
    auto *layout = new QGridLayout;
    layout->addWidget(renderArea, 0, 0, Qt::AlignCenter);
    ui.RenderBox->setLayout(layout);
}
