#include "support/editor.h"

#include "support/dialogs.h"

#include <QColorDialog>
#include <QFontDialog>
#include <QInputDialog>
#include <QLabel>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// Clicks a button and answers its dialog.
template <typename Dialog>
void answerDialog(QAbstractButton &button, std::function<void(Dialog &)> answer)
{
    DialogAnswers answers;
    answers.expect<Dialog>([answer](Dialog &dialog) {
        answer(dialog);
        dialog.accept();
    });
    button.click();
    if (!answers.problems().isEmpty())
        qFatal("%s: %s", qPrintable(button.objectName()), qPrintable(answers.problems().join(u"; "_s)));
}

} // namespace

QListWidget *Editor::layerList() const
{
    return control<QListWidget>("layerList"_L1);
}

QStringList Editor::layerNames() const
{
    QStringList names;
    for (int row = 0; row < layerList()->count(); ++row)
        names.append(layerList()->item(row)->text());
    return names;
}

void Editor::call(const char *slot)
{
    if (!QMetaObject::invokeMethod(&window, slot))
        qFatal("The window has no slot \"%s\".", slot);
}

void Editor::press(const QString &button) const
{
    control<QAbstractButton>(button)->click();
}

void Editor::addLayer(const QString &name) const
{
    answerDialog<QInputDialog>(*control<QPushButton>("AddLayerButton"_L1),
                               [name](QInputDialog &dialog) { dialog.setTextValue(name); });
}

void Editor::edit(const GaugeField &field, const QVariant &value) const
{
    auto *widget = control<QWidget>(field.control);
    if (field.position == GaugeField::insideFont) {
        answerDialog<QFontDialog>(*control<QAbstractButton>(field.control), [&](QFontDialog &dialog) {
            gaugeData layer;
            layer.tickCountFont = dialog.currentFont();
            field.set(layer, value);
            dialog.setCurrentFont(layer.tickCountFont);
        });
    } else if (auto *number = qobject_cast<QDoubleSpinBox *>(widget)) {
        number->setValue(value.toDouble());
    } else if (auto *integer = qobject_cast<QSpinBox *>(widget)) {
        integer->setValue(value.toInt());
    } else if (auto *biasType = qobject_cast<QComboBox *>(widget)) {
        QTest::keyClick(biasType, value.toBool() ? Qt::Key_Down : Qt::Key_Up);
    } else if (auto *check = qobject_cast<QCheckBox *>(widget)) {
        if (check->isChecked() != value.toBool())
            check->click();
    } else {
        answerDialog<QColorDialog>(*control<QToolButton>(field.control), [&](QColorDialog &dialog) {
            dialog.setCurrentColor(value.value<QColor>());
        });
    }
}

gaugeData Editor::shownLayer() const
{
    gaugeData layer;
    for (const GaugeField &field : gaugeFields()) {
        auto *widget = control<QWidget>(field.control);
        if (field.position == GaugeField::insideFont) {
            gaugeData shown;
            shown.tickCountFont = widget->font();
            field.set(layer, field.get(shown));
        } else if (const auto *biasType = qobject_cast<QComboBox *>(widget)) {
            field.set(layer, biasType->currentIndex() == 1);
        } else if (const auto *check = qobject_cast<QCheckBox *>(widget)) {
            field.set(layer, check->isChecked());
        } else if (field.kind == GaugeField::Color) {
            const QColor color(widget->styleSheet().mid(18, 7));
            const bool isUsual = widget->styleSheet() == u"background-color: %1}"_s.arg(color.name());
            field.set(layer, isUsual ? color : QColor());
        } else {
            field.set(layer, widget->property("value"));
        }
    }
    return layer;
}

void Editor::load(const QString &path, DialogAnswers &answers, const std::function<void()> &expectMore) const
{
    answers.expectFile(path);
    expectMore();
    press(u"loadButton"_s);
}

QList<gaugeLayer> Editor::gauge() const
{
    QList<gaugeLayer> gauge;
    for (const gaugeData &layer : preview()->layers)
        gauge.append({layerNames().value(gauge.size()), layer});
    return gauge;
}

QStringList Editor::differencesFrom(const QList<gaugeLayer> &expected) const
{
    const QList<gaugeLayer> actual = gauge();
    if (actual.size() != expected.size() || layerList()->count() != expected.size())
        return {u"%1 layers, %2 rows"_s.arg(actual.size()).arg(layerList()->count())};
    QStringList differences;
    for (qsizetype i = 0; i < actual.size(); ++i) {
        if (actual.at(i).name != expected.at(i).name)
            differences.append(u"%1: name %2"_s.arg(i).arg(actual.at(i).name));
        for (const QString &field : differingFields(actual.at(i).data, expected.at(i).data))
            differences.append(u"%1: %2"_s.arg(i).arg(field));
    }
    return differences;
}

QStringList Editor::state() const
{
    QStringList state;
    for (const QWidget *widget : window.findChildren<QWidget *>()) {
        if (widget->objectName().isEmpty() || widget->objectName().startsWith("qt_"_L1))
            continue; // a part of a control, which may be created on demand
        for (const char *name : {"value", "decimals", "currentIndex", "currentText", "count", "currentRow",
                                 "checked", "text", "styleSheet", "font"}) {
            const QVariant value = widget->property(name);
            if (value.isValid())
                state.append(
                    u"%1.%2 = %3"_s.arg(widget->objectName(), QLatin1StringView(name), value.toString()));
        }
        if (const auto *label = qobject_cast<const QLabel *>(widget))
            state.append(u"%1: picture %2"_s.arg(label->objectName()).arg(label->pixmap().cacheKey()));
    }
    const auto append = [&state](const QString &name, const gaugeData &layer) {
        const QMap<QByteArray, QVariant> values = valuesOf(layer);
        for (auto value = values.cbegin(); value != values.cend(); ++value)
            state.append(
                u"%1: %2 = %3"_s.arg(name, QString::fromLatin1(value.key()), value.value().toString()));
    };
    for (int row = 0; row < layerList()->count(); ++row) {
        const QListWidgetItem &item = *layerList()->item(row);
        state.append(u"row %1: %2, %3"_s.arg(row).arg(item.text(), item.data(Qt::UserRole).toString()));
    }
    for (const gaugeLayer &layer : gauge())
        append(layer.name, layer.data);
    append(u"working copy"_s, preview()->workingLayer);
    return state;
}

void Editor::show()
{
    window.show();
    if (!QTest::qWaitForWindowExposed(&window))
        qFatal("The window does not come up.");
    QCoreApplication::processEvents();
}

QByteArray slotOf(const GaugeField &field)
{
    if (field.name.endsWith(']')) {
        const char index = static_cast<char>(field.name.at(field.name.size() - 2) + 1);
        return (field.name.startsWith("arc") ? QByteArray("arc") : QByteArray("divisions")) + index +
               "Changed";
    }
    if (field.name.startsWith("rounded"))
        return "capsChanged";
    return field.name.startsWith("tickCount") ? "tickSettingsChanged" : "angleChanged";
}
