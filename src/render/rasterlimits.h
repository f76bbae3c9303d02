#ifndef RASTERLIMITS_H
#define RASTERLIMITS_H

class QPainter;

/// Limits the lines and arcs that are passed to Qt's raster paint engine. All values are in canvas units.
///
/// The raster engine processes the outline of a wide line row by row, however far outside the image it is. At
/// a radius of tens of thousands of units, which only a damaged file has, it needs seconds for each line. The
/// limits cut off parts that are outside the canvas: division lines keep their direction and arcs keep their
/// visible edge, so the image does not change. Values for other paint engines are not changed.
class RasterLimits
{
public:
    explicit RasterLimits(const QPainter &painter);

    /// Returns the limited distance of a line end from the centre.
    [[nodiscard]] double radius(double radius) const;

    /// Returns the limited width of a line.
    [[nodiscard]] double width(double width) const;

    struct Arc
    {
        double radius;
        double width;
    };
    /// Returns the limited radius and width of an arc. Both change together, so that the band between the
    /// arc's edges is cut off and not moved. The inner edge of a very wide arc is beyond the centre.
    [[nodiscard]] Arc arc(double radius, double width) const;

private:
    bool m_limited;
};

#endif
