#ifndef RECORDINGDEVICE_H
#define RECORDINGDEVICE_H

#include <QBrush>
#include <QFont>
#include <QLineF>
#include <QList>
#include <QPaintDevice>
#include <QPainterPath>
#include <QPen>
#include <QPointF>
#include <QRectF>
#include <QString>
#include <QTransform>

#include <memory>

class RecordingEngine;

/// One drawing call and the painter's state at that time. Coordinates are not transformed.
struct RecordedCall
{
    enum class Kind { Line, Ellipse, Path, Text, Other };

    Kind kind = Kind::Other;
    QLineF line;       ///< Kind::Line
    QRectF rectangle;  ///< Kind::Ellipse, or the box of Kind::Text from the font's ascent to its descent
    QPainterPath path; ///< Kind::Path; QPainter converts arcs to paths
    QString text;      ///< Kind::Text, one line
    QFont font;

    QPen pen;
    QBrush brush;
    QTransform transform;
    bool antialiased = false;

    /// All of the above as text. Numbers have 17 digits, so two calls are equal if their descriptions are.
    [[nodiscard]] QString description() const;
};

/// A paint device that records each call and draws nothing.
class RecordingDevice : public QPaintDevice
{
public:
    explicit RecordingDevice(int size = 512);
    ~RecordingDevice() override;

    [[nodiscard]] QPaintEngine *paintEngine() const override;

    [[nodiscard]] const QList<RecordedCall> &calls() const;

protected:
    [[nodiscard]] int metric(PaintDeviceMetric metric) const override;

private:
    int m_size;
    std::unique_ptr<RecordingEngine> m_engine;
};

#endif
