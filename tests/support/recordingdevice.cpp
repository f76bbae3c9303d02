#include "support/recordingdevice.h"

#include <QDebug>
#include <QPaintEngine>

QString RecordedCall::description() const
{
    QString all;
    QDebug(&all).nospace() << qSetRealNumberPrecision(17) << int(kind) << line << rectangle << path << text
                           << font << pen << brush << transform << antialiased;
    return all;
}

/// Has all features, so that QPainter does not convert calls.
class RecordingEngine : public QPaintEngine
{
public:
    RecordingEngine()
        : QPaintEngine(AllFeatures)
    {
    }

    bool begin(QPaintDevice * /*device*/) override { return true; }
    bool end() override { return true; }
    [[nodiscard]] Type type() const override { return User; }

    void updateState(const QPaintEngineState &newState) override
    {
        const DirtyFlags changed = newState.state();
        if ((changed & DirtyPen) != 0)
            m_state.pen = newState.pen();
        if ((changed & DirtyBrush) != 0)
            m_state.brush = newState.brush();
        if ((changed & DirtyTransform) != 0)
            m_state.transform = newState.transform();
        if ((changed & DirtyHints) != 0)
            m_state.antialiased = (newState.renderHints() & QPainter::Antialiasing) != 0;
    }

    void drawLines(const QLineF *lines, int count) override
    {
        for (int i = 0; i < count; ++i)
            add(RecordedCall::Kind::Line).line = lines[i];
    }
    void drawEllipse(const QRectF &rectangle) override
    {
        add(RecordedCall::Kind::Ellipse).rectangle = rectangle;
    }
    void drawPath(const QPainterPath &path) override { add(RecordedCall::Kind::Path).path = path; }
    void drawTextItem(const QPointF &position, const QTextItem &item) override
    {
        RecordedCall &call = add(RecordedCall::Kind::Text);
        call.text = item.text();
        call.rectangle = {position.x(), position.y() - item.ascent(), item.width(),
                          item.ascent() + item.descent()};
        call.font = item.font();
    }
    void drawPixmap(const QRectF & /*target*/, const QPixmap & /*pixmap*/, const QRectF & /*source*/) override
    {
        add(RecordedCall::Kind::Other);
    }

    QList<RecordedCall> recorded;

private:
    RecordedCall &add(RecordedCall::Kind kind)
    {
        RecordedCall &call = recorded.emplaceBack(m_state);
        call.kind = kind;
        return call;
    }

    RecordedCall m_state;
};

RecordingDevice::RecordingDevice(int size)
    : m_size(size)
    , m_engine(std::make_unique<RecordingEngine>())
{
}

RecordingDevice::~RecordingDevice() = default;

QPaintEngine *RecordingDevice::paintEngine() const
{
    return m_engine.get();
}

const QList<RecordedCall> &RecordingDevice::calls() const
{
    return m_engine->recorded;
}

int RecordingDevice::metric(PaintDeviceMetric metric) const
{
    switch (metric) {
    case PdmWidth:
    case PdmHeight:
        return m_size;
    case PdmDpiX:
    case PdmDpiY:
    case PdmPhysicalDpiX:
    case PdmPhysicalDpiY:
        return 96;
    case PdmDevicePixelRatio:
        return 1;
    case PdmDevicePixelRatioScaled:
        return int(devicePixelRatioFScale());
    default:
        return QPaintDevice::metric(metric);
    }
}
