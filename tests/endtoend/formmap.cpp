#include "formmap.h"

#include <QStyleOptionButton>
#include <QStyleOptionSpinBox>

using namespace Qt::StringLiterals;

FormMap::FormMap(QSize size)
{
    m_editor.window.setAttribute(Qt::WA_DontShowOnScreen);
    m_editor.window.resize(size);
    m_editor.window.show();
}

QRect FormMap::rect(const QWidget &widget) const
{
    return {widget.mapTo(&m_editor.window, QPoint()), widget.size()};
}

QPoint FormMap::target(const QString &control) const
{
    const auto &widget = *m_editor.control<QWidget>(control);
    const auto *box = qobject_cast<const QCheckBox *>(&widget);
    if (box == nullptr)
        return rect(widget).center();
    QStyleOptionButton option;
    option.initFrom(box);
    option.text = box->text();
    const QRect clickable = box->style()->subElementRect(QStyle::SE_CheckBoxClickRect, &option, box);
    return box->mapTo(&m_editor.window, clickable.center());
}

QPoint FormMap::upArrow(const QString &spinBox) const
{
    const auto *box = m_editor.control<QAbstractSpinBox>(spinBox);
    QStyleOptionSpinBox option;
    option.initFrom(box);
    option.frame = true;
    const QRect arrow = box->style()->subControlRect(QStyle::CC_SpinBox, &option, QStyle::SC_SpinBoxUp, box);
    return box->mapTo(&m_editor.window, arrow.center());
}

QPoint FormMap::layerRow(int row) const
{
    const QListWidget &list = *m_editor.layerList();
    const QRect first = list.visualItemRect(list.item(0));
    return list.viewport()->mapTo(&m_editor.window, first.center() + QPoint(0, row * first.height()));
}

QRect FormMap::blackPreview() const
{
    return rect(*m_editor.preview()) & rect(*m_editor.control<QLabel>("referenceLabel"_L1));
}
