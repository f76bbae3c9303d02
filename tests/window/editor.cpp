#include "editor.h"

#include "dialogs.h"

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

void Editor::addLayer(const QString &name)
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

bool PaintCounter::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Paint)
        ++m_count;
    return QObject::eventFilter(watched, event);
}

namespace {

bool same(double one, double other)
{
    return std::bit_cast<quint64>(one) == std::bit_cast<quint64>(other);
}

bool same(int one, int other)
{
    return one == other;
}

bool same(const QColor &one, const QColor &other)
{
    return one == other;
}

bool same(const QFont &one, const QFont &other)
{
    return one.family() == other.family() && one.pointSize() == other.pointSize() &&
           one.bold() == other.bold() && one.italic() == other.italic();
}

template <typename Value>
void note(QStringList &differing, QLatin1StringView name, const Value &one, const Value &other)
{
    if (!same(one, other))
        differing.append(name.toString());
}

template <typename Value, size_t Count>
void note(QStringList &differing, QLatin1StringView name, const std::array<Value, Count> &one,
          const std::array<Value, Count> &other)
{
    for (size_t index = 0; index < Count; ++index) {
        if (!same(one.at(index), other.at(index)))
            differing.append(u"%1[%2]"_s.arg(name).arg(index));
    }
}

} // namespace

QStringList differingFields(const gaugeData &one, const gaugeData &other)
{
    QStringList differing;
    note(differing, "startAngle"_L1, one.startAngle, other.startAngle);
    note(differing, "angleLength"_L1, one.angleLength, other.angleLength);
    note(differing, "bias"_L1, one.bias, other.bias);
    note(differing, "midpointBias"_L1, one.midpointBias, other.midpointBias);
    note(differing, "roundedTickCaps"_L1, one.roundedTickCaps, other.roundedTickCaps);
    note(differing, "divisionCount"_L1, one.divisionCount, other.divisionCount);
    note(differing, "divisionInnerRadius"_L1, one.divisionInnerRadius, other.divisionInnerRadius);
    note(differing, "divisionOuterRadius"_L1, one.divisionOuterRadius, other.divisionOuterRadius);
    note(differing, "divisionLineWidth"_L1, one.divisionLineWidth, other.divisionLineWidth);
    note(differing, "divisionColor"_L1, one.divisionColor, other.divisionColor);
    note(differing, "roundedArcCaps"_L1, one.roundedArcCaps, other.roundedArcCaps);
    note(differing, "arcStartAngle"_L1, one.arcStartAngle, other.arcStartAngle);
    note(differing, "arcAngleLength"_L1, one.arcAngleLength, other.arcAngleLength);
    note(differing, "arcRadius"_L1, one.arcRadius, other.arcRadius);
    note(differing, "arcWidth"_L1, one.arcWidth, other.arcWidth);
    note(differing, "arcColor"_L1, one.arcColor, other.arcColor);
    note(differing, "tickCountEnabled"_L1, one.tickCountEnabled, other.tickCountEnabled);
    note(differing, "tickCountStart"_L1, one.tickCountStart, other.tickCountStart);
    note(differing, "tickCountIncrement"_L1, one.tickCountIncrement, other.tickCountIncrement);
    note(differing, "tickCountDecimalPlaces"_L1, one.tickCountDecimalPlaces, other.tickCountDecimalPlaces);
    note(differing, "tickCountRadius"_L1, one.tickCountRadius, other.tickCountRadius);
    note(differing, "tickCountRotate"_L1, one.tickCountRotate, other.tickCountRotate);
    note(differing, "tickCountSkipFirst"_L1, one.tickCountSkipFirst, other.tickCountSkipFirst);
    note(differing, "tickCountFont"_L1, one.tickCountFont, other.tickCountFont);
    note(differing, "tickCountColor"_L1, one.tickCountColor, other.tickCountColor);
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
