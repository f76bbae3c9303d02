#include "formtext.h"
#include "support/editor.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QLineEdit>
#include <QMetaMethod>
#include <QNetworkAccessManager>
#include <QPointer>
#include <QTest>

using namespace Qt::StringLiterals;

/// The window after its construction, its slots, and its destruction.
class tst_Window : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void isPlainTopLevelWidget();
    void hasTheseSlots();
    void startsWithOneDefaultLayer();
    void startsWithTheApplicationsFontOnTheFontButton();
    void backdropIsBlack();
    void ownsItsNetworkManager();
    void fetchesTheVersionDescriptionOverHttps();
    void deletesAllItsObjects();
    void runsNoSlotAfterItsDestructor();
};

void tst_Window::isPlainTopLevelWidget()
{
    const Editor editor;
    QCOMPARE(editor.window.metaObject()->className(), "Window");
    QCOMPARE(editor.window.metaObject()->superClass(), &QWidget::staticMetaObject);
    QVERIFY(editor.window.isWindow());
}

void tst_Window::hasTheseSlots()
{
    const QMetaObject &meta = Window::staticMetaObject;
    QStringList found;
    for (int index = meta.methodOffset(); index < meta.methodCount(); ++index) {
        const QMetaMethod method = meta.method(index);
        QCOMPARE(method.methodType(), QMetaMethod::Slot);
        QCOMPARE(method.access(), QMetaMethod::Private);
        QString line = QLatin1String(method.typeName()) + u' ' + QLatin1String(method.methodSignature());
        for (const QByteArray &name : method.parameterNames())
            line += u' ' + QLatin1String(name);
        found.append(line);
    }
    QCOMPARE(found, expectedLines(u"slots.txt"_s));
}

void tst_Window::startsWithOneDefaultLayer()
{
    const Editor editor;
    QCOMPARE(editor.layerNames(), QStringList(u"Layer 1"_s));
    QCOMPARE(editor.layerList()->item(0)->data(Qt::UserRole).toString(), u"Layer 1"_s);
    QVERIFY(editor.layerList()->item(0)->isSelected());
    QCOMPARE(editor.preview()->layers.size(), 1);
    QCOMPARE(differingFields(editor.preview()->layers.first(), gaugeData()), QStringList());
    QCOMPARE(differingFields(editor.preview()->workingLayer, gaugeData()), QStringList());
}

void tst_Window::startsWithTheApplicationsFontOnTheFontButton()
{
    const QFont before = QApplication::font();
    QApplication::setFont(QFont(u"Monospace"_s, 19));
    {
        const Editor editor;
        const QFont shown = editor.control<QPushButton>("tickCountFontButton"_L1)->font();
        QCOMPARE(shown.family(), u"Monospace"_s);
        QCOMPARE(shown.pointSize(), 19);
        QCOMPARE(editor.preview()->workingLayer.tickCountFont, QFont(u"Sans Serif"_s, 10));
    }
    QApplication::setFont(before);
}

void tst_Window::backdropIsBlack()
{
    Editor editor;
    editor.show();
    const QImage group = editor.control<QGroupBox>("RenderBox"_L1)->grab().toImage();
    QCOMPARE(group.pixelColor(26 + 5, 33 + 5), QColor(Qt::black));
    // The preview is above it.
    QCOMPARE(group.pixelColor(editor.preview()->geometry().center()), QColor(Qt::white));
}

void tst_Window::ownsItsNetworkManager()
{
    const Editor editor;
    QCOMPARE(editor.window.findChildren<QNetworkAccessManager *>(Qt::FindDirectChildrenOnly).size(), 1);
}

void tst_Window::fetchesTheVersionDescriptionOverHttps()
{
    QCOMPARE(Window::VERSION_XML_URL.scheme(), u"https"_s);
    QCOMPARE(Window::VERSION_XML_URL.path(), u"/downloads/Corvalence_version.xml"_s);
    QVERIFY(!Window::VERSION_XML_URL.host().isEmpty());
}

void tst_Window::deletesAllItsObjects()
{
    QList<QPointer<QObject>> objects;
    {
        Editor editor;
        editor.show();
        for (QObject *child : editor.window.findChildren<QObject *>())
            objects.append(child);
        QVERIFY(objects.contains(editor.preview()));
    }
    for (const QPointer<QObject> &object : std::as_const(objects))
        QVERIFY(object.isNull());
    QCOMPARE(QApplication::topLevelWidgets(), QWidgetList());
}

void tst_Window::runsNoSlotAfterItsDestructor()
{
    auto *editor = new Editor;
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
