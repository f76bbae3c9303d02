// The random user's actions with files.

#include "randomuser.h"

#include "model/gaugefile.h"
#include "render/keyframes.h"
#include "support/files.h"

#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QImage>
#include <QMessageBox>
#include <QStringEncoder>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QString withSuffix(const QString &path, const QString &suffix)
{
    return path.endsWith(suffix) ? path : path + suffix;
}

} // namespace

void RandomUser::saveGauge()
{
    saveAndCheck("saveButton"_L1, pathToSave(u".gauge"_s), namedLayers());
}

void RandomUser::saveLayer()
{
    const QString path = m_presets + u"Preset %1"_s.arg(m_random.between(1, 5));
    saveAndCheck("SaveLayerButton"_L1, m_random.oneIn(2) ? path : path + u".gauge"_s,
                 {namedLayers().at(m_row)});
}

void RandomUser::saveAndCheck(QLatin1StringView button, const QString &path, const QList<gaugeLayer> &layers)
{
    log(u"%1 to %2"_s.arg(button, path));
    const QString written = withSuffix(path, u".gauge"_s);
    const QByteArray before = readFile(written);
    const bool accepted = answerFileDialog(path);
    click(button);
    if (readFile(written) != (accepted ? gaugeFile::write(layers) : before))
        fail(u"%1 does not hold what was saved"_s.arg(written));
}

void RandomUser::loadGauge()
{
    const QString path = m_random.pick(m_documents);
    log(u"load %1"_s.arg(path));
    const bool accepted = answerFileDialog(path);
    const LoadMode mode = accepted ? expectLoading(path) : LoadMode::Nothing;
    click("loadButton"_L1);
    predictLoaded(path, mode);
}

void RandomUser::choosePreset()
{
    auto *box = m_editor.control<QComboBox>("presetComboBox"_L1);
    if (box->count() == 0)
        return;
    const int row = m_random.between(0, box->count() - 1);
    const QString path = m_presets + box->itemText(row) + u".gauge"_s;
    log(u"choose preset %1"_s.arg(path));
    const LoadMode mode = expectLoading(path);
    chooseFromPopup(*box, row);
    predictLoaded(path, mode);
}

RandomUser::LoadMode RandomUser::expectLoading(const QString &path)
{
    QList<gaugeLayer> layers;
    if (!QFile::exists(path) || !gaugeFile::read(readFile(path), &layers, nullptr)) {
        m_dialogs.expectAndCancel<QMessageBox>();
        return LoadMode::Nothing;
    }
    if (activeLayer().isDefault())
        return LoadMode::Overwrite;

    const QString answer =
        m_random.pick(QStringList{u"Add As New Layers"_s, u"Overwrite Current Layer"_s, u"Cancel"_s});
    log(answer);
    m_dialogs.expect<QMessageBox>([answer](QMessageBox &question) {
        const auto buttons = question.buttons();
        for (QAbstractButton *button : buttons) {
            if (button->text().remove(QLatin1Char('&')) == answer)
                button->click();
        }
    });
    if (answer.startsWith(u"Add"_s))
        return LoadMode::Append;
    return answer == u"Cancel"_s ? LoadMode::Nothing : LoadMode::Overwrite;
}

void RandomUser::predictLoaded(const QString &path, LoadMode mode)
{
    if (mode == LoadMode::Nothing)
        return;
    QList<gaugeLayer> layers;
    gaugeFile::read(readFile(path), &layers, nullptr);
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
        const QString numbered = u"Layer %1"_s.arg(m_names.size() + 1);
        m_names.append(!layer.name.isEmpty() ? layer.name : (single ? baseName : numbered));
        m_stack.append(layer.data);
    }
    m_fontShown = true;
}

void RandomUser::exportPng()
{
    auto &size = *m_editor.control<QSpinBox>("pngSizeSpinBox"_L1);
    const QString path = pathToSave(u".png"_s);
    log(u"export "_s + path);
    type(size, QString::number(m_random.between(64, 200)));
    const bool accepted = answerFileDialog(path);
    click("savePNGButton"_L1);
    if (accepted && QImage(withSuffix(path, u".png"_s)).size() != QSize(size.value(), size.value()))
        fail(u"the picture has not the chosen size"_s);
}

void RandomUser::exportSvg()
{
    const QString path = pathToSave(u".svg"_s);
    log(u"export %1"_s.arg(path));
    QFile::remove(withSuffix(path, u".svg"_s));
    const bool accepted = answerFileDialog(path);
    click("saveSVGButton"_L1);
    const QByteArray drawing = readFile(withSuffix(path, u".svg"_s));
    if (accepted ? !drawing.trimmed().endsWith("</svg>") : !drawing.isEmpty())
        fail(u"the drawing is not complete, or exists although it was cancelled"_s);
}

void RandomUser::exportKeyframes()
{
    const QString path = pathToSave(u".csv"_s);
    log(u"export %1"_s.arg(path));
    QFile::remove(withSuffix(path, u".csv"_s));
    const bool accepted = answerFileDialog(path);
    click("saveKeyFrameButton"_L1);
    // QString::toUtf8() writes a lone surrogate in a name as a question mark.
    QStringEncoder utf8(QStringEncoder::Utf8);
    const QByteArray expected = accepted ? utf8(keyframeTable(namedLayers())) : QByteArray();
    if (readFile(withSuffix(path, u".csv"_s)) != expected)
        fail(u"the table does not match the layers"_s);
}

void RandomUser::loadReference()
{
    const QString path = QDir(m_folder).filePath(u"reference.png"_s);
    log(u"load a reference image"_s);
    QImage image(m_random.between(1, 600), m_random.between(1, 600), QImage::Format_RGB32);
    image.fill(Qt::darkBlue);
    image.save(path);
    const bool accepted = answerFileDialog(path);
    click("loadReferenceButton"_L1);
    if (accepted && m_editor.control<QLabel>("referenceLabel"_L1)->pixmap().size() != image.size())
        fail(u"the reference image is not shown"_s);
}

void RandomUser::clearReference()
{
    log(u"clear the reference image"_s);
    click("clearReferenceButton"_L1);
    const auto *label = m_editor.control<QLabel>("referenceLabel"_L1);
    if (!label->text().isEmpty() || !label->pixmap().isNull())
        fail(u"the reference image is not cleared"_s);
}

bool RandomUser::answerFileDialog(const QString &path)
{
    if (m_random.oneIn(3)) {
        log(u"... but cancel"_s);
        m_dialogs.expectAndCancel<QFileDialog>();
        return false;
    }
    m_dialogs.expectFile(path);
    return true;
}

QString RandomUser::pathToSave(const QString &suffix)
{
    const QString path = QDir(m_folder).filePath(u"saved%1"_s.arg(m_random.between(1, 4)));
    return m_random.oneIn(2) ? path : path + suffix;
}

QList<gaugeLayer> RandomUser::namedLayers() const
{
    QList<gaugeLayer> layers;
    for (qsizetype row = 0; row < m_names.size(); ++row)
        layers.append({m_names.at(row), m_stack.at(row)});
    return layers;
}
