#include "documents.h"

#include "render/renderarea.h"
#include "support/dialogs.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QCoreApplication>
#include <QDir>
#include <QDoubleSpinBox>
#include <QFile>
#include <QInputDialog>
#include <QJsonDocument>
#include <QLabel>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QSpinBox>

namespace {

QString exactly(double number)
{
    return QString::number(number, 'g', 17);
}

template <typename Value, size_t size>
QString exactly(const std::array<Value, size> &values)
{
    QStringList texts;
    for (const Value &value : values) {
        if constexpr (std::is_same_v<Value, QColor>)
            texts.append(value.isValid() ? value.name(QColor::HexArgb) : QStringLiteral("invalid"));
        else
            texts.append(exactly(value));
    }
    return texts.join(QLatin1Char(' '));
}

/// A record to the last digit, which its JSON form leaves out for alpha and font.
QString exactly(const gaugeData &layer)
{
    return QStringList{
        exactly(std::array{layer.startAngle, layer.angleLength, layer.bias}),
        exactly(std::array<double, 7>{double(layer.midpointBias), double(layer.roundedTickCaps),
                                      double(layer.roundedArcCaps), double(layer.tickCountEnabled),
                                      double(layer.tickCountRotate), double(layer.tickCountSkipFirst),
                                      double(layer.tickCountDecimalPlaces)}),
        exactly(layer.divisionCount),
        exactly(layer.divisionInnerRadius),
        exactly(layer.divisionOuterRadius),
        exactly(layer.divisionLineWidth),
        exactly(layer.divisionColor),
        exactly(layer.arcStartAngle),
        exactly(layer.arcAngleLength),
        exactly(layer.arcRadius),
        exactly(layer.arcWidth),
        exactly(layer.arcColor),
        exactly(std::array{layer.tickCountStart, layer.tickCountIncrement, layer.tickCountRadius}),
        layer.tickCountFont.toString(),
        exactly(std::array{layer.tickCountColor})}
        .join(QLatin1String("; "));
}

QString stateOfControl(const QWidget &widget)
{
    if (const auto *spinBox = qobject_cast<const QDoubleSpinBox *>(&widget))
        return exactly(spinBox->value()) + QLatin1String(" decimals ") + QString::number(spinBox->decimals());
    if (const auto *spinBox = qobject_cast<const QSpinBox *>(&widget))
        return QString::number(spinBox->value());
    if (const auto *comboBox = qobject_cast<const QComboBox *>(&widget)) {
        QStringList items;
        for (int i = 0; i < comboBox->count(); ++i)
            items.append(comboBox->itemText(i));
        return QString::number(comboBox->currentIndex()) + QLatin1String(" of ") +
               items.join(QLatin1Char('|'));
    }
    if (const auto *button = qobject_cast<const QAbstractButton *>(&widget)) {
        return QString::number(int(button->isChecked())) + QLatin1Char(' ') + button->styleSheet() +
               QLatin1Char(' ') + button->font().toString();
    }
    if (const auto *label = qobject_cast<const QLabel *>(&widget))
        return label->text() + QLatin1Char(' ') + QString::number(label->pixmap().cacheKey());
    return {};
}

} // namespace

void press(const QWidget &window, const char *button)
{
    control<QAbstractButton>(window, button)->click();
}

void addLayer(const QWidget &window, DialogAnswers &answers, const QString &name)
{
    answers.expect<QInputDialog>([name](QInputDialog &dialog) {
        dialog.setTextValue(name);
        dialog.accept();
    });
    press(window, "AddLayerButton");
}

void load(const QWidget &window, DialogAnswers &answers, const QString &path,
          const std::function<void()> &andThen)
{
    answers.expectFile(path);
    andThen();
    press(window, "loadButton");
}

void expectAndAppend(DialogAnswers &answers)
{
    answers.expect<QMessageBox>([](QMessageBox &box) { box.findChildren<QPushButton *>().first()->click(); });
}

QStringList stateOf(const QWidget &window)
{
    QStringList state{window.windowTitle()};
    const auto widgets = window.findChildren<QWidget *>();
    for (const QWidget *widget : widgets) {
        const QString text = stateOfControl(*widget);
        if (!text.isEmpty())
            state.append(widget->objectName() + QLatin1String(": ") + text);
    }
    const auto *list = control<QListWidget>(window, "layerList");
    state.append(QStringLiteral("row %1").arg(list->currentRow()));
    for (int row = 0; row < list->count(); ++row) {
        const QListWidgetItem *item = list->item(row);
        state.append(QStringLiteral("%1|%2|%3|%4")
                         .arg(item->text(), item->data(Qt::UserRole).toString())
                         .arg(item->flags().toInt())
                         .arg(int(item->isSelected())));
    }
    const auto *preview = window.findChild<RenderArea *>();
    for (const gaugeData &layer : preview->layers)
        state.append(QLatin1String("layer ") + exactly(layer));
    state.append(QLatin1String("working copy ") + exactly(preview->workingLayer));
    return state;
}

QList<gaugeLayer> gaugeOf(const QWidget &window)
{
    const auto *list = control<QListWidget>(window, "layerList");
    const auto *preview = window.findChild<RenderArea *>();
    QList<gaugeLayer> layers;
    for (int row = 0; row < list->count() || row < preview->layers.size(); ++row) {
        layers.append({row < list->count() ? list->item(row)->text() : QStringLiteral("(no row)"),
                       preview->layers.value(row)});
    }
    return layers;
}

QStringList linesOf(const QList<gaugeLayer> &layers)
{
    QStringList lines;
    for (const gaugeLayer &layer : layers) {
        lines.append(layer.name + QLatin1Char(' ') +
                     QString::fromUtf8(QJsonDocument(layer.data.toJson()).toJson(QJsonDocument::Compact)));
    }
    return lines;
}

gaugeData sampleLayer(int number)
{
    // Hundredths, which every control can show and every text form can hold.
    const auto hundredths = [number](int base) { return (base + number) / 100.0; };
    gaugeData layer;
    layer.startAngle = hundredths(3000);
    layer.angleLength = hundredths(20000);
    layer.bias = hundredths(25);
    layer.midpointBias = true;
    layer.roundedTickCaps = true;
    layer.roundedArcCaps = true;
    for (size_t ring = 0; ring < layer.divisionCount.size(); ++ring) {
        layer.divisionCount.at(ring) = 5 + number + int(ring);
        layer.divisionInnerRadius.at(ring) = hundredths(40);
        layer.divisionOuterRadius.at(ring) = hundredths(60);
        layer.divisionLineWidth.at(ring) = hundredths(200);
        layer.divisionColor.at(ring) = QColor(10 + number, 20, 30 + int(ring));
    }
    for (size_t arc = 0; arc < layer.arcRadius.size(); ++arc) {
        layer.arcStartAngle.at(arc) = hundredths(1500);
        layer.arcAngleLength.at(arc) = hundredths(4500);
        layer.arcRadius.at(arc) = hundredths(50);
        layer.arcWidth.at(arc) = hundredths(300);
        layer.arcColor.at(arc) = QColor(40 + number, 50, 60 + int(arc));
    }
    layer.tickCountEnabled = false;
    layer.tickCountStart = 10 + number;
    layer.tickCountIncrement = 20 + number;
    layer.tickCountDecimalPlaces = 2;
    layer.tickCountRadius = hundredths(62);
    layer.tickCountRotate = true;
    layer.tickCountSkipFirst = true;
    layer.tickCountFont = QFont(QStringLiteral("Serif"), 14 + number, QFont::Bold, true);
    layer.tickCountColor = QColor(70 + number, 80, 90);
    return layer;
}

bool writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

PresetsFolder::PresetsFolder()
{
    if (!QDir().mkpath(path()))
        qFatal("The presets folder cannot be made.");
}

PresetsFolder::~PresetsFolder()
{
    QDir(path()).removeRecursively();
}

QString PresetsFolder::path()
{
    return QCoreApplication::applicationDirPath() + QLatin1String("/Presets");
}

QString PresetsFolder::filePath(const QString &fileName)
{
    return path() + QLatin1Char('/') + fileName;
}
