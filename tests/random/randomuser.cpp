#include "randomuser.h"

#include "render/imageexport.h"

#include <QColorDialog>
#include <QFontDialog>
#include <QInputDialog>
#include <QLineEdit>
#include <QSignalSpy>
#include <QStyleOptionButton>
#include <QTest>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype maxLayers = 8;
constexpr qsizetype maxLogSize = 25;
constexpr int maxDivisions = 5; // so that painting stays fast

bool isDivisionCount(const GaugeField &field)
{
    return field.name.startsWith("divisionCount");
}

} // namespace

RandomUser::RandomUser(Editor &editor, quint64 seed, QStringList documents, QString folder, QString presets)
    : m_editor(editor)
    , m_random(seed)
    , m_documents(std::move(documents))
    , m_folder(std::move(folder))
    , m_presets(std::move(presets))
{
}

void RandomUser::act()
{
    using Action = void (RandomUser::*)();
    static const QList<std::pair<int, Action>> weightedActions{
        {30, &RandomUser::typeValue},     {20, &RandomUser::stepValue},      {10, &RandomUser::clickFlag},
        {4, &RandomUser::chooseBiasType}, {5, &RandomUser::pickColor},       {1, &RandomUser::pickFont},
        {10, &RandomUser::selectLayer},   {5, &RandomUser::renameLayer},     {3, &RandomUser::addLayer},
        {4, &RandomUser::removeLayer},    {1, &RandomUser::saveGauge},       {1, &RandomUser::saveLayer},
        {2, &RandomUser::loadGauge},      {2, &RandomUser::choosePreset},    {1, &RandomUser::exportPng},
        {1, &RandomUser::exportSvg},      {1, &RandomUser::exportKeyframes}, {1, &RandomUser::loadReference},
        {1, &RandomUser::clearReference},
    };
    static const QList<Action> actions = [] {
        QList<Action> all;
        for (const auto &[weight, action] : weightedActions)
            all.append(QList<Action>(weight, action));
        return all;
    }();
    const Action action = m_names.size() > maxLayers ? &RandomUser::removeLayer : m_random.pick(actions);
    (this->*action)();
    // Deletes closed editors and dialogs, as a running event loop does.
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

QString RandomUser::problem()
{
    if (!m_failure.isEmpty())
        return m_failure;
    if (!m_dialogs.problems().isEmpty())
        return m_dialogs.problems().join(u"; "_s);

    const QListWidget &list = *m_editor.layerList();
    const QList<gaugeData> &stack = m_editor.preview()->layers;
    if (m_editor.layerNames() != m_names)
        return u"the rows are \"%1\" instead of \"%2\""_s.arg(m_editor.layerNames().join(u"\", \""_s),
                                                              m_names.join(u"\", \""_s));
    if (stack.size() != m_names.size())
        return u"%1 layers for %2 rows"_s.arg(stack.size()).arg(m_names.size());
    if (list.currentRow() != m_row)
        return u"row %1 is selected instead of %2"_s.arg(list.currentRow()).arg(m_row);
    for (int row = 0; row < list.count(); ++row) {
        if (list.item(row)->data(Qt::UserRole).toString() != m_names.at(row))
            return u"the accepted name of row %1 is wrong"_s.arg(row);
        const QStringList fields = differingFields(stack.at(row), m_stack.at(row));
        if (!fields.isEmpty())
            return u"%1 of layer %2 is wrong"_s.arg(fields.first()).arg(row);
    }
    const QStringList fields = differingFields(m_editor.preview()->workingLayer, stack.at(m_row));
    if (!fields.isEmpty())
        return u"%1 of the working copy differs from the layer"_s.arg(fields.first());

    QImage preview(512, 512, QImage::Format_ARGB32);
    preview.fill(Qt::transparent);
    m_editor.preview()->render(&preview, QPoint(), QRegion(), QWidget::RenderFlags());
    if (gaugeImage(512, stack) != preview)
        return u"the preview differs from an export of the layers"_s;
    return wrongControl();
}

QString RandomUser::wrongControl() const
{
    const gaugeData shown = m_editor.shownLayer();
    gaugeData held = m_editor.preview()->workingLayer;
    // The control takes attributes that the font does not set, such as a refused size, from the application.
    held.tickCountFont = held.tickCountFont.resolve(QApplication::font("QPushButton"));
    for (const GaugeField &field : gaugeFields()) {
        const QVariant value = field.get(held);
        const auto *widget = m_editor.control<QWidget>(field.control);
        bool isShown = field.get(shown) == value;
        if (field.position == GaugeField::insideFont) {
            isShown = isShown || !m_fontShown;
        } else if (field.kind == GaugeField::Color) {
            isShown = widget->styleSheet() == u"background-color: %1}"_s.arg(value.value<QColor>().name());
        } else if (const auto *integer = qobject_cast<const QSpinBox *>(widget)) {
            isShown = integer->value() == std::clamp(value.toInt(), integer->minimum(), integer->maximum());
        } else if (const auto *number = qobject_cast<const QDoubleSpinBox *>(widget)) {
            // NaN is shown as any number of the range.
            const double nearest = std::clamp(value.toDouble(), number->minimum(), number->maximum());
            isShown =
                !(std::abs(number->value() - nearest) > 0.5000001 * std::pow(10.0, -number->decimals()));
        }
        if (!isShown)
            return u"%1 does not show %2"_s.arg(field.control, value.toString());
    }
    return {};
}

void RandomUser::typeValue()
{
    const GaugeField &field = pickField({GaugeField::Number, GaugeField::Integer});
    auto &box = *m_editor.control<QAbstractSpinBox>(field.control);
    const double min = box.property("minimum").toDouble();
    double max = box.property("maximum").toDouble();
    if (max == 100.0 && !m_random.oneIn(5)) // mostly narrow lines, which do not cover everything else
        max = maxDivisions;
    if (isDivisionCount(field))
        max = maxDivisions;
    const int decimals = field.kind == GaugeField::Number ? box.property("decimals").toInt() : 0;
    QString text = QString::number(min + (max - min) * m_random.between(0, 10000) / 10000.0, 'f', decimals);
    if (m_random.oneIn(8) && !isDivisionCount(field))
        text = m_random.pick(
            QStringList{QString(), u"-"_s, u"ticks"_s, u"99999"_s, u"0.123456789"_s, u"-0.0"_s, u"1e2"_s});
    log(u"type \"%1\" into %2"_s.arg(text, field.control));
    if (type(box, text))
        predictStored(field);
}

void RandomUser::stepValue()
{
    const GaugeField &field = pickField({GaugeField::Number, GaugeField::Integer});
    auto &box = *m_editor.control<QAbstractSpinBox>(field.control);
    QList keys{Qt::Key_Up, Qt::Key_Down, Qt::Key_PageUp, Qt::Key_PageDown};
    if (isDivisionCount(field) && box.property("value").toInt() >= maxDivisions)
        keys = {Qt::Key_Down, Qt::Key_PageDown};
    else if (isDivisionCount(field))
        keys.removeAll(Qt::Key_PageUp); // ten steps
    const auto key = m_random.pick(keys);
    log(u"press %1 in %2"_s.arg(QVariant::fromValue(key).toString(), field.control));
    const QVariant before = box.property("value");
    QTest::keyClick(&box, key);
    if (box.property("value") != before)
        predictStored(field);
}

void RandomUser::clickFlag()
{
    const GaugeField &field = pickField({GaugeField::Flag});
    auto *box = m_editor.window.findChild<QCheckBox *>(field.control);
    if (box == nullptr) // the bias type
        return;
    log(u"click "_s + field.control);
    const bool before = box->isChecked();
    if (m_random.oneIn(2)) {
        QTest::keyClick(box, Qt::Key_Space);
    } else {
        QStyleOptionButton option;
        option.initFrom(box);
        option.text = box->text();
        const QRect target = box->style()->subElementRect(QStyle::SE_CheckBoxClickRect, &option, box);
        QTest::mouseClick(box, Qt::LeftButton, {}, target.center());
    }
    if (box->isChecked() == before)
        fail(field.control + u" did not change"_s);
    predictStored(field);
}

void RandomUser::chooseBiasType()
{
    auto &box = *m_editor.control<QComboBox>("biasTypeComboBox"_L1);
    const int row = m_random.between(0, 1);
    log(u"choose bias type %1"_s.arg(row));
    chooseFromPopup(box, row);
    if (box.currentIndex() != row)
        fail(u"the bias type was not chosen"_s);
    predictStored(gaugeField("midpointBias"));
}

void RandomUser::pickColor()
{
    const GaugeField &field = pickField({GaugeField::Color});
    const bool accepted = !m_random.oneIn(3);
    const QColor color(m_random.between(0, 255), m_random.between(0, 255), m_random.between(0, 255));
    log(u"%1 %2 for %3"_s.arg(accepted ? u"pick"_s : u"cancel"_s, color.name(), field.control));
    m_dialogs.expect<QColorDialog>([color, accepted](QColorDialog &dialog) {
        dialog.setCurrentColor(color);
        static_cast<QDialog &>(dialog).done(accepted ? QDialog::Accepted : QDialog::Rejected);
    });
    QTest::mouseClick(m_editor.control<QWidget>(field.control), Qt::LeftButton);
    predictStored(field);
    field.set(activeLayer(), accepted ? color : QColor(0, 0, 0));
}

void RandomUser::pickFont()
{
    auto *button = m_editor.control<QAbstractButton>("tickCountFontButton"_L1);
    QFont font(m_random.pick(QStringList{u"DejaVu Sans"_s, u"DejaVu Serif"_s, u"DejaVu Sans Mono"_s}),
               m_random.between(6, 30));
    font.setBold(m_random.oneIn(2));
    const bool accepted = !m_random.oneIn(3);
    QFont expected = button->font();
    log(accepted ? u"pick a font"_s : u"cancel the font"_s);
    m_dialogs.expect<QFontDialog>([font, accepted, &expected](QFontDialog &dialog) {
        dialog.setCurrentFont(font);
        if (accepted)
            expected = dialog.currentFont();
        static_cast<QDialog &>(dialog).done(accepted ? QDialog::Accepted : QDialog::Rejected);
    });
    QTest::mouseClick(button, Qt::LeftButton);
    predictStored(gaugeField("tickCountStart"));
    if (activeLayer().tickCountFont.family() != expected.family() ||
        activeLayer().tickCountFont.pointSize() != expected.pointSize())
        fail(u"the font was not picked"_s);
}

void RandomUser::selectLayer()
{
    QListWidget &list = *m_editor.layerList();
    const int row = m_random.between(0, list.count() - 1);
    log(u"select row %1"_s.arg(row));
    if (m_random.oneIn(2)) {
        list.scrollToItem(list.item(row));
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.visualItemRect(list.item(row)).center());
    } else {
        list.setFocus();
        for (int at = list.currentRow(); at != row; at += at < row ? 1 : -1)
            QTest::keyClick(&list, at < row ? Qt::Key_Down : Qt::Key_Up);
    }
    m_fontShown = m_fontShown || row != m_row;
    m_row = row;
}

void RandomUser::renameLayer()
{
    QListWidget &list = *m_editor.layerList();
    const QString name = m_random.pick(names());
    const bool accepted = !m_random.oneIn(4);
    log(u"%1 the name \"%2\" for row %3"_s.arg(accepted ? u"type"_s : u"cancel"_s, name).arg(m_row));
    list.setFocus();
    if (m_random.oneIn(2)) {
        QTest::keyClick(&list, Qt::Key_F2);
    } else {
        list.scrollToItem(list.currentItem());
        const QPoint place = list.visualItemRect(list.currentItem()).center();
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, place);
        QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, place);
    }
    auto *nameEditor = list.findChild<QLineEdit *>();
    if (nameEditor == nullptr) {
        fail(u"the row cannot be edited"_s);
        return;
    }
    nameEditor->selectAll();
    QTest::keyClick(nameEditor, Qt::Key_Delete);
    QTest::keyClicks(nameEditor, name);
    QTest::keyClick(nameEditor, accepted ? Qt::Key_Return : Qt::Key_Escape);
    if (accepted && !name.trimmed().isEmpty())
        m_names[m_row] = name.trimmed();
}

void RandomUser::addLayer()
{
    const QString name = m_random.pick(names());
    const bool accepted = !m_random.oneIn(4);
    log(u"%1 a new layer \"%2\""_s.arg(accepted ? u"add"_s : u"cancel"_s, name));
    m_dialogs.expect<QInputDialog>([name, accepted](QInputDialog &dialog) {
        dialog.setTextValue(name);
        dialog.done(accepted ? QDialog::Accepted : QDialog::Rejected);
    });
    click("AddLayerButton"_L1);
    if (!accepted || name.isEmpty())
        return;
    m_names.append(name.trimmed().isEmpty() ? name : name.trimmed());
    m_stack.append(gaugeData());
}

void RandomUser::removeLayer()
{
    log(u"remove row %1 of %2"_s.arg(m_row).arg(m_names.size()));
    const bool isOnlyLayer = m_names.size() == 1;
    if (isOnlyLayer)
        m_dialogs.expectAndCancel<QMessageBox>();
    click("RemoveLayerButton"_L1);
    if (isOnlyLayer)
        return;
    m_names.removeAt(m_row);
    m_stack.removeAt(m_row);
    m_row = std::min(m_row, static_cast<int>(m_names.size()) - 1);
    m_fontShown = true;
}

void RandomUser::log(const QString &action)
{
    m_log.append(action);
    if (m_log.size() > maxLogSize)
        m_log.removeFirst();
}

void RandomUser::fail(const QString &what)
{
    if (m_failure.isEmpty())
        m_failure = what;
}

void RandomUser::click(QLatin1StringView button)
{
    QTest::mouseClick(m_editor.control<QAbstractButton>(button), Qt::LeftButton);
}

QStringList RandomUser::names()
{
    return {u"Needle"_s, u"  Outer ring "_s, u"a, \"b\""_s, u"   "_s, QString(), u"50 % \\ 'x'"_s};
}

const GaugeField &RandomUser::pickField(std::initializer_list<GaugeField::Kind> kinds)
{
    const GaugeField *field = nullptr;
    do
        field = &m_random.pick(gaugeFields());
    while (field->position == GaugeField::insideFont ||
           std::find(kinds.begin(), kinds.end(), field->kind) == kinds.end());
    return *field;
}

bool RandomUser::type(QAbstractSpinBox &box, const QString &text)
{
    const bool isInteger = qobject_cast<QSpinBox *>(&box) != nullptr;
    const QSignalSpy changes(&box, isInteger ? SIGNAL(valueChanged(int)) : SIGNAL(valueChanged(double)));
    box.setFocus();
    box.selectAll();
    QTest::keyClick(&box, Qt::Key_Delete);
    QTest::keyClicks(&box, text);
    QTest::keyClick(&box, m_random.oneIn(2) ? Qt::Key_Return : Qt::Key_Tab);
    return !changes.isEmpty();
}

void RandomUser::chooseFromPopup(QComboBox &box, int row)
{
    box.showPopup();
    QTest::keyClick(box.view(), Qt::Key_Home);
    for (int at = 0; at < row; ++at)
        QTest::keyClick(box.view(), Qt::Key_Down);
    QTest::keyClick(box.view(), Qt::Key_Return);
}

void RandomUser::predictStored(const GaugeField &field)
{
    const gaugeData shown = m_editor.shownLayer();
    for (const GaugeField &stored : gaugeFields()) {
        if (slotOf(stored) == slotOf(field) && stored.position != GaugeField::insideFont)
            stored.set(activeLayer(), stored.get(shown));
    }
    if (slotOf(field) == "tickSettingsChanged") {
        activeLayer().tickCountFont = m_editor.control<QWidget>("tickCountFontButton"_L1)->font();
        m_fontShown = true;
    }
}
