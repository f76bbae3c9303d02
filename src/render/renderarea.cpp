#include "render/renderarea.h"

#include "render/gaugepainter.h"
#include "render/keyframes.h"
#include "render/sweep.h"

#include <QAccessibleWidget>
#include <QPainter>

#include <utility>

namespace {

/// Screen readers announce the preview as a graphic.
QAccessibleInterface *accessiblePreview(const QString & /*className*/, QObject *object)
{
    auto *preview = qobject_cast<RenderArea *>(object);
    return preview == nullptr ? nullptr : new QAccessibleWidget(preview, QAccessible::Graphic);
}

} // namespace

RenderArea::RenderArea(QWidget *parent)
    : QWidget(parent)
{
    QAccessible::installFactory(accessiblePreview); // ignored if already installed
    // Transparent, so that the reference image behind the preview is visible.
    setPalette(QPalette(Qt::transparent));
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAutoFillBackground(false);
    setStyleSheet(QStringLiteral("QWidget{background-color: transparent;}"));
    setAttribute(Qt::WA_NoSystemBackground);
    // Has no effect on a child widget.
    setWindowOpacity(0.0);
}

QSize RenderArea::sizeHint() const
{
    return {canvasSize, canvasSize};
}

QSize RenderArea::minimumSizeHint() const
{
    return {100, 100};
}

void RenderArea::paint(QPainter &painter, int size)
{
    paintGauge(painter, size, layers);
}

double RenderArea::applyBias(double t, double bias, bool midpoint)
{
    return biasedFraction(t, bias, midpoint);
}

QList<QPointF> RenderArea::layerKeyframes(const gaugeData &layer) const
{
    return keyframes(layer);
}

void RenderArea::setAngles(double inStartAngle, double inAngleLength, double inBias, bool midpointBias)
{
    workingLayer.startAngle = inStartAngle;
    workingLayer.angleLength = inAngleLength;
    workingLayer.bias = inBias;
    workingLayer.midpointBias = midpointBias;
    update();
}

void RenderArea::setRoundCaps(bool inRoundTickCaps, bool inRoundArcCaps)
{
    workingLayer.roundedTickCaps = inRoundTickCaps;
    workingLayer.roundedArcCaps = inRoundArcCaps;
    update();
}

void RenderArea::setDivisions1(int inDivisions, double inInnerRadius, double inOuterRadius,
                               double inLineWidth, QColor inColor)
{
    setDivisions(0, inDivisions, inInnerRadius, inOuterRadius, inLineWidth, inColor);
}

void RenderArea::setDivisions2(int inDivisions, double inInnerRadius, double inOuterRadius,
                               double inLineWidth, QColor inColor)
{
    setDivisions(1, inDivisions, inInnerRadius, inOuterRadius, inLineWidth, inColor);
}

void RenderArea::setDivisions3(int inDivisions, double inInnerRadius, double inOuterRadius,
                               double inLineWidth, QColor inColor)
{
    setDivisions(2, inDivisions, inInnerRadius, inOuterRadius, inLineWidth, inColor);
}

void RenderArea::setArc1(double inStartAngle, double inAngleLength, double inRadius, double inWidth,
                         QColor inColor)
{
    setArc(0, inStartAngle, inAngleLength, inRadius, inWidth, inColor);
}

void RenderArea::setArc2(double inStartAngle, double inAngleLength, double inRadius, double inWidth,
                         QColor inColor)
{
    setArc(1, inStartAngle, inAngleLength, inRadius, inWidth, inColor);
}

void RenderArea::setArc3(double inStartAngle, double inAngleLength, double inRadius, double inWidth,
                         QColor inColor)
{
    setArc(2, inStartAngle, inAngleLength, inRadius, inWidth, inColor);
}

void RenderArea::setArc4(double inStartAngle, double inAngleLength, double inRadius, double inWidth,
                         QColor inColor)
{
    setArc(3, inStartAngle, inAngleLength, inRadius, inWidth, inColor);
}

void RenderArea::setTickCounts(bool inEnable, double inStart, double inIncrement, int inDecPlaces,
                               double inRadius, bool inRotate, bool inSkipFirst, QFont inFont, QColor inColor)
{
    workingLayer.tickCountEnabled = inEnable;
    workingLayer.tickCountStart = inStart;
    workingLayer.tickCountIncrement = inIncrement;
    workingLayer.tickCountDecimalPlaces = inDecPlaces;
    workingLayer.tickCountRadius = inRadius;
    workingLayer.tickCountRotate = inRotate;
    workingLayer.tickCountSkipFirst = inSkipFirst;
    workingLayer.tickCountFont = std::move(inFont);
    workingLayer.tickCountColor = inColor;
    update();
}

void RenderArea::manualRedraw()
{
    update();
}

void RenderArea::loadLayer(int inIndex)
{
    if (!hasLayer(inIndex))
        return;
    workingLayer = layers.at(inIndex);
    update();
}

void RenderArea::saveLayerData(int inIndex)
{
    if (hasLayer(inIndex))
        layers[inIndex] = workingLayer;
}

void RenderArea::setBackground(QPalette::ColorRole inRole)
{
    setBackgroundRole(inRole);
}

gaugeData RenderArea::defaultGauge()
{
    return {};
}

void RenderArea::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    // Scale 1 at every widget size.
    paint(painter, canvasSize);
}

void RenderArea::setDivisions(size_t ring, int count, double innerRadius, double outerRadius,
                              double lineWidth, const QColor &color)
{
    workingLayer.divisionCount.at(ring) = count;
    workingLayer.divisionInnerRadius.at(ring) = innerRadius;
    workingLayer.divisionOuterRadius.at(ring) = outerRadius;
    workingLayer.divisionLineWidth.at(ring) = lineWidth;
    workingLayer.divisionColor.at(ring) = color;
    update();
}

void RenderArea::setArc(size_t arc, double startAngle, double angleLength, double radius, double width,
                        const QColor &color)
{
    workingLayer.arcStartAngle.at(arc) = startAngle;
    workingLayer.arcAngleLength.at(arc) = angleLength;
    workingLayer.arcRadius.at(arc) = radius;
    workingLayer.arcWidth.at(arc) = width;
    workingLayer.arcColor.at(arc) = color;
    update();
}

bool RenderArea::hasLayer(int index) const
{
    return index >= 0 && index < layers.size();
}
