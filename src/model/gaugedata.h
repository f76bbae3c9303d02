#ifndef GAUGEDATA_H
#define GAUGEDATA_H

#include <QColor>
#include <QFont>
#include <QJsonObject>
#include <QString>

#include <array>

/// The parameters of one layer of a gauge face. A plain value type.
///
/// Angles are in degrees, clockwise from 12 o'clock. Radii are fractions of the face radius, which is 250
/// units of the 512-unit canvas. Line and arc widths are pen widths in canvas units; 0 is one device pixel at
/// every size. No field is validated: code that reads a record must handle every int and double, including
/// NaN and infinity.
///
/// Arrays: index 0 is ring 1 or arc 1.
struct gaugeData
{
    double startAngle = 0.0;
    double angleLength = 120.0;
    double bias = 0.5;         ///< 0 to 1. Below 0.5 the ticks are denser at the start of the sweep.
    bool midpointBias = false; ///< False: exponential bias curve. True: midpoint bias curve.
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

    /// Returns true when toJson() gives the same object as for a default record. Values that are not written
    /// to JSON (alpha, font attributes other than family, size, bold and italic) are not compared.
    [[nodiscard]] bool isDefault() const;

    /// Returns the record as a JSON object with the keys "gauge", "divisions", "arcs" and "ticks". Alpha is
    /// not written. Font weights above QFont::Medium are written as bold. QJsonDocument writes NaN and
    /// infinity as null.
    [[nodiscard]] QJsonObject toJson() const;

    /// Sets the fields that @a json contains. A field keeps its value when its key is missing or has a value
    /// of another type. Exception: a missing "bold" or "italic" is read as false.
    void fromJson(const QJsonObject &json);

    /// Returns the record in the comma-separated format of earlier versions. Numbers are written with six
    /// significant digits, colours without alpha.
    [[nodiscard]] QString toQString() const;

    /// Reads the comma-separated format of earlier versions. Returns false and changes nothing when @a text
    /// has fewer than 50 fields. A field that is not a number is read as 0, one that is not a colour as an
    /// invalid colour.
    bool fromQString(const QString &text);
};

/// A named layer: one row of the layer list, one element of a gauge file.
struct gaugeLayer
{
    QString name;
    gaugeData data;
};

#endif
