// What the random user does with files.

#include "randomuser.h"

#include "model/gaugefile.h"
#include "render/imageexport.h"
#include "render/keyframes.h"
#include "render/renderarea.h"
#include "window.h"

#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QImage>
#include <QJsonObject>
#include <QLabel>
#include <QMessageBox>
#include <QStringEncoder>
#include <QTest>

namespace {

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// The preview as it stands, on nothing.
QImage preview(RenderArea &area)
{
    QImage image(area.size(), QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    area.render(&image, QPoint(), QRegion(), QWidget::RenderFlags());
    return image;
}

QString withSuffix(const QString &path, const QString &suffix)
{
    return path.endsWith(suffix) ? path : path + suffix;
}

} // namespace

QString RandomUser::previewProblem() const
{
    const bool same = gaugeImage(512, m_form.renderArea->layers) == preview(*m_form.renderArea);
    return same ? QString() : QStringLiteral("the preview is not an export of the stack");
}

void RandomUser::saveGauge()
{
    saveAndCheck("saveButton", pathToSave(QStringLiteral(".gauge")), namedLayers());
}

void RandomUser::saveLayer()
{
    const QString path = m_presets + QStringLiteral("Preset %1").arg(m_random.between(1, 5));
    saveAndCheck("SaveLayerButton", m_random.oneIn(2) ? path : path + QLatin1String(".gauge"),
                 {namedLayers().at(m_row)});
}

void RandomUser::saveAndCheck(const char *button, const QString &path, const QList<gaugeLayer> &layers)
{
    log(QStringLiteral("%1 to %2").arg(QLatin1String(button), path));
    const QString written = withSuffix(path, QStringLiteral(".gauge"));
    const QByteArray before = contents(written);
    const bool accepted = answerFileDialog(path);
    click(button);
    if (contents(written) != (accepted ? gaugeFile::write(layers) : before))
        fail(QStringLiteral("%1 does not hold what was saved").arg(written));
}

void RandomUser::loadGauge()
{
    const QString path = m_random.pick(m_documents);
    log(QStringLiteral("load %1").arg(path));
    const bool accepted = answerFileDialog(path);
    const LoadMode mode = accepted ? expectLoading(path) : LoadMode::Nothing;
    click("loadButton");
    expectLoaded(path, mode);
}

void RandomUser::choosePreset()
{
    auto *box = m_window.findChild<QComboBox *>(QStringLiteral("presetComboBox"));
    if (box->count() == 0)
        return;
    const int row = m_random.between(0, box->count() - 1);
    const QString path = m_presets + box->itemText(row) + QLatin1String(".gauge");
    log(QStringLiteral("choose preset %1").arg(path));
    const LoadMode mode = expectLoading(path);
    chooseFromPopup(*box, row);
    expectLoaded(path, mode);
}

RandomUser::LoadMode RandomUser::expectLoading(const QString &path)
{
    QList<gaugeLayer> layers;
    if (!QFile::exists(path) || !gaugeFile::read(contents(path), &layers, nullptr)) {
        m_dialogs.expectAndCancel<QMessageBox>();
        return LoadMode::Nothing;
    }
    if (activeLayer().isDefault())
        return LoadMode::Overwrite;

    const QString answer =
        m_random.pick(QStringList{QStringLiteral("Add As New Layers"),
                                  QStringLiteral("Overwrite Current Layer"), QStringLiteral("Cancel")});
    log(answer);
    m_dialogs.expect<QMessageBox>([answer](QMessageBox &question) {
        const auto buttons = question.buttons();
        for (QAbstractButton *button : buttons) {
            if (button->text().remove(QLatin1Char('&')) == answer)
                button->click();
        }
    });
    if (answer.startsWith(QLatin1String("Add")))
        return LoadMode::Append;
    return answer == QLatin1String("Cancel") ? LoadMode::Nothing : LoadMode::Overwrite;
}

void RandomUser::expectLoaded(const QString &path, LoadMode mode)
{
    if (mode == LoadMode::Nothing)
        return;
    QList<gaugeLayer> layers;
    gaugeFile::read(contents(path), &layers, nullptr);
    const QString baseName = QFileInfo(path).completeBaseName();
    const bool single = layers.size() == 1;
    if (mode == LoadMode::Overwrite) {
        const gaugeLayer first = layers.takeFirst();
        m_stack[m_row] = first.data;
        m_names[m_row] = first.name.isEmpty() ? baseName : first.name;
    } else {
        m_row = static_cast<int>(m_names.size());
    }
    for (const gaugeLayer &layer : std::as_const(layers)) {
        const QString numbered = QStringLiteral("Layer %1").arg(m_names.size() + 1);
        m_names.append(!layer.name.isEmpty() ? layer.name : (single ? baseName : numbered));
        m_stack.append(layer.data);
    }
    m_fontShown = true;
}

void RandomUser::exportPng()
{
    auto *size = m_window.findChild<QSpinBox *>(QStringLiteral("pngSizeSpinBox"));
    const int side = m_random.oneIn(2) ? 512 : m_random.between(64, 200);
    const QString path = pathToSave(QStringLiteral(".png"));
    log(QStringLiteral("export %1 at %2").arg(path).arg(side));
    type(*size, QString::number(side));
    const bool accepted = answerFileDialog(path);
    click("savePNGButton");
    if (!accepted)
        return;
    const QImage image(withSuffix(path, QStringLiteral(".png")));
    if (image.size() != QSize(side, side))
        fail(QStringLiteral("the picture's size is not the chosen one"));
    else if (side == 512 && image != preview(*m_form.renderArea))
        fail(QStringLiteral("the picture is not the preview"));
}

void RandomUser::exportSvg()
{
    const QString path = pathToSave(QStringLiteral(".svg"));
    log(QStringLiteral("export %1").arg(path));
    QFile::remove(withSuffix(path, QStringLiteral(".svg")));
    const bool accepted = answerFileDialog(path);
    click("saveSVGButton");
    const QByteArray drawing = contents(withSuffix(path, QStringLiteral(".svg")));
    if (accepted ? !drawing.trimmed().endsWith("</svg>") : !drawing.isEmpty())
        fail(QStringLiteral("the drawing is not complete, or was not to be"));
}

void RandomUser::exportKeyframes()
{
    const QString path = pathToSave(QStringLiteral(".csv"));
    log(QStringLiteral("export %1").arg(path));
    QFile::remove(withSuffix(path, QStringLiteral(".csv")));
    const bool accepted = answerFileDialog(path);
    click("saveKeyFrameButton");
    // Not toUtf8(), which writes a lone surrogate, as a layer's name may hold it, as a question mark.
    QStringEncoder utf8(QStringEncoder::Utf8);
    const QByteArray expected = accepted ? utf8(keyframeTable(namedLayers())) : QByteArray();
    if (contents(withSuffix(path, QStringLiteral(".csv"))) != expected)
        fail(QStringLiteral("the table is not that of the layers"));
}

void RandomUser::useReference()
{
    const auto *label = m_window.findChild<QLabel *>(QStringLiteral("referenceLabel"));
    if (m_random.oneIn(3)) {
        log(QStringLiteral("clear the reference"));
        click("clearReferenceButton");
        if (!label->text().isEmpty() || !label->pixmap().isNull())
            fail(QStringLiteral("the reference is not cleared"));
        return;
    }
    const QString path = QDir(m_folder).filePath(QStringLiteral("reference.png"));
    log(QStringLiteral("show a reference"));
    QImage picture(m_random.between(1, 600), m_random.between(1, 600), QImage::Format_RGB32);
    picture.fill(Qt::darkBlue);
    picture.save(path);
    const bool accepted = answerFileDialog(path);
    click("loadReferenceButton");
    if (accepted && label->pixmap().size() != picture.size())
        fail(QStringLiteral("the reference is not shown"));
}

bool RandomUser::answerFileDialog(const QString &path)
{
    if (m_random.oneIn(3)) {
        log(QStringLiteral("... but cancel"));
        m_dialogs.expectAndCancel<QFileDialog>();
        return false;
    }
    m_dialogs.expectFile(path);
    return true;
}

QString RandomUser::pathToSave(const QString &suffix)
{
    const QString path = QDir(m_folder).filePath(QStringLiteral("saved%1").arg(m_random.between(1, 4)));
    return m_random.oneIn(2) ? path : path + suffix;
}

QList<gaugeLayer> RandomUser::namedLayers() const
{
    QList<gaugeLayer> layers;
    for (qsizetype row = 0; row < m_names.size(); ++row)
        layers.append({m_names.at(row), m_stack.at(row)});
    return layers;
}
