#ifndef RENDERAREA_H
#define RENDERAREA_H

#include "model/gaugedata.h"

#include <QList>
#include <QPalette>
#include <QPointF>
#include <QWidget>

/// The preview. Owns the gauge being edited: the stack of layers that it draws, and a working copy of one
/// layer that the setters write into. Which layer is active only the window knows; it passes the row.
///
/// Angles are degrees clockwise from 12 o'clock, radii fractions of the face radius, widths canvas units. No
/// setter validates anything.
class RenderArea : public QWidget
{
    Q_OBJECT

public:
    explicit RenderArea(QWidget *parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

    /// Draws the stack onto a painter whose device is @a size by @a size; see paintGauge().
    void paint(QPainter &painter, int size);

    /// The biased fraction of the sweep for a linear one; see biasedFraction().
    [[nodiscard]] static double applyBias(double t, double bias, bool midpoint);

    /// The value and the angle of each primary tick of @a layer; see keyframes().
    [[nodiscard]] QList<QPointF> layerKeyframes(const gaugeData &layer) const;

    /// The stack, bottom layer first, in the order of the window's layer list.
    QList<gaugeData> layers;
    /// The layer being edited. It is seen only once saveLayerData() has put it into the stack.
    gaugeData workingLayer;

public Q_SLOTS:
    void setAngles(double inStartAngle, double inAngleLength, double inBias, bool midpointBias);
    void setRoundCaps(bool inRoundTickCaps, bool inRoundArcCaps);
    void setDivisions1(int inDivisions, double inInnerRadius, double inOuterRadius, double inLineWidth,
                       QColor inColor = Qt::white);
    void setDivisions2(int inDivisions, double inInnerRadius, double inOuterRadius, double inLineWidth,
                       QColor inColor = Qt::white);
    void setDivisions3(int inDivisions, double inInnerRadius, double inOuterRadius, double inLineWidth,
                       QColor inColor = Qt::white);
    void setArc1(double inStartAngle, double inAngleLength, double inRadius, double inWidth,
                 QColor inColor = Qt::white);
    void setArc2(double inStartAngle, double inAngleLength, double inRadius, double inWidth,
                 QColor inColor = Qt::white);
    void setArc3(double inStartAngle, double inAngleLength, double inRadius, double inWidth,
                 QColor inColor = Qt::white);
    void setArc4(double inStartAngle, double inAngleLength, double inRadius, double inWidth,
                 QColor inColor = Qt::white);
    void setTickCounts(bool inEnable, double inStart, double inIncrement, int inDecPlaces, double inRadius,
                       bool inRotate, bool inSkipFirst,
                       QFont inFont = QFont(QStringLiteral("Sans Serif"), 10), QColor inColor = Qt::white);
    void manualRedraw();
    /// Copies a layer of the stack into the working copy and repaints. An index outside the stack is ignored.
    void loadLayer(int inIndex);
    /// Copies the working copy over a layer of the stack. An index outside the stack is ignored.
    void saveLayerData(int inIndex);
    void setBackground(QPalette::ColorRole inRole);
    /// A layer with all defaults.
    gaugeData defaultGauge();

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void setDivisions(size_t ring, int count, double innerRadius, double outerRadius, double lineWidth,
                      const QColor &color);
    void setArc(size_t arc, double startAngle, double angleLength, double radius, double width,
                const QColor &color);
    [[nodiscard]] bool hasLayer(int index) const;
};

#endif
