#include "editoruser.h"

#include "render/renderarea.h"

#include <QApplication>
#include <QColorDialog>
#include <QFileDialog>
#include <QFontDialog>
#include <QInputDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMessageBox>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace {

/// Calls @a answer with the modal dialog that opens next. Call it before the click that opens the dialog.
template <typename Dialog, typename Answer>
void answerNext(Answer answer)
{
    QTimer::singleShot(0, [answer] {
        auto *dialog = qobject_cast<Dialog *>(QApplication::activeModalWidget());
        if (dialog == nullptr)
            qFatal("There is no open %s.", Dialog::staticMetaObject.className());
        answer(*dialog);
    });
}

void chooseFile(QFileDialog &dialog, const QString &path)
{
    dialog.findChild<QLineEdit *>(u"fileNameEdit"_s)->setText(path);
    static_cast<QDialog &>(dialog).accept();
}

/// Windows have no transparent parts, so their pictures need no alpha channel.
QImage opaque(const QPixmap &picture)
{
    return picture.toImage().convertToFormat(QImage::Format_RGB32);
}

} // namespace

EditorUser::EditorUser()
{
    m_window.show();
    QApplication::processEvents();
}

template <typename Control>
Control *EditorUser::control(const QString &name) const
{
    auto *found = m_window.findChild<Control *>(name);
    if (found == nullptr)
        qFatal("There is no control \"%s\".", qPrintable(name));
    return found;
}

void EditorUser::click(const QString &button)
{
    control<QAbstractButton>(button)->click();
}

void EditorUser::set(QLatin1StringView spinBox, double value)
{
    auto *box = control<QAbstractSpinBox>(spinBox);
    if (auto *decimalBox = qobject_cast<QDoubleSpinBox *>(box))
        decimalBox->setValue(value);
    else
        qobject_cast<QSpinBox *>(box)->setValue(qRound(value));
}

void EditorUser::toggle(QLatin1StringView checkBox)
{
    click(checkBox);
}

void EditorUser::pickColor(const QString &button, const QColor &color)
{
    answerNext<QColorDialog>([color](QColorDialog &dialog) {
        dialog.setCurrentColor(color);
        dialog.accept();
    });
    click(button);
}

void EditorUser::pickLabelFont(const QFont &font)
{
    answerNext<QFontDialog>([font](QFontDialog &dialog) {
        dialog.setCurrentFont(font);
        dialog.accept();
    });
    click(u"tickCountFontButton"_s);
}

void EditorUser::selectMidpointBias()
{
    // Only keys and the mouse emit the signal that the editor listens to.
    QKeyEvent down(QEvent::KeyPress, Qt::Key_Down, Qt::NoModifier);
    QApplication::sendEvent(control<QComboBox>(u"biasTypeComboBox"_s), &down);
}

void EditorUser::setRing(int ring, int count, double width, double innerRadius, double outerRadius,
                         const QColor &color)
{
    const QString name = u"gaugeDivisions%1"_s.arg(ring);
    control<QSpinBox>(name + "SpinBox"_L1)->setValue(count);
    control<QDoubleSpinBox>(name + "WidthSpinBox"_L1)->setValue(width);
    control<QDoubleSpinBox>(name + "InnerRadiusSpinBox"_L1)->setValue(innerRadius);
    control<QDoubleSpinBox>(name + "OuterRadiusSpinBox"_L1)->setValue(outerRadius);
    if (color.isValid())
        pickColor(name + "ColorButton"_L1, color);
}

void EditorUser::setArc(int arc, double start, double length, double radius, double width,
                        const QColor &color)
{
    const QString name = u"arc%1"_s.arg(arc);
    control<QDoubleSpinBox>(name + "StartAngleSpinBox"_L1)->setValue(start);
    control<QDoubleSpinBox>(name + "AngleLengthSpinBox"_L1)->setValue(length);
    control<QDoubleSpinBox>(name + "RadiusSpinBox"_L1)->setValue(radius);
    control<QDoubleSpinBox>(name + "WidthSpinBox"_L1)->setValue(width);
    if (color.isValid())
        pickColor(name + "ColorButton"_L1, color);
}

void EditorUser::setSweep(double start, double length)
{
    set("gaugeStartAngleSpinBox"_L1, start);
    set("gaugeAngleLengthSpinBox"_L1, length);
}

void EditorUser::showOnlyArcs()
{
    set("gaugeDivisions1SpinBox"_L1, 0);
    toggle("tickCountCheckBox"_L1);
}

void EditorUser::showOnlyTicks()
{
    set("arc1AngleLengthSpinBox"_L1, 0);
    toggle("tickCountCheckBox"_L1);
}

void EditorUser::renameLayer(const QString &name)
{
    control<QListWidget>(u"layerList"_s)->currentItem()->setText(name);
}

void EditorUser::addLayer(const QString &name)
{
    answerNext<QInputDialog>([name](QInputDialog &dialog) {
        dialog.setTextValue(name);
        dialog.accept();
    });
    click(u"AddLayerButton"_s);
    auto *list = control<QListWidget>(u"layerList"_s);
    list->setCurrentRow(list->count() - 1);
}

void EditorUser::loadGauge(const QString &path)
{
    answerNext<QFileDialog>([path](QFileDialog &dialog) { chooseFile(dialog, path); });
    click(u"loadButton"_s);
}

void EditorUser::loadReference(const QString &path)
{
    answerNext<QFileDialog>([path](QFileDialog &dialog) { chooseFile(dialog, path); });
    click(u"loadReferenceButton"_s);
}

QImage EditorUser::questionOnLoading(const QString &path)
{
    QImage picture;
    answerNext<QFileDialog>([&picture, path](QFileDialog &dialog) {
        answerNext<QMessageBox>([&picture](QMessageBox &question) {
            picture = opaque(question.grab());
            question.reject();
        });
        chooseFile(dialog, path);
    });
    click(u"loadButton"_s);
    return picture;
}

QList<gaugeLayer> EditorUser::layers() const
{
    const auto *list = control<QListWidget>(u"layerList"_s);
    const auto *preview = m_window.findChild<RenderArea *>();
    QList<gaugeLayer> named;
    for (qsizetype row = 0; row < preview->layers.size(); ++row)
        named.append({list->item(static_cast<int>(row))->text(), preview->layers.at(row)});
    return named;
}

QImage EditorUser::windowPicture()
{
    control<QListWidget>(u"layerList"_s)->setFocus(); // A field with the focus would show its cursor.
    return opaque(m_window.grab());
}

QImage EditorUser::previewPicture()
{
    const auto *backdrop = control<QLabel>(u"referenceLabel"_s);
    const QPoint corner = backdrop->mapTo(&m_window, QPoint(0, 0));
    return opaque(m_window.grab(QRect(corner, backdrop->size())));
}
