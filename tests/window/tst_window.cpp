#include "support/editor.h"
#include "support/records.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QGridLayout>
#include <QLineEdit>
#include <QMetaMethod>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPointer>
#include <QTest>

using namespace Qt::StringLiterals;

/// The window when the program starts, the slots it offers by name, and its end.
class tst_Window : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void titleNamesTheProgramAndItsVersion();
    void isPlainTopLevelWidget();
    void startsWithOneSelectedLayer();
    void startsWithTheDefaultLayer();
    void workingCopyEqualsTheFirstLayer();
    void layerIsEqualToTheControls();
    void layerChangedHasNotRun();
    void layerListIsEditedByDoubleClickAndKey();
    void colorButtonShowsItsColor_data();
    void colorButtonShowsItsColor();
    void backdropIsBlack();
    void biasTypesAreListed();
    void previewLiesCentredInItsGroup();
    void previewIsCreatedOnce();
    void fontButtonKeepsTheApplicationsFont();
    void networkManagerBelongsToTheWindow();
    void versionUrlHasItsSchemeAndPath();
    void hasTheSlot_data();
    void hasTheSlot();
    void hasNoOtherSlots();
    void csvNumberComesWithTheWindow();
    void nothingIsLeftAfterTheWindow();
    void noSlotRunsAfterTheDestructor();
};

void tst_Window::titleNamesTheProgramAndItsVersion()
{
    const Editor editor;
    QCOMPARE(editor.window.windowTitle(), u"Corvalence 2.2.0"_s);
}

void tst_Window::isPlainTopLevelWidget()
{
    const Editor editor;
    QCOMPARE(editor.window.metaObject()->className(), "Window");
    QCOMPARE(editor.window.metaObject()->superClass(), &QWidget::staticMetaObject);
    QVERIFY(editor.window.isWindow());
    QCOMPARE(editor.window.objectName(), u"Window"_s);
}

void tst_Window::startsWithOneSelectedLayer()
{
    const Editor editor;
    const QListWidget &list = *editor.layerList();
    QCOMPARE(list.count(), 1);
    QCOMPARE(list.item(0)->text(), u"Layer 1"_s);
    QCOMPARE(list.item(0)->data(Qt::UserRole).toString(), u"Layer 1"_s);
    QVERIFY(list.item(0)->flags().testFlag(Qt::ItemIsEditable));
    QCOMPARE(list.currentRow(), 0);
    QVERIFY(list.item(0)->isSelected());
    QCOMPARE(editor.preview()->layers.size(), 1);
}

void tst_Window::startsWithTheDefaultLayer()
{
    // What the form's own values make of the first layer is what every layer that is added starts with.
    const Editor editor;
    QCOMPARE(differingFields(editor.preview()->layers.first(), gaugeData()), QStringList());
}

void tst_Window::workingCopyEqualsTheFirstLayer()
{
    const Editor editor;
    QCOMPARE(differingFields(editor.preview()->workingLayer, editor.preview()->layers.first()),
             QStringList());
    QCOMPARE(editor.preview()->workingLayer.tickCountFont, QFont(u"Sans Serif"_s, 10));
}

void tst_Window::layerIsEqualToTheControls()
{
    const Editor editor;
    const gaugeData &layer = editor.preview()->layers.first();
    QCOMPARE(layer.startAngle, editor.control<QDoubleSpinBox>("gaugeStartAngleSpinBox"_L1)->value());
    QCOMPARE(layer.angleLength, editor.control<QDoubleSpinBox>("gaugeAngleLengthSpinBox"_L1)->value());
    QCOMPARE(layer.bias, editor.control<QDoubleSpinBox>("gaugeBiasSpinBox"_L1)->value());
    QCOMPARE(layer.arcAngleLength[0], editor.control<QDoubleSpinBox>("arc1AngleLengthSpinBox"_L1)->value());
    QCOMPARE(layer.divisionCount[0], editor.control<QSpinBox>("gaugeDivisions1SpinBox"_L1)->value());
    QCOMPARE(layer.tickCountEnabled, editor.control<QCheckBox>("tickCountCheckBox"_L1)->isChecked());
}

void tst_Window::layerChangedHasNotRun()
{
    // It would have shown the layer's label font on the font button.
    const QFont before = QApplication::font();
    QApplication::setFont(QFont(u"Monospace"_s, 19));
    {
        const Editor editor;
        const QFont shown = editor.control<QPushButton>("tickCountFontButton"_L1)->font();
        QCOMPARE(shown.family(), u"Monospace"_s);
        QCOMPARE(shown.pointSize(), 19);
    }
    QApplication::setFont(before);
}

void tst_Window::layerListIsEditedByDoubleClickAndKey()
{
    const Editor editor;
    QCOMPARE(editor.layerList()->editTriggers(),
             QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed);
}

void tst_Window::colorButtonShowsItsColor_data()
{
    QTest::addColumn<QColor>("color");
    QTest::addColumn<QString>("styleSheet");
    const QString white = u"background-color: #ffffff}"_s;
    QTest::newRow("gaugeDivisions1ColorButton") << QColor(255, 255, 255) << white;
    QTest::newRow("gaugeDivisions2ColorButton") << QColor(255, 255, 255) << white;
    QTest::newRow("gaugeDivisions3ColorButton") << QColor(255, 255, 255) << white;
    QTest::newRow("arc1ColorButton") << QColor(0, 255, 0) << u"background-color: #00ff00}"_s;
    QTest::newRow("arc2ColorButton") << QColor(255, 255, 0) << u"background-color: #ffff00}"_s;
    QTest::newRow("arc3ColorButton") << QColor(255, 0, 0) << u"background-color: #ff0000}"_s;
    QTest::newRow("arc4ColorButton") << QColor(255, 255, 255) << white;
    QTest::newRow("tickColorButton") << QColor(255, 255, 255) << white;
}

void tst_Window::colorButtonShowsItsColor()
{
    QFETCH(QColor, color);
    QFETCH(QString, styleSheet);
    Editor editor;
    editor.show();
    const auto *button = editor.control<QToolButton>(QString::fromLatin1(QTest::currentDataTag()));
    QCOMPARE(button->styleSheet(), styleSheet);
    QCOMPARE(button->palette().color(QPalette::Current, QPalette::Window), color);
}

void tst_Window::backdropIsBlack()
{
    Editor editor;
    editor.show();
    auto *backdrop = editor.control<QLabel>("referenceLabel"_L1);
    QCOMPARE(backdrop->styleSheet(), u"background-color: #000000}"_s);
    QCOMPARE(backdrop->grab().toImage().pixelColor(5, 5), QColor(Qt::black));
}

void tst_Window::biasTypesAreListed()
{
    const Editor editor;
    const auto &types = *editor.control<QComboBox>("biasTypeComboBox"_L1);
    QCOMPARE(types.count(), 2);
    QCOMPARE(types.itemText(0), u"Exponential"_s);
    QCOMPARE(types.itemText(1), u"Midpoint"_s);
    QCOMPARE(types.currentIndex(), 0);
    for (int index = 0; index < types.count(); ++index) {
        QVERIFY(types.itemIcon(index).isNull());
        QVERIFY(!types.itemData(index).isValid());
    }
}

void tst_Window::previewLiesCentredInItsGroup()
{
    Editor editor;
    const auto *group = editor.control<QGroupBox>("RenderBox"_L1);
    const auto *layout = qobject_cast<const QGridLayout *>(group->layout());
    QVERIFY(layout != nullptr);
    QCOMPARE(layout->count(), 1);
    QCOMPARE(layout->itemAtPosition(0, 0)->widget(), editor.preview());
    QCOMPARE(layout->itemAt(0)->alignment(), Qt::AlignCenter);
    QCOMPARE(editor.preview()->parentWidget(), group);
    // Over the backdrop, not under it.
    const QObjectList &children = group->children();
    QVERIFY(children.indexOf(editor.preview()) >
            children.indexOf(editor.control<QLabel>("referenceLabel"_L1)));
    editor.show();
    const QRect inside = layout->contentsRect();
    const QPoint offset = editor.preview()->geometry().center() - inside.center();
    QVERIFY(qAbs(offset.x()) <= 1);
    QVERIFY(qAbs(offset.y()) <= 1);
}

void tst_Window::previewIsCreatedOnce()
{
    const Editor editor;
    QCOMPARE(editor.window.findChildren<RenderArea *>().size(), 1);
}

void tst_Window::fontButtonKeepsTheApplicationsFont()
{
    const Editor editor;
    QCOMPARE(editor.control<QPushButton>("tickCountFontButton"_L1)->font(), QApplication::font());
}

void tst_Window::networkManagerBelongsToTheWindow()
{
    const Editor editor;
    const auto managers = editor.window.findChildren<QNetworkAccessManager *>();
    QCOMPARE(managers.size(), 1);
    QCOMPARE(managers.first()->parent(), &editor.window);
}

void tst_Window::versionUrlHasItsSchemeAndPath()
{
    QCOMPARE(Window::VERSION_XML_URL.scheme(), u"https"_s);
    QCOMPARE(Window::VERSION_XML_URL.path(), u"/downloads/Corvalence_version.xml"_s);
    QVERIFY(!Window::VERSION_XML_URL.host().isEmpty());
}

void tst_Window::hasTheSlot_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QByteArray>("signature");
    QTest::addColumn<QMetaType>("result");
    QTest::addColumn<QByteArrayList>("parameters");

    const auto result = QMetaType(QMetaType::Void);
    int index = 0;
    for (const char *name : {"angleChanged",
                             "capsChanged",
                             "divisions1Changed",
                             "divisions2Changed",
                             "divisions3Changed",
                             "arc1Changed",
                             "arc2Changed",
                             "arc3Changed",
                             "arc4Changed",
                             "divisions1ColorChanged",
                             "divisions2ColorChanged",
                             "divisions3ColorChanged",
                             "arc1ColorChanged",
                             "arc2ColorChanged",
                             "arc3ColorChanged",
                             "arc4ColorChanged",
                             "tickSettingsChanged",
                             "tickDecimalsChanged",
                             "saveSVG",
                             "savePNG",
                             "saveGauge",
                             "saveLayer",
                             "saveKeyframes",
                             "loadGauge",
                             "tickFontButton",
                             "tickColorChanged",
                             "presetChanged",
                             "setActiveGauge"}) {
        QTest::newRow(name) << index++ << QByteArray(name) + "()" << result << QByteArrayList();
    }
    QTest::newRow("getColor") << 28 << QByteArray("getColor()") << QMetaType::fromType<QColor>()
                              << QByteArrayList();
    QTest::newRow("getFont") << 29 << QByteArray("getFont()") << QMetaType::fromType<QFont>()
                             << QByteArrayList();
    QTest::newRow("blockWidgetSignals")
        << 30 << QByteArray("blockWidgetSignals(bool)") << result << QByteArrayList{"inEnable"};
    QTest::newRow("layerChanged") << 31 << QByteArray("layerChanged(QListWidgetItem*,QListWidgetItem*)")
                                  << result << QByteArrayList{"current", "previous"};
    QTest::newRow("layerRenamed") << 32 << QByteArray("layerRenamed(QListWidgetItem*)") << result
                                  << QByteArrayList{"item"};
    index = 33;
    for (const char *name :
         {"addLayer", "removeLayer", "loadReference", "clearReference", "getPresetsFromFolder"})
        QTest::newRow(name) << index++ << QByteArray(name) + "()" << result << QByteArrayList();
    QTest::newRow("onUpdateCheckFinished")
        << 38 << QByteArray("onUpdateCheckFinished(QNetworkReply*)") << result << QByteArrayList{"reply"};
}

void tst_Window::hasTheSlot()
{
    QFETCH(int, index);
    QFETCH(QByteArray, signature);
    QFETCH(QMetaType, result);
    QFETCH(QByteArrayList, parameters);
    const QMetaObject &meta = Window::staticMetaObject;
    const QMetaMethod slot = meta.method(meta.methodOffset() + index);
    QCOMPARE(slot.methodSignature(), signature);
    QCOMPARE(slot.methodType(), QMetaMethod::Slot);
    QCOMPARE(slot.access(), QMetaMethod::Private);
    QCOMPARE(slot.returnMetaType(), result);
    QCOMPARE(slot.parameterNames(), parameters);
}

void tst_Window::hasNoOtherSlots()
{
    QCOMPARE(Window::staticMetaObject.methodCount() - Window::staticMetaObject.methodOffset(), 39);
}

void tst_Window::csvNumberComesWithTheWindow()
{
    // Only window.h is needed for it.
    QCOMPARE(csvNumber(2.5), u"2.5"_s);
}

void tst_Window::nothingIsLeftAfterTheWindow()
{
    QList<QPointer<QObject>> parts;
    {
        Editor editor;
        editor.show();
        for (QObject *child : editor.window.findChildren<QObject *>())
            parts.append(child);
        QVERIFY(parts.contains(editor.preview()));
    }
    for (const QPointer<QObject> &part : std::as_const(parts))
        QVERIFY(part.isNull());
    QCOMPARE(QApplication::topLevelWidgets(), QWidgetList());
}

void tst_Window::noSlotRunsAfterTheDestructor()
{
    Editor *editor = new Editor;
    editor->show();
    QListWidget &list = *editor->layerList();
    list.editItem(list.item(0));
    auto *nameEditor = list.viewport()->findChild<QLineEdit *>();
    QVERIFY(nameEditor != nullptr);
    nameEditor->setText(u" Needle "_s);
    // The list commits the name while it is deleted. The window's slot, which would run first, would trim it.
    QStringList names;
    connect(&list, &QListWidget::itemChanged, &list,
            [&names](const QListWidgetItem *item) { names.append(item->text()); });
    delete editor;
    QCOMPARE(names, QStringList(u" Needle "_s));
}

ADD_TEST_CLASS(tst_Window)
#include "tst_window.moc"
