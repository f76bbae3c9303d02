// The comma-separated format of earlier versions. Fields 0 to 47 have fixed positions. They are followed by
// QFont::toString() of the label font, which contains commas itself, and the label colour.

#include "model/gaugedata.h"

#include <QList>
#include <QStringList>

namespace {

constexpr qsizetype fixedFieldCount = 48;
constexpr qsizetype minFieldCount = fixedFieldCount + 2; // one field of the font and the colour

/// Reads the fixed fields in order.
class FieldReader
{
public:
    explicit FieldReader(const QStringList &fields)
        : m_fields(fields)
    {
    }

    double number() { return next().toDouble(); }
    int integer() { return next().toInt(); }
    bool flag() { return integer() != 0; }
    QColor color() { return QColor::fromString(next()); }

private:
    const QString &next() { return m_fields.at(m_index++); }

    const QStringList &m_fields;
    qsizetype m_index = 0;
};

int toInt(bool flag)
{
    return flag ? 1 : 0;
}

} // namespace

QString gaugeData::toQString() const
{
    // Chained single-argument arg(): the file format depends on its substitution order.
    const QString sweepAndRings =
        QStringLiteral("%1,%2,%3,%4,%5,%6,%7,%8,%9,%10,%11,%12,%13,%14,%15,%16,%17,")
            .arg(startAngle)
            .arg(angleLength)
            .arg(bias)
            .arg(toInt(midpointBias))
            .arg(toInt(roundedTickCaps))
            .arg(divisionCount[0])
            .arg(divisionCount[1])
            .arg(divisionCount[2])
            .arg(divisionInnerRadius[0])
            .arg(divisionInnerRadius[1])
            .arg(divisionInnerRadius[2])
            .arg(divisionOuterRadius[0])
            .arg(divisionOuterRadius[1])
            .arg(divisionOuterRadius[2])
            .arg(divisionLineWidth[0])
            .arg(divisionLineWidth[1])
            .arg(divisionLineWidth[2]);

    const QString ringColorsAndArcs = QStringLiteral("%1,%2,%3,%4,%5,%6,%7,%8,%9,%10,%11,%12,%13,%14,%15,")
                                          .arg(divisionColor[0].name())
                                          .arg(divisionColor[1].name())
                                          .arg(divisionColor[2].name())
                                          .arg(toInt(roundedArcCaps))
                                          .arg(arcStartAngle[0])
                                          .arg(arcStartAngle[1])
                                          .arg(arcStartAngle[2])
                                          .arg(arcStartAngle[3])
                                          .arg(arcAngleLength[0])
                                          .arg(arcAngleLength[1])
                                          .arg(arcAngleLength[2])
                                          .arg(arcAngleLength[3])
                                          .arg(arcRadius[0])
                                          .arg(arcRadius[1])
                                          .arg(arcRadius[2]);

    // tickCountSkipFirst comes before tickCountRotate, unlike in the record.
    const QString arcsAndLabels = QStringLiteral("%1,%2,%3,%4,%5,%6,%7,%8,%9,%10,%11,%12,%13,%14,%15,%16,")
                                      .arg(arcRadius[3])
                                      .arg(arcWidth[0])
                                      .arg(arcWidth[1])
                                      .arg(arcWidth[2])
                                      .arg(arcWidth[3])
                                      .arg(arcColor[0].name())
                                      .arg(arcColor[1].name())
                                      .arg(arcColor[2].name())
                                      .arg(arcColor[3].name())
                                      .arg(toInt(tickCountEnabled))
                                      .arg(tickCountStart)
                                      .arg(tickCountIncrement)
                                      .arg(tickCountDecimalPlaces)
                                      .arg(tickCountRadius)
                                      .arg(toInt(tickCountSkipFirst))
                                      .arg(toInt(tickCountRotate));

    const QString fontAndColor =
        QStringLiteral("%1,%2").arg(tickCountFont.toString()).arg(tickCountColor.name());

    return sweepAndRings + ringColorsAndArcs + arcsAndLabels + fontAndColor;
}

bool gaugeData::fromQString(const QString &text)
{
    const QStringList fields = text.split(QLatin1Char(','), Qt::KeepEmptyParts, Qt::CaseSensitive);
    if (fields.size() < minFieldCount)
        return false;

    FieldReader reader(fields);
    startAngle = reader.number();
    angleLength = reader.number();
    bias = reader.number();
    midpointBias = reader.flag();
    roundedTickCaps = reader.flag();
    for (int &count : divisionCount)
        count = reader.integer();
    for (auto *numbers : {&divisionInnerRadius, &divisionOuterRadius, &divisionLineWidth}) {
        for (double &number : *numbers)
            number = reader.number();
    }
    for (QColor &color : divisionColor)
        color = reader.color();
    roundedArcCaps = reader.flag();
    for (auto *numbers : {&arcStartAngle, &arcAngleLength, &arcRadius, &arcWidth}) {
        for (double &number : *numbers)
            number = reader.number();
    }
    for (QColor &color : arcColor)
        color = reader.color();
    tickCountEnabled = reader.flag();
    tickCountStart = reader.number();
    tickCountIncrement = reader.number();
    tickCountDecimalPlaces = reader.integer();
    tickCountRadius = reader.number();
    tickCountSkipFirst = reader.flag();
    tickCountRotate = reader.flag();

    tickCountColor = QColor::fromString(fields.last());
    const QStringList fontFields = fields.sliced(fixedFieldCount, fields.size() - fixedFieldCount - 1);
    if (!tickCountFont.fromString(fontFields.join(QLatin1Char(','))))
        tickCountFont = QFont(fields.at(fixedFieldCount), fields.at(fixedFieldCount + 1).toInt());
    return true;
}
