#include "support/recordingdevice.h"

#include <QPaintEngine>

#include <limits>

namespace {

/// As many digits as tell any two doubles apart.
QString exact(double value)
{
    return QString::number(value, 'g', 17);
}

QString pointDescription(const QPointF &point)
{
    return exact(point.x()) + QLatin1Char(',') + exact(point.y());
}

QString brushDescription(const QBrush &brush)
{
    return QStringLiteral("%1 style %2").arg(brush.color().name(QColor::HexArgb)).arg(brush.style());
}

QString pathDescription(const QPainterPath &path)
{
    QString text = QStringLiteral("path");
    for (int i = 0; i < path.elementCount(); ++i) {
        const QPainterPath::Element element = path.elementAt(i);
        text += QStringLiteral(" %1:").arg(element.type) + pointDescription(element);
    }
    return text;
}

QString transformDescription(const QTransform &transform)
{
    QStringList numbers;
    for (const double number :
         {transform.m11(), transform.m12(), transform.m13(), transform.m21(), transform.m22(),
          transform.m23(), transform.m31(), transform.m32(), transform.m33()})
        numbers.append(exact(number));
    return numbers.join(QLatin1Char(' '));
}

} // namespace

QString penDescription(const QPen &pen)
{
    return QStringLiteral("pen %1 width %2 style %3 cap %4 join %5%6")
        .arg(brushDescription(pen.brush()), exact(pen.widthF()))
        .arg(static_cast<int>(pen.style()))
        .arg(static_cast<int>(pen.capStyle()))
        .arg(static_cast<int>(pen.joinStyle()))
        .arg(pen.isCosmetic() ? QLatin1String(" cosmetic") : QLatin1String());
}

QStringList descriptions(const QList<RecordedCall> &calls)
{
    QStringList found;
    found.reserve(calls.size());
    for (const RecordedCall &call : calls)
        found.append(call.description());
    return found;
}

QString RecordedCall::description() const
{
    QString shape;
    switch (kind) {
    case Kind::Line:
        shape = QStringLiteral("line ") + pointDescription(line.p1()) + QLatin1Char(' ') +
                pointDescription(line.p2());
        break;
    case Kind::Ellipse:
        shape = QStringLiteral("ellipse ") + pointDescription(rectangle.topLeft()) + QLatin1Char(' ') +
                exact(rectangle.width()) + QLatin1Char('x') + exact(rectangle.height());
        break;
    case Kind::Path:
        shape = pathDescription(path);
        break;
    case Kind::Text:
        shape = QStringLiteral("text \"%1\" at ").arg(text) + pointDescription(position) +
                QStringLiteral(" font ") + font.toString();
        break;
    case Kind::Other:
        shape = QStringLiteral("other");
        break;
    }
    return shape + QStringLiteral(" | ") + penDescription(pen) + QStringLiteral(" | brush ") +
           brushDescription(brush) + QStringLiteral(" | transform ") + transformDescription(transform) +
           (antialiased ? QStringLiteral(" | antialiased") : QString());
}

/// Claims to be able to do everything, so that QPainter hands calls on as they are.
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
        call.position = position;
        call.textWidth = item.width();
        call.ascent = item.ascent();
        call.descent = item.descent();
        call.font = item.font();
    }
    void drawPixmap(const QRectF & /*target*/, const QPixmap & /*pixmap*/, const QRectF & /*source*/) override
    {
        add(RecordedCall::Kind::Other);
    }
    void drawPolygon(const QPointF * /*points*/, int /*count*/, PolygonDrawMode /*mode*/) override
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
    constexpr double dotsPerInch = 96.0;
    constexpr double millimetresPerInch = 25.4;
    switch (metric) {
    case PdmWidth:
    case PdmHeight:
        return m_size;
    case PdmWidthMM:
    case PdmHeightMM:
        return qRound(m_size * millimetresPerInch / dotsPerInch);
    case PdmNumColors:
        return std::numeric_limits<int>::max();
    case PdmDepth:
        return 32;
    case PdmDpiX:
    case PdmDpiY:
    case PdmPhysicalDpiX:
    case PdmPhysicalDpiY:
        return qRound(dotsPerInch);
    case PdmDevicePixelRatio:
        return 1;
    case PdmDevicePixelRatioScaled:
        return qRound(devicePixelRatioFScale());
    default:
        return QPaintDevice::metric(metric);
    }
}
