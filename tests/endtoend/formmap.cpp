#include "formmap.h"

#include "render/gaugepainter.h"
#include "ui_window.h"

#include <QStyleOptionButton>
#include <QStyleOptionSpinBox>

FormMap::FormMap(QSize size)
{
    Ui_Window form;
    form.setupUi(&m_window);
    form.biasTypeComboBox->addItems({QStringLiteral("Exponential"), QStringLiteral("Midpoint")});
    form.layerList->addItem(QStringLiteral("Layer"));
    auto *preview = new QWidget;
    preview->setObjectName(QStringLiteral("preview"));
    preview->setFixedSize(canvasSize, canvasSize);
    auto *layout = new QGridLayout;
    layout->addWidget(preview, 0, 0, Qt::AlignCenter);
    form.RenderBox->setLayout(layout);
    m_window.setAttribute(Qt::WA_DontShowOnScreen);
    m_window.resize(size);
    m_window.show();
}

QWidget *FormMap::find(const char *control) const
{
    auto *found = m_window.findChild<QWidget *>(QLatin1String(control));
    if (found == nullptr)
        qFatal("There is no control %s.", control);
    return found;
}

QRect FormMap::rect(const char *control) const
{
    const QWidget *widget = find(control);
    return {widget->mapTo(&m_window, QPoint()), widget->size()};
}

QPoint FormMap::target(const char *control) const
{
    const QWidget *widget = find(control);
    const auto *box = qobject_cast<const QCheckBox *>(widget);
    if (box == nullptr)
        return rect(control).center();
    QStyleOptionButton option;
    option.initFrom(box);
    option.text = box->text();
    const QRect clickable = box->style()->subElementRect(QStyle::SE_CheckBoxClickRect, &option, box);
    return box->mapTo(&m_window, clickable.center());
}

QPoint FormMap::upArrow(const char *spinBox) const
{
    const QWidget *box = find(spinBox);
    QStyleOptionSpinBox option;
    option.initFrom(box);
    option.frame = true;
    const QRect arrow = box->style()->subControlRect(QStyle::CC_SpinBox, &option, QStyle::SC_SpinBoxUp, box);
    return box->mapTo(&m_window, arrow.center());
}

QPoint FormMap::row(int index) const
{
    const auto *list = qobject_cast<QListWidget *>(find("layerList"));
    const QRect first = list->visualItemRect(list->item(0));
    return list->viewport()->mapTo(&m_window, first.center() + QPoint(0, index * first.height()));
}
