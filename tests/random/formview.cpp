#include "formview.h"

#include "render/renderarea.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QListWidget>
#include <QSpinBox>
#include <QToolButton>

#include <algorithm>
#include <cmath>

namespace {

template <typename T>
T *find(const QWidget &window, const QString &name)
{
    auto *control = window.findChild<T *>(name);
    if (control == nullptr)
        qFatal("There is no control %s.", qPrintable(name));
    return control;
}

/// Whether a spin box shows a value: its nearest within the range, to half a unit of the last decimal.
bool shows(const QDoubleSpinBox &box, double value)
{
    if (std::isnan(value))
        return box.value() >= box.minimum() && box.value() <= box.maximum();
    const double nearest = std::clamp(value, box.minimum(), box.maximum());
    return std::abs(box.value() - nearest) <= 0.5000001 * std::pow(10.0, -box.decimals());
}

QString onOff(bool flag)
{
    return flag ? QStringLiteral("on") : QStringLiteral("off");
}

bool equal(double a, double b)
{
    return a == b || (std::isnan(a) && std::isnan(b));
}

} // namespace

FormView::FormView(const QWidget &window)
    : biasType(find<QComboBox>(window, QStringLiteral("biasTypeComboBox")))
    , fontButton(find<QAbstractButton>(window, QStringLiteral("tickCountFontButton")))
    , layerList(find<QListWidget>(window, QStringLiteral("layerList")))
    , renderArea(window.findChild<RenderArea *>())
{
    const auto number = [&](const QString &name, Group group, auto field) {
        numbers.append({find<QDoubleSpinBox>(window, name), group, field});
    };
    const auto count = [&](const QString &name, Group group, auto field) {
        counts.append({find<QSpinBox>(window, name), group, field});
    };
    const auto flag = [&](const QString &name, Group group, auto field) {
        flags.append({find<QCheckBox>(window, name), group, field});
    };
    const auto color = [&](const QString &name, Group group, auto field) {
        colors.append({find<QToolButton>(window, name), group, field});
    };
    const auto numberAt = [&](const QString &name, Group group, auto array, size_t index) {
        number(name, group,
               [array, index](gaugeData &layer) -> double & { return (layer.*array).at(index); });
    };

    number(QStringLiteral("gaugeStartAngleSpinBox"), Group::Sweep, &gaugeData::startAngle);
    number(QStringLiteral("gaugeAngleLengthSpinBox"), Group::Sweep, &gaugeData::angleLength);
    number(QStringLiteral("gaugeBiasSpinBox"), Group::Sweep, &gaugeData::bias);
    flag(QStringLiteral("roundedTickCapsCheckBox"), Group::Caps, &gaugeData::roundedTickCaps);
    flag(QStringLiteral("roundedArcCapsCheckBox"), Group::Caps, &gaugeData::roundedArcCaps);

    for (size_t i = 0; i < 3; ++i) {
        const auto group = static_cast<Group>(static_cast<size_t>(Group::Ring1) + i);
        const QString name = QStringLiteral("gaugeDivisions%1%2SpinBox").arg(i + 1);
        count(name.arg(QString()), group,
              [i](gaugeData &layer) -> int & { return layer.divisionCount.at(i); });
        numberAt(name.arg(QStringLiteral("InnerRadius")), group, &gaugeData::divisionInnerRadius, i);
        numberAt(name.arg(QStringLiteral("OuterRadius")), group, &gaugeData::divisionOuterRadius, i);
        numberAt(name.arg(QStringLiteral("Width")), group, &gaugeData::divisionLineWidth, i);
        color(QStringLiteral("gaugeDivisions%1ColorButton").arg(i + 1), group,
              [i](gaugeData &layer) -> QColor & { return layer.divisionColor.at(i); });
    }
    for (size_t i = 0; i < 4; ++i) {
        const auto group = static_cast<Group>(static_cast<size_t>(Group::Arc1) + i);
        const QString name = QStringLiteral("arc%1%2SpinBox").arg(i + 1);
        numberAt(name.arg(QStringLiteral("StartAngle")), group, &gaugeData::arcStartAngle, i);
        numberAt(name.arg(QStringLiteral("AngleLength")), group, &gaugeData::arcAngleLength, i);
        numberAt(name.arg(QStringLiteral("Radius")), group, &gaugeData::arcRadius, i);
        numberAt(name.arg(QStringLiteral("Width")), group, &gaugeData::arcWidth, i);
        color(QStringLiteral("arc%1ColorButton").arg(i + 1), group,
              [i](gaugeData &layer) -> QColor & { return layer.arcColor.at(i); });
    }

    number(QStringLiteral("tickCountRadiusSpinBox"), Group::Ticks, &gaugeData::tickCountRadius);
    number(QStringLiteral("tickCountStartSpinBox"), Group::Ticks, &gaugeData::tickCountStart);
    number(QStringLiteral("tickCountIncrementSpinBox"), Group::Ticks, &gaugeData::tickCountIncrement);
    count(QStringLiteral("tickCountDecimalPlacesSpinBox"), Group::Ticks, &gaugeData::tickCountDecimalPlaces);
    flag(QStringLiteral("tickCountCheckBox"), Group::Ticks, &gaugeData::tickCountEnabled);
    flag(QStringLiteral("tickCountRotateCheckBox"), Group::Ticks, &gaugeData::tickCountRotate);
    flag(QStringLiteral("skipFirstTickCheckBox"), Group::Ticks, &gaugeData::tickCountSkipFirst);
    color(QStringLiteral("tickColorButton"), Group::Ticks, &gaugeData::tickCountColor);
}

gaugeData FormView::withGroup(gaugeData layer, Group group) const
{
    for (const auto &bound : numbers) {
        if (bound.group == group)
            bound.field(layer) = bound.control->value();
    }
    for (const auto &bound : counts) {
        if (bound.group == group)
            bound.field(layer) = bound.control->value();
    }
    for (const auto &bound : flags) {
        if (bound.group == group)
            bound.field(layer) = bound.control->isChecked();
    }
    for (const auto &bound : colors) {
        // "background-color: #rrggbb}"
        if (bound.group == group)
            bound.field(layer) = QColor(bound.control->styleSheet().sliced(18, 7));
    }
    if (group == Group::Sweep)
        layer.midpointBias = biasType->currentIndex() == 1;
    if (group == Group::Ticks)
        layer.tickCountFont = fontButton->font();
    return layer;
}

QString FormView::wrongControl(gaugeData layer, bool withFont) const
{
    const auto says = [](const QWidget *control, const QString &shown, const QString &held) {
        return QStringLiteral("%1 shows %2 for %3").arg(control->objectName(), shown, held);
    };
    for (const auto &bound : numbers) {
        const double held = bound.field(layer);
        if (!shows(*bound.control, held))
            return says(bound.control, bound.control->text(), QString::number(held, 'g', 17));
    }
    for (const auto &bound : counts) {
        const int held = bound.field(layer);
        if (bound.control->value() != std::clamp(held, bound.control->minimum(), bound.control->maximum()))
            return says(bound.control, bound.control->text(), QString::number(held));
    }
    for (const auto &bound : flags) {
        if (bound.control->isChecked() != bound.field(layer))
            return says(bound.control, onOff(bound.control->isChecked()), onOff(bound.field(layer)));
    }
    for (const auto &bound : colors) {
        const QString held = bound.field(layer).name();
        if (bound.control->styleSheet() != QStringLiteral("background-color: %1}").arg(held))
            return says(bound.control, bound.control->styleSheet(), held);
    }
    if (biasType->currentIndex() != (layer.midpointBias ? 1 : 0))
        return says(biasType, biasType->currentText(), onOff(layer.midpointBias));
    const QFont shown = fontButton->font();
    // What a font does not say, such as the size that it was refused, a control takes from the application.
    const QFont held = layer.tickCountFont.resolve(QApplication::font(fontButton));
    if (withFont && (shown.family() != held.family() || shown.pointSize() != held.pointSize() ||
                     shown.weight() != held.weight() || shown.style() != held.style()))
        return says(fontButton, shown.toString(), held.toString());
    return {};
}

QString differingField(const gaugeData &a, const gaugeData &b)
{
    const auto same = [](const auto &left, const auto &right) {
        return std::equal(left.begin(), left.end(), right.begin(), equal);
    };
    const std::initializer_list<std::pair<const char *, bool>> fields{
        {"startAngle", equal(a.startAngle, b.startAngle)},
        {"angleLength", equal(a.angleLength, b.angleLength)},
        {"bias", equal(a.bias, b.bias)},
        {"midpointBias", a.midpointBias == b.midpointBias},
        {"roundedTickCaps", a.roundedTickCaps == b.roundedTickCaps},
        {"divisionCount", a.divisionCount == b.divisionCount},
        {"divisionInnerRadius", same(a.divisionInnerRadius, b.divisionInnerRadius)},
        {"divisionOuterRadius", same(a.divisionOuterRadius, b.divisionOuterRadius)},
        {"divisionLineWidth", same(a.divisionLineWidth, b.divisionLineWidth)},
        {"divisionColor", a.divisionColor == b.divisionColor},
        {"roundedArcCaps", a.roundedArcCaps == b.roundedArcCaps},
        {"arcStartAngle", same(a.arcStartAngle, b.arcStartAngle)},
        {"arcAngleLength", same(a.arcAngleLength, b.arcAngleLength)},
        {"arcRadius", same(a.arcRadius, b.arcRadius)},
        {"arcWidth", same(a.arcWidth, b.arcWidth)},
        {"arcColor", a.arcColor == b.arcColor},
        {"tickCountEnabled", a.tickCountEnabled == b.tickCountEnabled},
        {"tickCountStart", equal(a.tickCountStart, b.tickCountStart)},
        {"tickCountIncrement", equal(a.tickCountIncrement, b.tickCountIncrement)},
        {"tickCountDecimalPlaces", a.tickCountDecimalPlaces == b.tickCountDecimalPlaces},
        {"tickCountRadius", equal(a.tickCountRadius, b.tickCountRadius)},
        {"tickCountRotate", a.tickCountRotate == b.tickCountRotate},
        {"tickCountSkipFirst", a.tickCountSkipFirst == b.tickCountSkipFirst},
        {"tickCountFont", a.tickCountFont == b.tickCountFont},
        {"tickCountColor", a.tickCountColor == b.tickCountColor},
    };
    for (const auto &[name, alike] : fields) {
        if (!alike)
            return QLatin1String(name);
    }
    return {};
}
