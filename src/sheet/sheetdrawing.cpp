#include "sheet/sheetdrawing.h"

#include "render/drawingsize.h"
#include "render/gaugepainter.h"
#include "sheet/sheetcaption.h"

#include <QBuffer>
#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <QPdfWriter>

#include <array>

namespace {

constexpr double millimetresPerInch = 25.4;
/// The resolution of the editor's display, at which label fonts are measured on every device.
constexpr int dotsPerInch = 96;
constexpr double thinLine = 0.1;
constexpr double thickLine = 0.2;
constexpr double textHeight = 3.0;

QPen linePen(double width, const QColor &color = Qt::black)
{
    return {QBrush(color), width, Qt::SolidLine, Qt::FlatCap};
}

QPointF atRadius(QPointF centre, double radius, QPointF direction)
{
    return centre + radius * direction;
}

/// Draws pages with a painter whose unit is a millimetre.
class SheetPainter
{
public:
    SheetPainter(QPainter &painter, const Sheet &sheet)
        : m_painter(painter)
        , m_sheet(sheet)
    {
    }

    void paintRule();
    void paintDial(const SheetDial &dial);

private:
    void paintFace(const SheetDial &dial);
    void paintMarks(const SheetDial &dial);
    void paintCross(QPointF centre, double radius);
    void paintHole(const DialHole &hole);
    void paintCropMarks(double side);
    /// Draws a line of text in the middle of a box, as sheetCaption() fits it in.
    void paintText(const QRectF &box, const QString &name, const QString &remarks = QString());

    QPainter &m_painter;
    const Sheet &m_sheet;
};

void SheetPainter::paintText(const QRectF &box, const QString &name, const QString &remarks)
{
    // Metrics of a large font are exact. The painter scales it down.
    constexpr int pixelSize = 1000;
    constexpr double fullScale = textHeight / pixelSize;
    QFont font(QFont(QStringLiteral("Sans Serif")), m_painter.device());
    font.setPixelSize(pixelSize);
    font.setHintingPreference(QFont::PreferNoHinting);
    const QFontMetricsF metrics(font, m_painter.device());
    const SheetCaption caption = sheetCaption(name, remarks, box.width() / fullScale, metrics);
    const QString &line = caption.text;
    const double scale = fullScale * caption.scale;
    const QPointF start(-metrics.horizontalAdvance(line) / 2.0, (metrics.ascent() - metrics.descent()) / 2.0);

    m_painter.save();
    m_painter.translate(box.center());
    m_painter.scale(scale, scale);
    if (m_sheet.embedFonts) {
        m_painter.setPen(Qt::black);
        m_painter.setFont(font);
        m_painter.drawText(start, line);
    } else {
        QPainterPath path;
        path.addText(start, font, line);
        m_painter.fillPath(path, Qt::black);
    }
    m_painter.restore();
}

void SheetPainter::paintRule()
{
    constexpr double centimetre = 10.0;
    constexpr double shortTick = 2.0;
    constexpr double longTick = 3.5;
    const QRectF area = ruleArea(m_sheet.paper);
    const double left = area.center().x() - ruleLength / 2.0;
    const double bottom = area.bottom() - thickLine;
    m_painter.setPen(linePen(thickLine));
    m_painter.drawLine(QPointF(left, bottom), QPointF(left + ruleLength, bottom));
    for (int tick = 0; tick * centimetre <= ruleLength; ++tick) {
        const double x = left + tick * centimetre;
        // The ends cover the corners of the line.
        m_painter.drawLine(QPointF(x, bottom + thickLine / 2.0),
                           QPointF(x, bottom - (tick % 5 == 0 ? longTick : shortTick)));
    }
    paintText(area.adjusted(0.0, 0.0, 0.0, -longTick - thickLine),
              QStringLiteral("Print at 100 %. This rule is 100 mm long."));
}

void SheetPainter::paintFace(const SheetDial &dial)
{
    m_painter.save();
    if (dial.mirrored)
        m_painter.scale(-1.0, 1.0);
    const double scale = dial.side / canvasSize;
    m_painter.scale(scale, scale);
    m_painter.translate(-canvasSize / 2.0, -canvasSize / 2.0);
    m_painter.setClipRect(QRectF(0.0, 0.0, canvasSize, canvasSize));
    paintGauge(m_painter, canvasSize, dial.layers, {.textAsPaths = !m_sheet.embedFonts, .hairline = 1.0});
    m_painter.restore();
}

void SheetPainter::paintCross(QPointF centre, double radius)
{
    // Visible on dark and on light faces.
    for (const QPen &pen : {linePen(0.4, Qt::white), linePen(thinLine)}) {
        m_painter.setPen(pen);
        m_painter.drawLine(atRadius(centre, radius, {-1, 0}), atRadius(centre, radius, {1, 0}));
        m_painter.drawLine(atRadius(centre, radius, {0, -1}), atRadius(centre, radius, {0, 1}));
    }
}

void SheetPainter::paintHole(const DialHole &hole)
{
    m_painter.setPen(linePen(thinLine));
    m_painter.setBrush(Qt::white);
    m_painter.drawEllipse(hole.place, hole.diameter / 2.0, hole.diameter / 2.0);
    m_painter.setBrush(Qt::NoBrush);
    paintCross(hole.place, hole.diameter / 4.0);
}

void SheetPainter::paintCropMarks(double side)
{
    m_painter.setPen(linePen(thinLine));
    for (const double x : {-1.0, 1.0}) {
        for (const double y : {-1.0, 1.0}) {
            const QPointF corner(x * side / 2.0, y * side / 2.0);
            for (const QPointF &direction : {QPointF(x, 0.0), QPointF(0.0, y)}) {
                m_painter.drawLine(atRadius(corner, cropMarkStart, direction),
                                   atRadius(corner, cropMarkEnd, direction));
            }
        }
    }
}

void SheetPainter::paintMarks(const SheetDial &dial)
{
    const DialMarks &marks = m_sheet.marks;
    m_painter.save();
    if (dial.mirrored)
        m_painter.scale(-1.0, 1.0);
    if (marks.cutCircle) {
        m_painter.setPen(linePen(thinLine));
        m_painter.drawEllipse(QPointF(), dial.diameter / 2.0, dial.diameter / 2.0);
    }
    if (marks.cropMarks)
        paintCropMarks(dial.diameter);
    for (const DialHole &hole : marks.holes)
        paintHole(hole);
    if (marks.centreCross)
        paintCross({}, 3.0);
    m_painter.restore();
}

void SheetPainter::paintDial(const SheetDial &dial)
{
    m_painter.save();
    m_painter.translate(dial.place.centre);
    paintFace(dial);
    paintMarks(dial);
    if (m_sheet.marks.caption) {
        QRectF box = dial.bounds;
        box.setTop(box.bottom() - captionHeight);
        paintText(box, dial.name, dial.remarks);
    }
    m_painter.restore();
}

/// Writes spaces over the time at which a PDF was made. The length stays: the file has a table of positions.
void removeTime(QByteArray &pdf)
{
    const qsizetype start = pdf.indexOf("/CreationDate (");
    const qsizetype end = pdf.indexOf(')', start) + 1;
    if (start >= 0 && end > start)
        pdf.replace(start, end - start, QByteArray(end - start, ' '));
}

} // namespace

QByteArray sheetPdf(const Sheet &sheet)
{
    QByteArray pdf;
    QBuffer buffer(&pdf);
    if (!buffer.open(QIODevice::WriteOnly))
        return {};
    QPdfWriter writer(&buffer);
    writer.setTitle(QStringLiteral("Corvalence Dials"));
    writer.setCreator(QStringLiteral("Corvalence"));
    writer.setResolution(dotsPerInch);
    writer.setPageSize(QPageSize(sheet.paper.size, QPageSize::Millimeter, QString(), QPageSize::ExactMatch));
    writer.setPageMargins(QMarginsF());
    QPainter painter;
    if (!painter.begin(&writer))
        return {};
    painter.setRenderHint(QPainter::Antialiasing);
    constexpr double dotsPerMillimetre = dotsPerInch / millimetresPerInch;
    painter.scale(dotsPerMillimetre, dotsPerMillimetre);
    SheetPainter pages(painter, sheet);
    pages.paintRule();
    qsizetype page = 0;
    for (const SheetDial &dial : sheet.dials) {
        for (; page < dial.place.page; ++page) {
            if (!writer.newPage())
                return {};
            pages.paintRule();
        }
        pages.paintDial(dial);
    }
    if (!painter.end())
        return {};
    buffer.close();
    removeTime(pdf);
    return pdf;
}

double sheetPdfSize(const Sheet &sheet)
{
    double size = 0.0;
    for (const SheetDial &dial : sheet.dials)
        size += pdfDrawingSize(dial.layers, !sheet.embedFonts);
    return size;
}
