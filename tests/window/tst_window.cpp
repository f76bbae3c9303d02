#include "renderarea.h"
#include "warnings.h"
#include "window.h"

#include <QListWidget>
#include <QTest>

/// What a user meets when the program starts.
class tst_Window : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void titleNamesTheProgramAndItsVersion();
    void startsWithOneSelectedLayer();
};

void tst_Window::titleNamesTheProgramAndItsVersion()
{
    const Window window;
    QCOMPARE(window.windowTitle(), QStringLiteral("Corvalence 2.2.0"));
}

void tst_Window::startsWithOneSelectedLayer()
{
    const Window window;
    const auto *list = window.findChild<QListWidget *>(QStringLiteral("layerList"));
    QCOMPARE(list->count(), 1);
    QCOMPARE(list->item(0)->text(), QStringLiteral("Layer 1"));
    QCOMPARE(list->currentRow(), 0);
    QCOMPARE(window.findChild<RenderArea *>()->layers.size(), 1);
}

QTEST_MAIN(tst_Window)
#include "tst_window.moc"
