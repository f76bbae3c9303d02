#include "layers.h"

gaugeData typicalLayer()
{
    gaugeData layer;
    layer.startAngle = -135.0;
    layer.angleLength = 270.0;
    layer.divisionCount = {10, 2, 5};
    layer.divisionLineWidth = {4.0, 2.0, 1.0};
    layer.arcAngleLength = {150.0, 60.0, 60.0, 0.0};
    layer.arcStartAngle = {-135.0, 15.0, 75.0, 0.0};
    layer.arcWidth = {12.0, 12.0, 12.0, 0.0};
    layer.tickCountFont.setBold(true);
    return layer;
}

gaugeData turnedLayer()
{
    gaugeData layer = typicalLayer();
    layer.tickCountRotate = true;
    return layer;
}

gaugeData denseLayer(int ticks)
{
    gaugeData layer;
    layer.angleLength = 360.0;
    layer.divisionCount = {ticks / 100, 10, 10};
    layer.tickCountEnabled = false;
    return layer;
}

gaugeData denseBiasedLayer(int ticks)
{
    gaugeData layer = denseLayer(ticks);
    layer.bias = 0.3;
    return layer;
}
