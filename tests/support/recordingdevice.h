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
#include <QStringList>
#include <QTransform>

#include <memory>

class RecordingEngine;

/// One thing that a painter drew, with the state it was drawn in. Coordinates are those handed to the
/// painter, before its transform, as doubles.
struct RecordedCall
{
    enum class Kind { Line, Ellipse, Path, Text, Other };

    Kind kind = Kind::Other;
    QLineF line;       ///< Kind::Line
    QRectF rectangle;  ///< Kind::Ellipse
    QPainterPath path; ///< Kind::Path, which is how arcs arrive
    QString text;      ///< Kind::Text, one item a line of text
    QPointF position;  ///< Kind::Text: where its baseline begins
    double textWidth = 0.0;
    double ascent = 0.0; ///< Kind::Text: the rise of its font over the baseline
    double descent = 0.0;
    QFont font;

    QPen pen;
    QBrush brush;
    QTransform transform;
    bool antialiased = false;

    /// Everything above as one line of text, numbers to the last bit: two calls are the same exactly when
    /// their descriptions are. (Qt compares points with a tolerance.)
    [[nodiscard]] QString description() const;
};

/// A paint device that draws nothing and remembers every call that reaches it, in order.
///
/// Text arrives as QPainter lays it out: one item for each line that has something to show, whose position is
/// where its baseline begins, so that centred text has to be judged by the item's width, ascent and descent.
class RecordingDevice : public QPaintDevice
{
public:
    /// A device of @a size by @a size dots at 96 dots per inch.
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

/// A pen in words and exact numbers.
[[nodiscard]] QString penDescription(const QPen &pen);

/// The description of each call.
[[nodiscard]] QStringList descriptions(const QList<RecordedCall> &calls);

#endif
