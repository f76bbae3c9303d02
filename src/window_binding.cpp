// Copies values from the controls to the active layer and back.

#include "window.h"

#include "render/renderarea.h"

#include <QColorDialog>
#include <QFontDialog>

namespace {

/// Shows a colour as a widget's background. The closing brace without an opening one is required.
void setStyleColor(QWidget *widget, const QColor &color)
{
    widget->setStyleSheet(QLatin1String("background-color: ") + color.name() + QLatin1Char('}'));
}

/// Sets the colour of a colour button. Screen readers speak its name.
void setButtonColor(QToolButton *button, const QColor &color)
{
    setStyleColor(button, color);
    button->setAccessibleDescription(color.name());
}

/// The colour of a button. The style sheet changes the palette only when the widget is polished, which in a
/// new window has not happened yet.
QColor styleColor(const QWidget *button)
{
    button->ensurePolished();
    return button->palette().color(QPalette::Current, QPalette::Window);
}

} // namespace

std::array<Window::RingControls, 3> Window::ringControls() const
{
    return {RingControls{ui.gaugeDivisions1SpinBox, ui.gaugeDivisions1InnerRadiusSpinBox,
                         ui.gaugeDivisions1OuterRadiusSpinBox, ui.gaugeDivisions1WidthSpinBox,
                         ui.gaugeDivisions1ColorButton},
            RingControls{ui.gaugeDivisions2SpinBox, ui.gaugeDivisions2InnerRadiusSpinBox,
                         ui.gaugeDivisions2OuterRadiusSpinBox, ui.gaugeDivisions2WidthSpinBox,
                         ui.gaugeDivisions2ColorButton},
            RingControls{ui.gaugeDivisions3SpinBox, ui.gaugeDivisions3InnerRadiusSpinBox,
                         ui.gaugeDivisions3OuterRadiusSpinBox, ui.gaugeDivisions3WidthSpinBox,
                         ui.gaugeDivisions3ColorButton}};
}

std::array<Window::ArcControls, 4> Window::arcControls() const
{
    return {ArcControls{ui.arc1StartAngleSpinBox, ui.arc1AngleLengthSpinBox, ui.arc1RadiusSpinBox,
                        ui.arc1WidthSpinBox, ui.arc1ColorButton},
            ArcControls{ui.arc2StartAngleSpinBox, ui.arc2AngleLengthSpinBox, ui.arc2RadiusSpinBox,
                        ui.arc2WidthSpinBox, ui.arc2ColorButton},
            ArcControls{ui.arc3StartAngleSpinBox, ui.arc3AngleLengthSpinBox, ui.arc3RadiusSpinBox,
                        ui.arc3WidthSpinBox, ui.arc3ColorButton},
            ArcControls{ui.arc4StartAngleSpinBox, ui.arc4AngleLengthSpinBox, ui.arc4RadiusSpinBox,
                        ui.arc4WidthSpinBox, ui.arc4ColorButton}};
}

void Window::pushInitialValues()
{
    const auto rings = ringControls();
    for (const RingControls &ring : rings)
        setButtonColor(ring.color, Qt::white);
    for (size_t ring = 0; ring < rings.size(); ++ring)
        pushRing(ring, Qt::white);

    setButtonColor(ui.arc4ColorButton, Qt::white);
    pushArc(3, Qt::white);

    // Only the layer gets this font. The font button keeps the application's font, which the first edit of a
    // label control stores in the layer.
    setButtonColor(ui.tickColorButton, Qt::white);
    pushTickCounts(QFont(QStringLiteral("Sans Serif"), 10), Qt::white);

    setButtonColor(ui.arc1ColorButton, Qt::green);
    pushArc(0, Qt::green);
    setButtonColor(ui.arc2ColorButton, Qt::yellow);
    pushArc(1, Qt::yellow);
    setButtonColor(ui.arc3ColorButton, Qt::red);
    pushArc(2, Qt::red);

    setStyleColor(ui.referenceLabel, Qt::black);
    renderArea->setRoundCaps(ui.roundedTickCapsCheckBox->isChecked(), ui.roundedArcCapsCheckBox->isChecked());
    saveActiveLayer();
}

void Window::pushRing(size_t ring, const QColor &color)
{
    constexpr std::array setters{&RenderArea::setDivisions1, &RenderArea::setDivisions2,
                                 &RenderArea::setDivisions3};
    const RingControls controls = ringControls().at(ring);
    (renderArea->*setters.at(ring))(controls.count->value(), controls.innerRadius->value(),
                                    controls.outerRadius->value(), controls.lineWidth->value(), color);
}

void Window::pushArc(size_t arc, const QColor &color)
{
    constexpr std::array setters{&RenderArea::setArc1, &RenderArea::setArc2, &RenderArea::setArc3,
                                 &RenderArea::setArc4};
    const ArcControls controls = arcControls().at(arc);
    (renderArea->*setters.at(arc))(controls.startAngle->value(), controls.angleLength->value(),
                                   controls.radius->value(), controls.width->value(), color);
}

void Window::pushTickCounts(const QFont &font, const QColor &color)
{
    renderArea->setTickCounts(ui.tickCountCheckBox->isChecked(), ui.tickCountStartSpinBox->value(),
                              ui.tickCountIncrementSpinBox->value(),
                              ui.tickCountDecimalPlacesSpinBox->value(), ui.tickCountRadiusSpinBox->value(),
                              ui.tickCountRotateCheckBox->isChecked(), ui.skipFirstTickCheckBox->isChecked(),
                              font, color);
}

void Window::saveActiveLayer()
{
    renderArea->saveLayerData(ui.layerList->currentRow());
}

void Window::angleChanged()
{
    renderArea->setAngles(ui.gaugeStartAngleSpinBox->value(), ui.gaugeAngleLengthSpinBox->value(),
                          ui.gaugeBiasSpinBox->value(), ui.biasTypeComboBox->currentIndex() != 0);
    saveActiveLayer();
}

void Window::capsChanged()
{
    renderArea->setRoundCaps(ui.roundedTickCapsCheckBox->isChecked(), ui.roundedArcCapsCheckBox->isChecked());
    saveActiveLayer();
}

void Window::ringChanged(size_t ring)
{
    pushRing(ring, styleColor(ringControls().at(ring).color));
    saveActiveLayer();
}

void Window::arcChanged(size_t arc)
{
    pushArc(arc, styleColor(arcControls().at(arc).color));
    saveActiveLayer();
}

void Window::ringColorChanged(size_t ring)
{
    setButtonColor(ringControls().at(ring).color, getColor());
    ringChanged(ring);
}

void Window::arcColorChanged(size_t arc)
{
    setButtonColor(arcControls().at(arc).color, getColor());
    arcChanged(arc);
}

void Window::divisions1Changed()
{
    ringChanged(0);
}

void Window::divisions2Changed()
{
    ringChanged(1);
}

void Window::divisions3Changed()
{
    ringChanged(2);
}

void Window::arc1Changed()
{
    arcChanged(0);
}

void Window::arc2Changed()
{
    arcChanged(1);
}

void Window::arc3Changed()
{
    arcChanged(2);
}

void Window::arc4Changed()
{
    arcChanged(3);
}

void Window::divisions1ColorChanged()
{
    ringColorChanged(0);
}

void Window::divisions2ColorChanged()
{
    ringColorChanged(1);
}

void Window::divisions3ColorChanged()
{
    ringColorChanged(2);
}

void Window::arc1ColorChanged()
{
    arcColorChanged(0);
}

void Window::arc2ColorChanged()
{
    arcColorChanged(1);
}

void Window::arc3ColorChanged()
{
    arcColorChanged(2);
}

void Window::arc4ColorChanged()
{
    arcColorChanged(3);
}

void Window::tickSettingsChanged()
{
    pushTickCounts(ui.tickCountFontButton->font(), styleColor(ui.tickColorButton));
    saveActiveLayer();
}

void Window::tickDecimalsChanged()
{
    const int decimals = ui.tickCountDecimalPlacesSpinBox->value();
    ui.tickCountStartSpinBox->setDecimals(decimals);
    ui.tickCountIncrementSpinBox->setDecimals(decimals);
    tickSettingsChanged();
}

void Window::tickFontButton()
{
    ui.tickCountFontButton->setFont(getFont());
    tickSettingsChanged();
}

void Window::tickColorChanged()
{
    setButtonColor(ui.tickColorButton, getColor());
    tickSettingsChanged();
}

QColor Window::getColor()
{
    return QColorDialog::getColor(Qt::black, this, tr("Choose a Color"));
}

QFont Window::getFont()
{
    bool ok = false; // not used: a cancelled dialog returns the initial font
    return QFontDialog::getFont(&ok, ui.tickCountFontButton->font(), this, QString());
}

void Window::blockWidgetSignals(bool inEnable)
{
    for (QWidget *control : std::initializer_list<QWidget *>{
             ui.gaugeStartAngleSpinBox, ui.gaugeAngleLengthSpinBox, ui.gaugeBiasSpinBox, ui.biasTypeComboBox,
             ui.roundedTickCapsCheckBox}) {
        control->blockSignals(inEnable);
    }
    for (const RingControls &ring : ringControls()) {
        for (QWidget *control : std::initializer_list<QWidget *>{
                 ring.count, ring.innerRadius, ring.outerRadius, ring.lineWidth, ring.color}) {
            control->blockSignals(inEnable);
        }
    }
    ui.roundedArcCapsCheckBox->blockSignals(inEnable);
    for (const ArcControls &arc : arcControls()) {
        for (QWidget *control : std::initializer_list<QWidget *>{arc.startAngle, arc.angleLength, arc.radius,
                                                                 arc.width, arc.color}) {
            control->blockSignals(inEnable);
        }
    }
    for (QWidget *control : std::initializer_list<QWidget *>{
             ui.tickCountRadiusSpinBox, ui.tickCountDecimalPlacesSpinBox, ui.tickCountStartSpinBox,
             ui.tickCountIncrementSpinBox, ui.tickCountFontButton, ui.tickColorButton,
             ui.tickCountRotateCheckBox, ui.tickCountCheckBox, ui.skipFirstTickCheckBox}) {
        control->blockSignals(inEnable);
    }
}

void Window::setActiveGauge()
{
    const gaugeData &layer = renderArea->workingLayer;
    blockWidgetSignals(true);

    ui.gaugeStartAngleSpinBox->setValue(layer.startAngle);
    ui.gaugeAngleLengthSpinBox->setValue(layer.angleLength);
    ui.gaugeBiasSpinBox->setValue(layer.bias);
    ui.biasTypeComboBox->setCurrentIndex(layer.midpointBias ? 1 : 0);
    ui.roundedTickCapsCheckBox->setChecked(layer.roundedTickCaps);

    const auto rings = ringControls();
    for (size_t ring = 0; ring < rings.size(); ++ring) {
        const RingControls &controls = rings.at(ring);
        controls.count->setValue(layer.divisionCount.at(ring));
        controls.innerRadius->setValue(layer.divisionInnerRadius.at(ring));
        controls.outerRadius->setValue(layer.divisionOuterRadius.at(ring));
        controls.lineWidth->setValue(layer.divisionLineWidth.at(ring));
        setButtonColor(controls.color, layer.divisionColor.at(ring));
    }

    ui.roundedArcCapsCheckBox->setChecked(layer.roundedArcCaps);
    const auto arcs = arcControls();
    for (size_t arc = 0; arc < arcs.size(); ++arc) {
        const ArcControls &controls = arcs.at(arc);
        controls.startAngle->setValue(layer.arcStartAngle.at(arc));
        controls.angleLength->setValue(layer.arcAngleLength.at(arc));
        controls.radius->setValue(layer.arcRadius.at(arc));
        controls.width->setValue(layer.arcWidth.at(arc));
        setButtonColor(controls.color, layer.arcColor.at(arc));
    }

    ui.tickCountRadiusSpinBox->setValue(layer.tickCountRadius);
    ui.tickCountDecimalPlacesSpinBox->setValue(layer.tickCountDecimalPlaces);
    // Before the values, which would otherwise be rounded to the decimals of the previous layer.
    ui.tickCountStartSpinBox->setDecimals(layer.tickCountDecimalPlaces);
    ui.tickCountIncrementSpinBox->setDecimals(layer.tickCountDecimalPlaces);
    ui.tickCountStartSpinBox->setValue(layer.tickCountStart);
    ui.tickCountIncrementSpinBox->setValue(layer.tickCountIncrement);
    ui.tickCountFontButton->setFont(layer.tickCountFont);
    setButtonColor(ui.tickColorButton, layer.tickCountColor);
    ui.tickCountRotateCheckBox->setChecked(layer.tickCountRotate);
    ui.tickCountCheckBox->setChecked(layer.tickCountEnabled);
    ui.skipFirstTickCheckBox->setChecked(layer.tickCountSkipFirst);

    blockWidgetSignals(false);
}
