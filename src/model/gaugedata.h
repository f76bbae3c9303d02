#ifndef GAUGEDATA_H
#define GAUGEDATA_H

#include <QColor>
#include <QFont>
#include <QJsonObject>
#include <QString>

#include <array>

/// The parameters of one layer of a gauge face: a plain value, copied freely.
///
/// Angles are degrees; those of the sweep and of the arcs are measured clockwise from 12 o'clock. Radii are
/// fractions of the face radius, which is 250 units of the 512-unit canvas. Widths are pen widths in canvas
/// units, where 0 is a line of one device pixel at every size. Nothing is validated: a record takes whatever
/// it is given, and whoever reads it must cope with every int and double.
///
/// Index 0 of an array is the ring or the arc with the number 1.
struct gaugeData
{
    double startAngle = 0.0;
    double angleLength = 120.0;
    double bias = 0.5;         ///< How the marks crowd along the sweep, 0 to 1; 0.5 is even.
    bool midpointBias = false; ///< The curve of the bias: false is "Exponential", true is "Midpoint".
    bool roundedTickCaps = false;

    std::array<int, 3> divisionCount{4, 1, 1};
    std::array<double, 3> divisionInnerRadius{0.8, 0.9, 0.95};
    std::array<double, 3> divisionOuterRadius{1.0, 1.0, 1.0};
    std::array<double, 3> divisionLineWidth{0.0, 0.0, 0.0};
    std::array<QColor, 3> divisionColor{Qt::white, Qt::white, Qt::white};

    bool roundedArcCaps = false;
    std::array<double, 4> arcStartAngle{0.0, 0.0, 0.0, 0.0};
    std::array<double, 4> arcAngleLength{120.0, 0.0, 0.0, 0.0};
    std::array<double, 4> arcRadius{1.0, 1.0, 1.0, 1.0};
    std::array<double, 4> arcWidth{0.0, 0.0, 0.0, 0.0};
    std::array<QColor, 4> arcColor{Qt::green, Qt::yellow, Qt::red, Qt::white};

    bool tickCountEnabled = true;
    double tickCountStart = 0.0;
    double tickCountIncrement = 1.0;
    int tickCountDecimalPlaces = 0;
    double tickCountRadius = 0.74;
    bool tickCountRotate = false;
    bool tickCountSkipFirst = false;
    QFont tickCountFont{QStringLiteral("Sans Serif"), 10};
    QColor tickCountColor = Qt::white;

    /// True when the record is written as the defaults are. What the JSON form does not carry (the alpha of a
    /// colour, font attributes beyond family, size, bold and italic) does not count.
    [[nodiscard]] bool isDefault() const;

    /// The record as a JSON object: "gauge", "divisions", "arcs" and "ticks". Colours lose their alpha, font
    /// weights become bold or not; numbers that JSON cannot hold become null.
    [[nodiscard]] QJsonObject toJson() const;

    /// Overwrites, in place, the fields that @a json carries. A missing value, or one of another type, leaves
    /// its field alone, but for "bold" and "italic", whose absence clears them.
    void fromJson(const QJsonObject &json);

    /// The record as one line of comma-separated fields, the form of earlier versions. Numbers keep six
    /// significant digits, colours lose their alpha.
    [[nodiscard]] QString toQString() const;

    /// Fills the record from the form of earlier versions. Returns false, and changes nothing, when there are
    /// fewer than 50 fields. Text that is not a number counts as 0, a colour that names none becomes invalid.
    bool fromQString(const QString &text);
};

/// A layer as the layer list and gauge files hold it.
struct gaugeLayer
{
    QString name;
    gaugeData data;
};

#endif
