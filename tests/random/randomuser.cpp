#include "randomuser.h"

#include "render/renderarea.h"
#include "warningwatch.h"
#include "window.h"

#include <QColorDialog>
#include <QFontDialog>
#include <QInputDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QSignalSpy>
#include <QStyleOptionButton>
#include <QStyleOptionSpinBox>
#include <QTest>

#include <algorithm>
#include <numeric>

namespace {

constexpr int mostTicksOfALayer = 150;
constexpr qsizetype mostRows = 8;
constexpr qsizetype rememberedActions = 25;

/// What the user may type as a name.
const QStringList &names()
{
    static const QStringList all{
        QStringLiteral("Needle"),
        QStringLiteral("  Outer ring "),
        QStringLiteral("a, \"b\""),
        QStringLiteral("   "),
        QString(),
        QStringLiteral("50 % \\ 'x'"),
    };
    return all;
}

/// The signal of a spin box that reports a new value.
const char *valueChanged(const QAbstractSpinBox &box)
{
    const bool whole = qobject_cast<const QSpinBox *>(&box) != nullptr;
    return whole ? SIGNAL(valueChanged(int)) : SIGNAL(valueChanged(double));
}

} // namespace

RandomUser::RandomUser(Window &window, quint64 seed, QStringList documents, QString folder, QString presets)
    : m_window(window)
    , m_form(window)
    , m_random(seed)
    , m_documents(std::move(documents))
    , m_folder(std::move(folder))
    , m_presets(std::move(presets))
    , m_names{QStringLiteral("Layer 1")}
    , m_stack{gaugeData()}
{
}

void RandomUser::act()
{
    using Action = void (RandomUser::*)();
    static const QList<std::pair<int, Action>> habits{
        {24, &RandomUser::typeNumber},     {6, &RandomUser::typeCount},    {14, &RandomUser::stepNumber},
        {6, &RandomUser::stepCount},       {10, &RandomUser::clickFlag},   {4, &RandomUser::chooseBiasType},
        {5, &RandomUser::pickColor},       {1, &RandomUser::pickFont},     {10, &RandomUser::selectLayer},
        {5, &RandomUser::renameLayer},     {3, &RandomUser::addLayer},     {4, &RandomUser::removeLayer},
        {1, &RandomUser::saveGauge},       {1, &RandomUser::saveLayer},    {2, &RandomUser::loadGauge},
        {2, &RandomUser::choosePreset},    {1, &RandomUser::exportPng},    {1, &RandomUser::exportSvg},
        {1, &RandomUser::exportKeyframes}, {1, &RandomUser::useReference},
    };
    static const int total = std::accumulate(habits.begin(), habits.end(), 0,
                                             [](int sum, const auto &habit) { return sum + habit.first; });
    int drawn = m_random.between(1, total);
    Action action = &RandomUser::removeLayer; // whoever has too many layers removes one
    for (const auto &[weight, habit] : habits) {
        drawn -= weight;
        if (drawn <= 0 && m_names.size() <= mostRows) {
            action = habit;
            break;
        }
    }
    (this->*action)();
    // Editors and dialogs that are done with go, as they do in a running event loop.
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

QString RandomUser::problem()
{
    if (!m_failure.isEmpty())
        return m_failure;
    if (!m_dialogs.problems().isEmpty())
        return m_dialogs.problems().join(QLatin1String("; "));
    if (!WarningWatch::unexpected().isEmpty())
        return QLatin1String("warning: ") + WarningWatch::unexpected().first();

    const QListWidget &list = *m_form.layerList;
    const QList<gaugeData> &stack = m_form.renderArea->layers;
    if (list.count() < 1)
        return QStringLiteral("no layer is left");
    if (list.count() != stack.size() || list.count() != m_names.size())
        return QStringLiteral("%1 rows and %2 layers, where %3 should be")
            .arg(list.count())
            .arg(stack.size())
            .arg(m_names.size());
    if (list.currentRow() != m_row)
        return QStringLiteral("row %1 is selected, not %2").arg(list.currentRow()).arg(m_row);
    for (int row = 0; row < list.count(); ++row) {
        const QListWidgetItem &item = *list.item(row);
        if (item.text() != m_names.at(row) || item.data(Qt::UserRole).toString() != m_names.at(row))
            return QStringLiteral("row %1 is \"%2\" (\"%3\"), not \"%4\"")
                .arg(QString::number(row), item.text(), item.data(Qt::UserRole).toString(), m_names.at(row));
        const QString field = differingField(stack.at(row), m_stack.at(row));
        if (!field.isEmpty())
            return QStringLiteral("%1 of layer %2 is not as it must be").arg(field).arg(row);
    }
    const QString field = differingField(m_form.renderArea->workingLayer, stack.at(m_row));
    if (!field.isEmpty())
        return QStringLiteral("%1 of the working copy is not the active layer's").arg(field);
    return m_form.wrongControl(m_form.renderArea->workingLayer, m_fontShown);
}

void RandomUser::typeNumber()
{
    const auto &bound = m_random.pick(m_form.numbers);
    QDoubleSpinBox &box = *bound.control;
    QString text;
    if (m_random.oneIn(8)) {
        text = m_random.pick(QStringList{QString(), QStringLiteral("-"), QStringLiteral("ticks"),
                                         QStringLiteral("99999"), QStringLiteral("0.123456789"),
                                         QStringLiteral("-0.0"), QStringLiteral("1e2")});
    } else {
        // Wide lines hide everything below them, so most are narrow.
        const double most = box.maximum() == 100.0 && !m_random.oneIn(5) ? 5.0 : box.maximum();
        const double value = box.minimum() + (most - box.minimum()) * m_random.between(0, 10000) / 10000.0;
        text = QString::number(value, 'f', std::min(box.decimals(), 6));
    }
    log(QStringLiteral("type \"%1\" into %2").arg(text, box.objectName()));
    if (type(box, text))
        expectPushed(bound.group);
}

void RandomUser::typeCount()
{
    const auto &bound = m_random.pick(m_form.counts);
    const int most =
        bound.group == Group::Ticks ? bound.control->maximum() + 1 : std::min(101, largestCount(bound.group));
    const QString text = QString::number(m_random.between(0, std::max(1, most)));
    log(QStringLiteral("type \"%1\" into %2").arg(text, bound.control->objectName()));
    if (type(*bound.control, text))
        expectPushed(bound.group);
}

void RandomUser::stepNumber()
{
    const auto &bound = m_random.pick(m_form.numbers);
    log(QStringLiteral("step %1").arg(bound.control->objectName()));
    if (step(*bound.control))
        expectPushed(bound.group);
}

void RandomUser::stepCount()
{
    const auto &bound = m_random.pick(m_form.counts);
    // A page is ten steps.
    if (bound.group != Group::Ticks && bound.control->value() + 10 > largestCount(bound.group))
        return;
    log(QStringLiteral("step %1").arg(bound.control->objectName()));
    if (step(*bound.control))
        expectPushed(bound.group);
}

void RandomUser::clickFlag()
{
    const auto &bound = m_random.pick(m_form.flags);
    QCheckBox &box = *bound.control;
    log(QStringLiteral("click %1").arg(box.objectName()));
    const bool before = box.isChecked();
    if (m_random.oneIn(2)) {
        QTest::keyClick(&box, Qt::Key_Space);
    } else {
        QStyleOptionButton option;
        option.initFrom(&box);
        option.text = box.text();
        const QRect target = box.style()->subElementRect(QStyle::SE_CheckBoxClickRect, &option, &box);
        QTest::mouseClick(&box, Qt::LeftButton, {}, target.center());
    }
    if (box.isChecked() == before)
        fail(QStringLiteral("%1 did not change").arg(box.objectName()));
    expectPushed(bound.group);
}

void RandomUser::chooseBiasType()
{
    QComboBox &box = *m_form.biasType;
    const int row = m_random.between(0, 1);
    log(QStringLiteral("choose bias type %1").arg(row));
    chooseFromPopup(box, row);
    if (box.currentIndex() != row)
        fail(QStringLiteral("the bias type is not the chosen one"));
    expectPushed(Group::Sweep);
}

void RandomUser::pickColor()
{
    const auto &bound = m_random.pick(m_form.colors);
    QColor color = Qt::black; // what a cancelled dialog makes
    if (m_random.oneIn(3)) {
        log(QStringLiteral("cancel the colour of %1").arg(bound.control->objectName()));
        m_dialogs.expectAndCancel<QColorDialog>();
    } else {
        color = QColor(m_random.between(0, 255), m_random.between(0, 255), m_random.between(0, 255));
        log(QStringLiteral("pick %1 for %2").arg(color.name(), bound.control->objectName()));
        m_dialogs.expect<QColorDialog>([color](QColorDialog &dialog) {
            dialog.setCurrentColor(color);
            dialog.accept();
        });
    }
    QTest::mouseClick(bound.control, Qt::LeftButton);
    expectPushed(bound.group);
    if (bound.field(activeLayer()) != color)
        fail(QStringLiteral("the colour is not the chosen one"));
}

void RandomUser::pickFont()
{
    const QFont before = m_form.fontButton->font();
    QFont chosen = before; // what a cancelled dialog leaves
    if (m_random.oneIn(3)) {
        log(QStringLiteral("cancel the font"));
        m_dialogs.expectAndCancel<QFontDialog>();
    } else {
        log(QStringLiteral("pick a font"));
        QFont font(m_random.pick(QStringList{QStringLiteral("DejaVu Sans"), QStringLiteral("DejaVu Serif"),
                                             QStringLiteral("DejaVu Sans Mono")}),
                   m_random.between(6, 30));
        font.setBold(m_random.oneIn(2));
        m_dialogs.expect<QFontDialog>([font, &chosen](QFontDialog &dialog) {
            dialog.setCurrentFont(font);
            chosen = dialog.currentFont();
            dialog.accept();
        });
    }
    QTest::mouseClick(m_form.fontButton, Qt::LeftButton);
    expectPushed(Group::Ticks);
    if (activeLayer().tickCountFont.family() != chosen.family() ||
        activeLayer().tickCountFont.pointSize() != chosen.pointSize())
        fail(QStringLiteral("the font is not the chosen one"));
}

void RandomUser::selectLayer()
{
    QListWidget &list = *m_form.layerList;
    const int row = m_random.between(0, list.count() - 1);
    log(QStringLiteral("select row %1").arg(row));
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
    QListWidget &list = *m_form.layerList;
    const QString name = m_random.pick(names());
    const bool keep = !m_random.oneIn(4);
    log(QStringLiteral("rename row %1 to \"%2\", then press %3")
            .arg(QString::number(m_row), name, keep ? QStringLiteral("Return") : QStringLiteral("Escape")));
    list.setFocus();
    if (m_random.oneIn(2)) {
        QTest::keyClick(&list, Qt::Key_F2);
    } else {
        list.scrollToItem(list.currentItem());
        const QPoint place = list.visualItemRect(list.currentItem()).center();
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, place);
        QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, place);
    }
    auto *editor = list.findChild<QLineEdit *>();
    if (editor == nullptr) {
        fail(QStringLiteral("the row cannot be edited"));
        return;
    }
    editor->selectAll();
    QTest::keyClick(editor, Qt::Key_Delete);
    QTest::keyClicks(editor, name);
    QTest::keyClick(editor, keep ? Qt::Key_Return : Qt::Key_Escape);
    if (keep && !name.trimmed().isEmpty())
        m_names[m_row] = name.trimmed();
}

void RandomUser::addLayer()
{
    const QString name = m_random.pick(names());
    const bool keep = !m_random.oneIn(4);
    log(QStringLiteral("%1 a new layer \"%2\"")
            .arg(keep ? QStringLiteral("add") : QStringLiteral("cancel"), name));
    m_dialogs.expect<QInputDialog>([name, keep](QInputDialog &dialog) {
        dialog.setTextValue(name);
        dialog.done(keep ? QDialog::Accepted : QDialog::Rejected);
    });
    click("AddLayerButton");
    if (!keep || name.isEmpty())
        return;
    m_names.append(name.trimmed().isEmpty() ? name : name.trimmed());
    m_stack.append(gaugeData());
}

void RandomUser::removeLayer()
{
    log(QStringLiteral("remove row %1 of %2").arg(m_row).arg(m_names.size()));
    const bool last = m_names.size() == 1;
    if (last)
        m_dialogs.expectAndCancel<QMessageBox>();
    click("RemoveLayerButton");
    if (last)
        return;
    m_names.removeAt(m_row);
    m_stack.removeAt(m_row);
    m_row = std::min(m_row, static_cast<int>(m_names.size()) - 1);
    m_fontShown = true;
}

void RandomUser::log(const QString &action)
{
    m_log.append(action);
    if (m_log.size() > rememberedActions)
        m_log.removeFirst();
}

void RandomUser::fail(const QString &what)
{
    if (m_failure.isEmpty())
        m_failure = what;
}

void RandomUser::click(const char *button)
{
    auto *found = m_window.findChild<QAbstractButton *>(QLatin1String(button));
    QTest::mouseClick(found, Qt::LeftButton);
}

bool RandomUser::type(QAbstractSpinBox &box, const QString &text)
{
    const QSignalSpy reports(&box, valueChanged(box));
    box.setFocus();
    box.selectAll();
    QTest::keyClick(&box, Qt::Key_Delete);
    QTest::keyClicks(&box, text);
    const auto ending = m_random.pick(QList<Ending>{Ending::Return, Ending::Tab, Ending::None});
    if (ending != Ending::None)
        QTest::keyClick(&box, ending == Ending::Return ? Qt::Key_Return : Qt::Key_Tab);
    return !reports.isEmpty();
}

bool RandomUser::step(QAbstractSpinBox &box)
{
    const QSignalSpy reports(&box, valueChanged(box));
    const bool up = m_random.oneIn(2);
    switch (m_random.between(1, 3)) {
    case 1:
        QTest::keyClick(&box, up ? Qt::Key_Up : Qt::Key_Down);
        break;
    case 2:
        QTest::keyClick(&box, up ? Qt::Key_PageUp : Qt::Key_PageDown);
        break;
    default: {
        QStyleOptionSpinBox option;
        option.initFrom(&box);
        option.frame = box.hasFrame();
        option.buttonSymbols = box.buttonSymbols();
        const QRect arrow = box.style()->subControlRect(
            QStyle::CC_SpinBox, &option, up ? QStyle::SC_SpinBoxUp : QStyle::SC_SpinBoxDown, &box);
        QTest::mouseClick(&box, Qt::LeftButton, {}, arrow.center());
    }
    }
    return !reports.isEmpty();
}

void RandomUser::chooseFromPopup(QComboBox &box, int row)
{
    box.showPopup();
    QTest::keyClick(box.view(), Qt::Key_Home);
    for (int at = 0; at < row; ++at)
        QTest::keyClick(box.view(), Qt::Key_Down);
    QTest::keyClick(box.view(), Qt::Key_Return);
}

void RandomUser::expectPushed(Group group)
{
    activeLayer() = m_form.withGroup(activeLayer(), group);
    m_fontShown = m_fontShown || group == Group::Ticks;
}

int RandomUser::largestCount(Group ring) const
{
    // Of the layer, not of the controls: a file's count stays until its own ring is edited.
    const auto &counts = m_form.renderArea->workingLayer.divisionCount;
    const auto own = static_cast<size_t>(ring) - static_cast<size_t>(Group::Ring1);
    int others = 1;
    for (size_t i = 0; i < counts.size(); ++i) {
        if (i != own)
            others *= std::clamp(counts.at(i), 1, mostTicksOfALayer);
    }
    return mostTicksOfALayer / others;
}
