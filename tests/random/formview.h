#ifndef FORMVIEW_H
#define FORMVIEW_H

#include "model/gaugedata.h"

#include <QList>

#include <functional>

class QAbstractButton;
class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QListWidget;
class QSpinBox;
class QToolButton;
class QWidget;
class RenderArea;

/// The controls that are read and pushed together.
enum class Group { Sweep, Caps, Ring1, Ring2, Ring3, Arc1, Arc2, Arc3, Arc4, Ticks };

/// The controls of a window, found by their object names, each with the field of the layer that it shows.
class FormView
{
public:
    explicit FormView(const QWidget &window);

    template <typename Control, typename Value>
    struct Bound
    {
        Control *control;
        Group group;
        std::function<Value &(gaugeData &)> field;
    };

    QList<Bound<QDoubleSpinBox, double>> numbers;
    QList<Bound<QSpinBox, int>> counts;
    QList<Bound<QCheckBox, bool>> flags;
    QList<Bound<QToolButton, QColor>> colors;
    QComboBox *biasType;
    QAbstractButton *fontButton;
    QListWidget *layerList;
    RenderArea *renderArea;

    /// What a layer becomes when the group's controls, as they stand, are pushed into it.
    [[nodiscard]] gaugeData withGroup(gaugeData layer, Group group) const;

    /// The first control that does not show the layer, as far as its range and its decimals go. Empty when
    /// all do. The font counts only when @a withFont is set.
    [[nodiscard]] QString wrongControl(gaugeData layer, bool withFont) const;
};

/// The first field in which two layers differ; empty when none does. Two values that are not a number count
/// as equal.
[[nodiscard]] QString differingField(const gaugeData &a, const gaugeData &b);

#endif
