#include "support/editor.h"
#include "support/testmain.h"

#include <QTest>

using namespace Qt::StringLiterals;

/// The meta-types that the window registers. It has a program of its own: looking at the parameters of a
/// slot, as other tests do, registers their types, too.
class tst_MetaTypes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void windowRegistersThePointersOfItsSlots();
};

void tst_MetaTypes::windowRegistersThePointersOfItsSlots()
{
    QVERIFY(!QMetaType::fromName("QListWidgetItem*").isValid());
    QVERIFY(!QMetaType::fromName("QNetworkReply*").isValid());
    Editor editor;
    QVERIFY(QMetaType::fromName("QListWidgetItem*").isValid());
    QVERIFY(QMetaType::fromName("QNetworkReply*").isValid());

    QListWidgetItem *item = editor.layerList()->item(0);
    editor.layerList()->blockSignals(true);
    item->setText(u" Needle "_s);
    QVERIFY(QMetaObject::invokeMethod(&editor.window, "layerRenamed", Qt::QueuedConnection,
                                      Q_ARG(QListWidgetItem *, item)));
    QCoreApplication::processEvents();
    QCOMPARE(item->text(), u"Needle"_s);
}

ADD_TEST_CLASS(tst_MetaTypes)
#include "tst_metatypes.moc"
