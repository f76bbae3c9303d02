#include "drawnscale.h"

#include "model/gaugefile.h"
#include "render/gaugepainter.h"
#include "support/recordingdevice.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

const QList<QColor> rankColors{Qt::red, Qt::green, Qt::blue};

/// A mark as it should be, or as it was drawn.
struct Mark
{
    double angle = 0.0; ///< degrees clockwise from 12 o'clock
    qsizetype rank = 0; ///< 0: label, 1: minor mark, 2: subminor mark
    QString label;      ///< empty if there is none
};

QList<Mark> expectedMarks(const ScaleCurve &curve, const ScaleMarks &marks)
{
    const int parts = marks.minor * marks.subminor;
    QList<Mark> expected;
    for (qsizetype i = 0; i < marks.labels.size(); ++i) {
        const double from = marks.labels.at(i);
        const double number = marks.withoutSign ? std::abs(from) : from;
        expected.append({curve.angle(from), 0, QString::number(number, 'f', marks.decimals)});
        if (i + 1 == marks.labels.size())
            break;
        for (int part = 1; part < parts; ++part) {
            const double value = from + (marks.labels.at(i + 1) - from) * part / parts;
            expected.append({curve.angle(value), part % marks.subminor == 0 ? 1 : 2, {}});
        }
    }
    return expected;
}

/// The direction of a point on the canvas.
double angleOf(QPointF point)
{
    const QPointF offset = point - QPointF(canvasSize / 2.0, canvasSize / 2.0);
    return std::atan2(offset.x(), -offset.y()) * 180.0 / std::numbers::pi;
}

/// Marks a whole turn apart are in the same place.
double distance(double angle, double other)
{
    return std::abs(std::remainder(angle - other, 360.0));
}

QList<RecordedCall> paintedCalls(const gaugeData &layer)
{
    RecordingDevice device;
    QPainter painter(&device);
    paintGauge(painter, canvasSize, {layer});
    painter.end();
    return device.calls();
}

/// Returns the marks in the order in which paintGauge() draws them. The first tick of a layer counts only
/// once where the layer before it ends, too.
QList<Mark> paintedMarks(const QList<gaugeLayer> &layers)
{
    constexpr double samePlace = 1e-6;
    QList<Mark> marks;
    for (const gaugeLayer &layer : layers) {
        bool mayRepeat = layer.data.tickCountSkipFirst;
        for (const RecordedCall &call : paintedCalls(layer.data)) {
            if (call.kind == RecordedCall::Kind::Text)
                marks.last().label += call.text;
            if (call.kind != RecordedCall::Kind::Line)
                continue;
            const Mark mark{angleOf(call.line.p1()), rankColors.indexOf(call.pen.color()), {}};
            const bool isRepeated = std::exchange(mayRepeat, false) && !marks.isEmpty() &&
                                    mark.rank == marks.last().rank &&
                                    distance(mark.angle, marks.last().angle) < samePlace;
            if (!isRepeated)
                marks.append(mark);
        }
    }
    return marks;
}

} // namespace

gaugeData rankedLook()
{
    gaugeData look;
    look.arcAngleLength = {};
    for (size_t ring = 0; ring < 3; ++ring)
        look.divisionColor.at(ring) = rankColors.at(static_cast<qsizetype>(ring));
    return look;
}

QString faultOfDrawnScale(const QList<gaugeLayer> &layers, const ScaleCurve &curve, const ScaleMarks &marks,
                          double maxError)
{
    QList<gaugeLayer> read;
    QString error;
    if (!gaugeFile::read(gaugeFile::write(layers), &read, &error))
        return error;

    const QList<Mark> painted = paintedMarks(read);
    const QList<Mark> expected = expectedMarks(curve, marks);
    constexpr double roundingError = 1e-9;
    for (qsizetype i = 0; i < std::min(painted.size(), expected.size()); ++i) {
        const Mark &mark = painted.at(i);
        const Mark &wanted = expected.at(i);
        if (mark.rank != wanted.rank)
            return u"mark %1 has rank %2 instead of %3"_s.arg(i).arg(mark.rank).arg(wanted.rank);
        if (mark.label != wanted.label)
            return u"mark %1 has the label '%2' instead of '%3'"_s.arg(i).arg(mark.label, wanted.label);
        if (!(distance(mark.angle, wanted.angle) <= maxError + roundingError))
            return u"mark %1 is at %2 instead of %3"_s.arg(i).arg(mark.angle).arg(wanted.angle);
    }
    if (painted.size() != expected.size())
        return u"there are %1 marks instead of %2"_s.arg(painted.size()).arg(expected.size());
    return {};
}
