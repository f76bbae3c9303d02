#include "formtext.h"

#include "support/files.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QListWidget>
#include <QMetaProperty>
#include <QPushButton>
#include <QStyle>
#include <QToolButton>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

/// A new widget of the same class if that is one of Classes, otherwise a QWidget.
template <typename... Classes>
std::unique_ptr<QWidget> newWidgetLike(const QWidget &widget)
{
    auto made = std::make_unique<QWidget>();
    (void)((widget.metaObject() == &Classes::staticMetaObject &&
            (made = std::make_unique<Classes>(), true)) ||
           ...);
    return made;
}

QString valueText(const QMetaProperty &property, const QVariant &value)
{
    if (property.isFlagType())
        return QString::fromLatin1(property.enumerator().valueToKeys(value.toInt()));
    if (property.isEnumType())
        return QString::fromLatin1(property.enumerator().valueToKey(value.toInt()));
    if (value.typeId() == QMetaType::QSize)
        return u"%1x%2"_s.arg(value.toSize().width()).arg(value.toSize().height());
    if (value.typeId() == QMetaType::QString)
        return u'"' + value.toString().replace(u'\n', "\\n"_L1) + u'"';
    return value.toString();
}

/// Whether to show a property: it belongs to the form and does not follow from other properties.
bool isDescribed(const QMetaProperty &property)
{
    static const QByteArrayList ofEveryWidget{
        "enabled",   "focusPolicy",    "minimumSize",           "maximumSize",     "windowTitle",
        "toolTip",   "accessibleName", "accessibleDescription", "layoutDirection", "autoFillBackground",
        "styleSheet"};
    static const QByteArrayList derived{"acceptableInput", "cleanText", "count",  "currentText", "frameRect",
                                        "frameWidth",      "icon",      "pixmap", "text"};
    if (property.propertyIndex() < QWidget::staticMetaObject.propertyCount())
        return ofEveryWidget.contains(property.name());
    const QByteArray owner = property.enclosingMetaObject()->className();
    const bool isCaption =
        qstrcmp(property.name(), "text") == 0 && (owner == "QAbstractButton" || owner == "QLabel");
    return isCaption || !derived.contains(property.name());
}

QString describe(const QWidget &widget)
{
    static const QByteArrayList always{"minimum", "maximum", "singleStep", "decimals", "value"};
    const auto fresh = newWidgetLike<QCheckBox, QComboBox, QDoubleSpinBox, QFrame, QGroupBox, QLabel,
                                     QListWidget, QPushButton, QSpinBox, QToolButton>(widget);
    const bool isSpinBox = qobject_cast<const QAbstractSpinBox *>(&widget) != nullptr;
    QStringList parts{widget.objectName() + u": "_s + QLatin1String(widget.metaObject()->className())};
    const QMetaObject &meta = *fresh->metaObject();
    for (int index = 0; index < meta.propertyCount(); ++index) {
        const QMetaProperty property = meta.property(index);
        const QVariant value = property.read(&widget);
        if (isDescribed(property) &&
            (value != property.read(fresh.get()) || (isSpinBox && always.contains(property.name()))))
            parts.append(QLatin1String(property.name()) + u' ' + valueText(property, value));
    }
    if (widget.isWindow())
        parts.append(u"size %1x%2"_s.arg(widget.width()).arg(widget.height()));
    if (const auto *label = qobject_cast<const QLabel *>(&widget);
        label != nullptr && label->buddy() != nullptr)
        parts.append(u"buddy "_s + label->buddy()->objectName());
    if (const auto *box = qobject_cast<const QComboBox *>(&widget)) {
        for (int index = 0; index < box->count(); ++index)
            parts.append(u"item \"%1\""_s.arg(box->itemText(index)));
    }
    if (const auto *list = qobject_cast<const QListWidget *>(&widget)) {
        for (int index = 0; index < list->count(); ++index)
            parts.append(u"item \"%1\""_s.arg(list->item(index)->text()));
    }
    return parts.join(u", "_s);
}

/// A number, or "-" when it is the style's.
QString numberOrStyle(int number, const QWidget &widget, QStyle::PixelMetric metric)
{
    return number == widget.style()->pixelMetric(metric, nullptr, &widget) ? u"-"_s : QString::number(number);
}

QString describe(const QLayout &layout)
{
    QStringList parts{layout.objectName() + u": "_s + QLatin1String(layout.metaObject()->className())};
    const QWidget &owner = *layout.parentWidget();
    const auto margin = [&](int pixels, QStyle::PixelMetric metric) {
        // A layout within another one has no margins of the style.
        return layout.parent()->isWidgetType() ? numberOrStyle(pixels, owner, metric)
                                               : QString::number(pixels);
    };
    const QMargins margins = layout.contentsMargins();
    const QStringList marginTexts{margin(margins.left(), QStyle::PM_LayoutLeftMargin),
                                  margin(margins.top(), QStyle::PM_LayoutTopMargin),
                                  margin(margins.right(), QStyle::PM_LayoutRightMargin),
                                  margin(margins.bottom(), QStyle::PM_LayoutBottomMargin)};
    if (marginTexts.count(u"-"_s) + marginTexts.count(u"0"_s) < 4)
        parts.append(u"margins "_s + marginTexts.join(u' '));

    const auto *grid = qobject_cast<const QGridLayout *>(&layout);
    const int across = grid != nullptr ? grid->horizontalSpacing() : layout.spacing();
    const int down = grid != nullptr ? grid->verticalSpacing() : layout.spacing();
    const QStringList spacings{numberOrStyle(across, owner, QStyle::PM_LayoutHorizontalSpacing),
                               numberOrStyle(down, owner, QStyle::PM_LayoutVerticalSpacing)};
    if (spacings.count(u"-"_s) < 2)
        parts.append(u"spacing "_s + spacings.join(u' '));
    for (int column = 0; grid != nullptr && column < grid->columnCount(); ++column) {
        if (grid->columnStretch(column) != 0)
            parts.append(u"column %1 stretch %2"_s.arg(column).arg(grid->columnStretch(column)));
    }
    for (int row = 0; grid != nullptr && row < grid->rowCount(); ++row) {
        if (grid->rowStretch(row) != 0)
            parts.append(u"row %1 stretch %2"_s.arg(row).arg(grid->rowStretch(row)));
    }
    if (layout.sizeConstraint() != QLayout::SetDefaultConstraint) {
        const auto constraints = QMetaEnum::fromType<QLayout::SizeConstraint>();
        parts.append(QLatin1String(constraints.valueToKey(layout.sizeConstraint())));
    }
    return parts.join(u", "_s);
}

QString cell(const QLayout &layout, int index)
{
    const auto *grid = qobject_cast<const QGridLayout *>(&layout);
    if (grid == nullptr) {
        const auto &box = dynamic_cast<const QBoxLayout &>(layout);
        return box.stretch(index) == 0 ? QString() : u"(stretch %1) "_s.arg(box.stretch(index));
    }
    int row = 0;
    int column = 0;
    int rows = 0;
    int columns = 0;
    grid->getItemPosition(index, &row, &column, &rows, &columns);
    const QString span = rows == 1 && columns == 1 ? QString() : u" %1x%2"_s.arg(rows).arg(columns);
    return u"(%1,%2%3) "_s.arg(row).arg(column).arg(span);
}

void append(QStringList &lines, const QString &indent, const QString &prefix, const QWidget &widget);

void append(QStringList &lines, const QString &indent, const QString &prefix, const QLayout &layout)
{
    lines.append(indent + prefix + describe(layout));
    const QString inside = indent + u"  "_s;
    for (int index = 0; index < layout.count(); ++index) {
        QLayoutItem &item = *layout.itemAt(index);
        QString place = cell(layout, index);
        if (item.alignment() != Qt::Alignment())
            place +=
                QLatin1String(QMetaEnum::fromType<Qt::Alignment>().valueToKeys(int(item.alignment()))) + u' ';
        if (item.widget() != nullptr) {
            append(lines, inside, place, *item.widget());
        } else if (item.layout() != nullptr) {
            append(lines, inside, place, *item.layout());
        } else {
            const auto policies = QMetaEnum::fromType<QSizePolicy::Policy>();
            const QSpacerItem &spacer = *item.spacerItem();
            lines.append(inside + place +
                         u"spacer %1x%2 %3 %4"_s.arg(spacer.sizeHint().width())
                             .arg(spacer.sizeHint().height())
                             .arg(QLatin1String(policies.valueToKey(spacer.sizePolicy().horizontalPolicy())),
                                  QLatin1String(policies.valueToKey(spacer.sizePolicy().verticalPolicy()))));
        }
    }
}

void append(QStringList &lines, const QString &indent, const QString &prefix, const QWidget &widget)
{
    lines.append(indent + prefix + describe(widget));
    // The parts of Qt's own controls are not the form's.
    if (!widget.isWindow() && qobject_cast<const QGroupBox *>(&widget) == nullptr)
        return;
    const QString inside = indent + u"  "_s;
    if (widget.layout() != nullptr)
        append(lines, inside, QString(), *widget.layout());
    const auto layouts = widget.findChildren<QLayout *>();
    const auto children = widget.findChildren<QWidget *>(Qt::FindDirectChildrenOnly);
    for (const QWidget *child : children) {
        const bool isLaidOut = std::any_of(layouts.begin(), layouts.end(), [child](const QLayout *layout) {
            return layout->indexOf(child) >= 0;
        });
        const QRect place = child->geometry();
        if (!isLaidOut)
            append(
                lines, inside,
                u"(at %1,%2 %3x%4) "_s.arg(place.x()).arg(place.y()).arg(place.width()).arg(place.height()),
                *child);
    }
}

} // namespace

QStringList formText(const QWidget &form)
{
    QStringList lines;
    append(lines, QString(), QString(), form);
    return lines;
}

QStringList expectedLines(const QString &fileName)
{
    const QByteArray text = readFile(QStringLiteral(CORVALENCE_SOURCE "/tests/window/") + fileName);
    return QString::fromUtf8(text).trimmed().split(u'\n');
}
