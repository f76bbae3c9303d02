// The layer list. It has one row for each layer of the preview's stack.

#include "window.h"

#include "render/renderarea.h"

#include <QInputDialog>
#include <QMessageBox>
#include <QSignalBlocker>

#include <algorithm>

void Window::addLayerItem(const QString &name)
{
    auto *item = new QListWidgetItem(name, ui.layerList);
    item->setFlags(item->flags() | Qt::ItemIsEditable);
    item->setData(Qt::UserRole, name);
}

void Window::setLayerItemName(QListWidgetItem *item, const QString &name)
{
    item->setData(Qt::DisplayRole, name);
    item->setData(Qt::UserRole, name);
}

void Window::layerRenamed(QListWidgetItem *item)
{
    if (item == nullptr)
        return;
    const QSignalBlocker blocker(ui.layerList);
    const QString name = item->data(Qt::DisplayRole).toString().trimmed();
    if (name.isEmpty())
        item->setData(Qt::DisplayRole, item->data(Qt::UserRole).toString());
    else
        setLayerItemName(item, name);
}

void Window::layerChanged(QListWidgetItem *current, QListWidgetItem *previous)
{
    renderArea->saveLayerData(ui.layerList->row(previous));
    renderArea->loadLayer(ui.layerList->row(current));
    setActiveGauge();
}

void Window::addLayer()
{
    const QString name =
        QInputDialog::getText(this, tr("New Layer"), tr("Layer name:"), QLineEdit::Normal, QString());
    if (name.isEmpty()) // also empty on cancel
        return;
    // Not blocked: itemChanged() makes layerRenamed() trim the name.
    addLayerItem(name);
    renderArea->layers.append(renderArea->defaultGauge());
    renderArea->manualRedraw();
}

void Window::removeLayer()
{
    if (ui.layerList->count() < 2) {
        QMessageBox::information(this, tr("Remove Layer"), tr("A gauge must have at least one layer."),
                                 QMessageBox::Ok);
        return;
    }
    const int row = ui.layerList->currentRow();
    if (row < 0)
        return;

    // Otherwise layerChanged() would store the working copy of the removed layer in another row.
    ui.layerList->blockSignals(true);
    delete ui.layerList->takeItem(row);
    renderArea->layers.removeAt(row);
    const int newRow = std::min(row, ui.layerList->count() - 1);
    ui.layerList->setCurrentRow(newRow);
    ui.layerList->blockSignals(false);
    showLayer(newRow);
}

void Window::showLayer(int row)
{
    renderArea->loadLayer(row);
    setActiveGauge();
    renderArea->manualRedraw();
}

QList<gaugeLayer> Window::collectLayers() const
{
    renderArea->saveLayerData(ui.layerList->currentRow());
    const QList<gaugeData> &stack = renderArea->layers;
    const qsizetype count = std::min<qsizetype>(ui.layerList->count(), stack.size());
    QList<gaugeLayer> collected;
    collected.reserve(count);
    for (qsizetype row = 0; row < count; ++row) {
        const QListWidgetItem *item = ui.layerList->item(static_cast<int>(row));
        collected.append({item->data(Qt::DisplayRole).toString(), stack.at(row)});
    }
    return collected;
}
