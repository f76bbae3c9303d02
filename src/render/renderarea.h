#ifndef RENDERAREA_H
#define RENDERAREA_H

#include "model/gaugedata.h"

#include <QList>
#include <QPalette>
#include <QPointF>
#include <QWidget>

/// The preview widget. Owns the layers of the gauge, which it draws, and a working copy of one layer, which
/// the setters change. It does not know which layer is active: the caller passes the row.
///
/// Angles are in degrees clockwise from 12 o'clock, radii are fractions of the face radius, and widths are in
/// canvas units. The setters do not validate their arguments.
class RenderArea : public QWidget
{
    Q_OBJECT

public:
    explicit RenderArea(QWidget *parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

    /// Draws the layers on a painter whose device is @a size by @a size pixels; see paintGauge().
    void paint(QPainter &painter, int size);

    /// See biasedFraction().
    [[nodiscard]] static double applyBias(double t, double bias, bool midpoint);

    /// See keyframes().
    [[nodiscard]] QList<QPointF> layerKeyframes(const gaugeData &layer) const;

    /// The layers, bottom layer first, in the order of the window's layer list.
    QList<gaugeData> layers;
    /// The layer being edited. Not drawn until saveLayerData() copies it into `layers`.
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
    /// Copies a layer to the working copy and repaints. Does nothing if there is no such layer.
    void loadLayer(int inIndex);
    /// Copies the working copy to a layer. Does nothing if there is no such layer.
    void saveLayerData(int inIndex);
    void setBackground(QPalette::ColorRole inRole);
    /// Returns a default layer.
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
