#include "formtext.h"
#include "support/editor.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QAccessible>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QAccessibleInterface *accessible(QObject *object)
{
    return QAccessible::queryAccessibleInterface(object);
}

/// The name that a screen reader speaks. On Unix, the accessible name of a combo box is its current text;
/// readers then use its label.
QString spokenName(const QAccessibleInterface &control)
{
    if (control.role() != QAccessible::ComboBox)
        return control.text(QAccessible::Name);
    const auto labels = control.relations(QAccessible::Label);
    return labels.isEmpty() ? QString() : labels.first().first->text(QAccessible::Name);
}

/// Adds all visible controls at and below @a top that can have the focus.
void collectFocusable(QAccessibleInterface *top, QList<QAccessibleInterface *> &found)
{
    if (top == nullptr || top->state().invisible)
        return;
    if (top->state().focusable && top->role() != QAccessible::ListItem)
        found.append(top);
    for (int index = 0; index < top->childCount(); ++index)
        collectFocusable(top->child(index), found);
}

/// The controls that get the focus in turn when a key is pressed, beginning with the first of the tab order.
QStringList focusOrder(const Editor &editor, Qt::Key key)
{
    auto *const first = editor.control<QWidget>("gaugeStartAngleSpinBox"_L1);
    first->setFocus();
    QStringList visited;
    do {
        visited.append(QApplication::focusWidget()->objectName());
        QTest::keyClick(QApplication::focusWidget(), key);
    } while (QApplication::focusWidget() != first && visited.size() < 1000);
    return visited;
}

} // namespace

/// What the window tells assistive tools, and its use by keyboard.
class tst_Accessibility : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void everyControlHasItsOwnName();
    void previewIsNamedPicture();
    void colorButtonDescribesItsColor();

    void tabKeyVisitsEveryControl();
};

void tst_Accessibility::everyControlHasItsOwnName()
{
    Editor editor;
    editor.show();
    QList<QAccessibleInterface *> controls;
    collectFocusable(accessible(&editor.window), controls);
    QStringList names;
    for (const QAccessibleInterface *control : std::as_const(controls)) {
        const QString name = spokenName(*control);
        QVERIFY2(!name.trimmed().isEmpty(), qPrintable(control->object()->objectName()));
        QVERIFY2(!names.contains(name), qPrintable(name));
        names.append(name);
    }
    QCOMPARE(names.size(), expectedLines(u"taborder.txt"_s).size());
}

void tst_Accessibility::previewIsNamedPicture()
{
    const Editor editor;
    const auto *preview = accessible(editor.preview());
    QCOMPARE(preview->role(), QAccessible::Graphic);
    QCOMPARE(preview->text(QAccessible::Name), u"Gauge Preview"_s);
}

void tst_Accessibility::colorButtonDescribesItsColor()
{
    const Editor editor;
    for (const GaugeField &field : gaugeFields()) {
        if (field.kind != GaugeField::Color)
            continue;
        const auto *button = accessible(editor.control<QWidget>(field.control));
        const auto initial = field.initial.value<QColor>().name();
        QCOMPARE(button->text(QAccessible::Description), initial);
        editor.edit(field, QColor(170, 187, 204)); // picked
        QCOMPARE(button->text(QAccessible::Description), u"#aabbcc"_s);
        editor.addLayer(u"default"_s);
        editor.layerList()->setCurrentRow(editor.layerList()->count() - 1); // of another layer
        QCOMPARE(button->text(QAccessible::Description), initial);
    }
}

void tst_Accessibility::tabKeyVisitsEveryControl()
{
    Editor editor;
    editor.show();
    editor.window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&editor.window));
    const QStringList order = expectedLines(u"taborder.txt"_s);
    QCOMPARE(focusOrder(editor, Qt::Key_Tab), order);
    QStringList back = focusOrder(editor, Qt::Key_Backtab);
    std::reverse(back.begin() + 1, back.end());
    QCOMPARE(back, order);
}

ADD_TEST_CLASS(tst_Accessibility)
#include "tst_accessibility.moc"
