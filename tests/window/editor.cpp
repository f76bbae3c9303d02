#include "editor.h"

#include "support/dialogs.h"

#include <QInputDialog>
#include <QTest>

#include <bit>

using namespace Qt::StringLiterals;

QListWidget *Editor::layerList() const
{
    return control<QListWidget>("layerList"_L1);
}

void Editor::call(const char *slot)
{
    if (!QMetaObject::invokeMethod(&window, slot))
        qFatal("The window has no slot \"%s\".", slot);
}

void Editor::addLayer(const QString &name) const
{
    DialogAnswers answers;
    answers.expect<QInputDialog>([name](QInputDialog &dialog) {
        dialog.setTextValue(name);
        dialog.accept();
    });
    control<QPushButton>("AddLayerButton"_L1)->click();
    if (!answers.problems().isEmpty())
        qFatal("No layer was added: %s", qPrintable(answers.problems().join(u"; "_s)));
}

void Editor::show()
{
    window.show();
    if (!QTest::qWaitForWindowExposed(&window))
        qFatal("The window does not come up.");
    QCoreApplication::processEvents();
}

QStringList boundControls()
{
    QStringList names{u"gaugeStartAngleSpinBox"_s, u"gaugeAngleLengthSpinBox"_s, u"gaugeBiasSpinBox"_s,
                      u"biasTypeComboBox"_s, u"roundedTickCapsCheckBox"_s};
    for (int ring = 1; ring <= 3; ++ring) {
        for (const auto control : {"SpinBox"_L1, "InnerRadiusSpinBox"_L1, "OuterRadiusSpinBox"_L1,
                                   "WidthSpinBox"_L1, "ColorButton"_L1})
            names.append(u"gaugeDivisions%1%2"_s.arg(ring).arg(control));
    }
    names.append(u"roundedArcCapsCheckBox"_s);
    for (int arc = 1; arc <= 4; ++arc) {
        for (const auto control : {"StartAngleSpinBox"_L1, "AngleLengthSpinBox"_L1, "RadiusSpinBox"_L1,
                                   "WidthSpinBox"_L1, "ColorButton"_L1})
            names.append(u"arc%1%2"_s.arg(arc).arg(control));
    }
    names += {u"tickCountRadiusSpinBox"_s,  u"tickCountDecimalPlacesSpinBox"_s,
              u"tickCountStartSpinBox"_s,   u"tickCountIncrementSpinBox"_s,
              u"tickCountFontButton"_s,     u"tickColorButton"_s,
              u"tickCountRotateCheckBox"_s, u"tickCountCheckBox"_s,
              u"skipFirstTickCheckBox"_s};
    return names;
}

bool PaintCounter::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Paint)
        ++m_count;
    return QObject::eventFilter(watched, event);
}

namespace {

QVariant written(const QFont &font)
{
    return QVariantList{font.family(), font.pointSize(), font.bold(), font.italic()};
}

template <typename Value>
QVariant written(const Value &value)
{
    return QVariant::fromValue(value);
}

template <typename Value>
void addField(QVariantMap &fields, QLatin1StringView name, const Value &value)
{
    fields.insert(name.toString(), written(value));
}

template <typename Value, size_t Count>
void addField(QVariantMap &fields, QLatin1StringView name, const std::array<Value, Count> &values)
{
    for (size_t index = 0; index < Count; ++index)
        fields.insert(u"%1[%2]"_s.arg(name).arg(index), written(values.at(index)));
}

bool same(const QVariant &one, const QVariant &other)
{
    if (one.metaType() != QMetaType::fromType<double>())
        return one == other;
    // So that what is not a number equals itself, and the two zeros differ.
    return std::bit_cast<quint64>(one.toDouble()) == std::bit_cast<quint64>(other.toDouble());
}

} // namespace

QVariantMap fieldsOf(const gaugeData &layer)
{
    QVariantMap fields;
    addField(fields, "startAngle"_L1, layer.startAngle);
    addField(fields, "angleLength"_L1, layer.angleLength);
    addField(fields, "bias"_L1, layer.bias);
    addField(fields, "midpointBias"_L1, layer.midpointBias);
    addField(fields, "roundedTickCaps"_L1, layer.roundedTickCaps);
    addField(fields, "divisionCount"_L1, layer.divisionCount);
    addField(fields, "divisionInnerRadius"_L1, layer.divisionInnerRadius);
    addField(fields, "divisionOuterRadius"_L1, layer.divisionOuterRadius);
    addField(fields, "divisionLineWidth"_L1, layer.divisionLineWidth);
    addField(fields, "divisionColor"_L1, layer.divisionColor);
    addField(fields, "roundedArcCaps"_L1, layer.roundedArcCaps);
    addField(fields, "arcStartAngle"_L1, layer.arcStartAngle);
    addField(fields, "arcAngleLength"_L1, layer.arcAngleLength);
    addField(fields, "arcRadius"_L1, layer.arcRadius);
    addField(fields, "arcWidth"_L1, layer.arcWidth);
    addField(fields, "arcColor"_L1, layer.arcColor);
    addField(fields, "tickCountEnabled"_L1, layer.tickCountEnabled);
    addField(fields, "tickCountStart"_L1, layer.tickCountStart);
    addField(fields, "tickCountIncrement"_L1, layer.tickCountIncrement);
    addField(fields, "tickCountDecimalPlaces"_L1, layer.tickCountDecimalPlaces);
    addField(fields, "tickCountRadius"_L1, layer.tickCountRadius);
    addField(fields, "tickCountRotate"_L1, layer.tickCountRotate);
    addField(fields, "tickCountSkipFirst"_L1, layer.tickCountSkipFirst);
    addField(fields, "tickCountFont"_L1, layer.tickCountFont);
    addField(fields, "tickCountColor"_L1, layer.tickCountColor);
    return fields;
}

QStringList differingFields(const gaugeData &one, const gaugeData &other)
{
    const QVariantMap fields = fieldsOf(one);
    const QVariantMap otherFields = fieldsOf(other);
    QStringList differing;
    for (auto field = fields.begin(); field != fields.end(); ++field) {
        if (!same(field.value(), otherFields.value(field.key())))
            differing.append(field.key());
    }
    return differing;
}

gaugeData unusualLayer(int variant)
{
    const double step = variant;
    gaugeData layer;
    layer.startAngle = -135.25 + step;
    layer.angleLength = 270.5 + step;
    layer.bias = 0.25;
    layer.midpointBias = true;
    layer.roundedTickCaps = true;
    layer.divisionCount = {9 + variant, 5 + variant, 2 + variant};
    layer.divisionInnerRadius = {0.701, 0.702, 0.703};
    layer.divisionOuterRadius = {0.901, 0.902, 0.903};
    layer.divisionLineWidth = {4.5 + step, 3.25 + step, 2.125 + step};
    layer.divisionColor = {QColor(1, 2, 3 + variant), QColor(4, 5, 6), QColor(7, 8, 9)};
    layer.roundedArcCaps = true;
    layer.arcStartAngle = {-10.5, 20.25, -30.75, 40.0 + step};
    layer.arcAngleLength = {11.125, 22.25, 33.375, 44.5};
    layer.arcRadius = {0.501, 0.502, 0.503, 0.504};
    layer.arcWidth = {5.5, 6.5, 7.5, 8.5};
    layer.arcColor = {QColor(11, 12, 13), QColor(14, 15, 16), QColor(17, 18, 19), QColor(20, 21, 22)};
    layer.tickCountEnabled = false;
    layer.tickCountStart = -0.125;
    layer.tickCountIncrement = 12.375 + step;
    layer.tickCountDecimalPlaces = 3;
    layer.tickCountRadius = 0.611;
    layer.tickCountRotate = true;
    layer.tickCountSkipFirst = true;
    layer.tickCountFont = QFont(u"Monospace"_s, 17);
    layer.tickCountFont.setBold(true);
    layer.tickCountFont.setItalic(true);
    layer.tickCountColor = QColor(31, 32, 33);
    return layer;
}
