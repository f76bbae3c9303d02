// Gauge files, presets and the reference picture.

#include "window.h"

#include "model/gaugefile.h"
#include "model/layernames.h"
#include "render/renderarea.h"

#include <QDirIterator>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QImageReader>
#include <QMessageBox>
#include <QPixmap>
#include <QPushButton>
#include <QTextStream>

QString Window::dataDirectory(const QString &path)
{
    return path;
}

QString Window::documentDirectory(const QString &path)
{
    return path;
}

void Window::seedBundledPresets()
{
    // The presets are installed beside the program.
}

QString Window::presetsDirectory() const
{
    return dataDir + QLatin1String("/Presets/");
}

QString Window::askForSaveFile(const QString &title, const QString &filter, const QString &suffix,
                               const QString &directory)
{
    QFileDialog dialog(this, title, QString(), filter);
    dialog.setDefaultSuffix(suffix);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDirectory(directory);
    if (dialog.exec() != QDialog::Accepted)
        return {};
    return dialog.selectedFiles().value(0);
}

void Window::showCannotOpen(const QString &reason)
{
    QMessageBox::information(this, tr("Unable to open file"), reason, QMessageBox::Ok);
}

void Window::saveGauge()
{
    saveLayersToFile(collectLayers(), tr("Save Gauge"), documentDir);
}

void Window::saveLayer()
{
    const QList<gaugeLayer> collected = collectLayers();
    const int row = ui.layerList->currentRow();
    if (row < 0 || row >= collected.size())
        return;
    saveLayersToFile({collected.at(row)}, tr("Save Layer As Preset"), presetsDirectory());
}

void Window::saveLayersToFile(const QList<gaugeLayer> &gaugeLayers, const QString &title,
                              const QString &directory)
{
    if (gaugeLayers.isEmpty())
        return;
    const QString fileName =
        askForSaveFile(title, tr("Gauge file (*.gauge)"), QStringLiteral("gauge"), directory);
    if (fileName.isEmpty())
        return;
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly)) {
        showCannotOpen(file.errorString());
        return;
    }
    QTextStream(&file) << gaugeFile::write(gaugeLayers);
    file.close();
    getPresetsFromFolder();
}

void Window::getPresetsFromFolder()
{
    QStringList paths;
    QDirIterator iterator(presetsDirectory(), QDir::Files);
    while (iterator.hasNext()) {
        const QString path = iterator.next();
        if (path.endsWith(QLatin1String("gauge"), Qt::CaseSensitive))
            paths.append(path);
    }

    ui.presetComboBox->clear();
    for (const QString &path : std::as_const(paths)) {
        const QString fileName = path.section(QLatin1Char('/'), -1);
        // The name is cut at the first dot, so a preset with another dot in its name is listed but cannot be
        // opened.
        ui.presetComboBox->insertItem(ui.presetComboBox->count(), fileName.section(QLatin1Char('.'), 0, 0));
    }
}

void Window::presetChanged()
{
    loadGaugeFile(presetsDirectory() + ui.presetComboBox->currentText() + QLatin1String(".gauge"));
}

void Window::loadGauge()
{
    const QString path =
        QFileDialog::getOpenFileName(this, tr("Load Gauge"), presetsDirectory(), tr("Gauge files (*.gauge)"));
    if (!path.isEmpty())
        loadGaugeFile(path);
}

void Window::loadGaugeFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        showCannotOpen(file.errorString());
        return;
    }
    const QByteArray bytes = file.readAll();
    file.close();

    const QFileInfo info(path);
    QList<gaugeLayer> loaded;
    QString error;
    if (!gaugeFile::read(bytes, &loaded, &error)) {
        QMessageBox warning(QMessageBox::Warning, tr("Unable to load gauge"),
                            tr("%1 could not be read.\n\n%2").arg(info.fileName(), error), QMessageBox::Ok,
                            this);
        warning.setTextFormat(Qt::PlainText); // the file name may hold markup
        warning.exec();
        return;
    }
    applyLoadedLayers(loaded, info.completeBaseName());
}

Window::LoadMode Window::askForLoadMode()
{
    QMessageBox question(this);
    question.setWindowTitle(tr("Load Gauge"));
    question.setIcon(QMessageBox::Question);
    question.setText(tr("The current layer has been modified."));
    question.setInformativeText(
        tr("Add the loaded gauge as new layers, or overwrite the current layer with it?"));
    QPushButton *append = question.addButton(tr("Add As New Layers"), QMessageBox::AcceptRole);
    const QPushButton *overwrite =
        question.addButton(tr("Overwrite Current Layer"), QMessageBox::DestructiveRole);
    question.addButton(QMessageBox::Cancel);
    question.setDefaultButton(append);
    question.exec();
    if (question.clickedButton() == append)
        return LoadMode::Append;
    return question.clickedButton() == overwrite ? LoadMode::Overwrite : LoadMode::Cancel;
}

void Window::applyLoadedLayers(const QList<gaugeLayer> &gaugeLayers, const QString &baseName)
{
    if (gaugeLayers.isEmpty())
        return;
    // A layer that still holds the defaults is overwritten without asking.
    const LoadMode mode = renderArea->workingLayer.isDefault() ? LoadMode::Overwrite : askForLoadMode();
    if (mode == LoadMode::Cancel)
        return;

    // layerChanged() must not run for the rows that change here.
    ui.layerList->blockSignals(true);
    const int activeRow = ui.layerList->currentRow();
    const bool overwrites = mode == LoadMode::Overwrite && activeRow >= 0;
    QList<gaugeLayer> loaded = gaugeLayers;
    nameUnnamedLayers(loaded, baseName, overwrites ? LoadInto::CurrentRow : LoadInto::NewRows,
                      ui.layerList->count());
    const int rowToSelect = overwrites ? activeRow : ui.layerList->count();
    if (overwrites) {
        const gaugeLayer first = loaded.takeFirst();
        renderArea->workingLayer = first.data;
        renderArea->saveLayerData(activeRow);
        setLayerItemName(ui.layerList->item(activeRow), first.name);
    }
    for (const gaugeLayer &layer : std::as_const(loaded)) {
        renderArea->layers.append(layer.data);
        addLayerItem(layer.name);
    }
    ui.layerList->setCurrentRow(rowToSelect);
    ui.layerList->blockSignals(false);
    showLayer(rowToSelect);
}

void Window::loadReference()
{
    const QString path = QFileDialog::getOpenFileName(this, tr("Load Reference Image (512x512)"), documentDir,
                                                      tr("png Files (*.png)"));
    if (path.isEmpty())
        return;
    // QPixmap::load() would take the picture from the pixmap cache, which compares only name, time in seconds
    // and size: the old pixels of a file that was just changed.
    QImageReader reader(path);
    const QPixmap picture = QPixmap::fromImageReader(&reader);
    if (picture.isNull())
        qDebug("Failed to load image.");
    else
        ui.referenceLabel->setPixmap(picture);
}

void Window::clearReference()
{
    ui.referenceLabel->clear();
}
