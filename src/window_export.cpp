// Exports: PNG, SVG and the keyframe table.

#include "window.h"

#include "render/imageexport.h"
#include "render/renderarea.h"

#include <QFile>
#include <QTextStream>

void Window::savePNG()
{
    const QString fileName =
        askForSaveFile(tr("Save PNG"), tr("PNG file (*.png)"), QStringLiteral("png"), documentDir);
    QFile file(fileName);
    // Write failures are silent by design.
    if (!fileName.isEmpty() && file.open(QIODevice::WriteOnly))
        writePng(file, ui.pngSizeSpinBox->value(), renderArea->layers);
}

void Window::saveSVG()
{
    const QString fileName =
        askForSaveFile(tr("Save SVG"), tr("SVG file (*.svg)"), QStringLiteral("svg"), documentDir);
    QFile file(fileName);
    if (!fileName.isEmpty() && file.open(QIODevice::WriteOnly))
        writeSvg(file, ui.pngSizeSpinBox->value(), renderArea->layers);
}

void Window::saveKeyframes()
{
    const QString fileName =
        askForSaveFile(tr("Save Keyframes CSV"), tr("CSV file (*.csv)"), QStringLiteral("csv"), documentDir);
    if (fileName.isEmpty())
        return;
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly)) {
        showCannotOpen(file.errorString());
        return;
    }
    QTextStream(&file) << keyframeTable(collectLayers());
}
