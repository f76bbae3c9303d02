// Shows one window, the editor ("window") or its bare form ("form"), and ends after its first frame.

#include "ui_window.h"
#include "window.h"

#include <QApplication>

#include <cstdio>

namespace {

/// Ends the program when the window has been painted and the event loop is idle.
class FirstFrame : public QObject
{
public:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
        return QObject::eventFilter(watched, event);
    }
};

int showUntilFirstFrame(QWidget &window)
{
    FirstFrame filter;
    window.installEventFilter(&filter);
    window.show();
    return QApplication::exec();
}

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    const QString what = QCoreApplication::arguments().value(1);
    if (what == QLatin1String("form")) {
        QWidget widget;
        Ui_Window form;
        form.setupUi(&widget);
        return showUntilFirstFrame(widget);
    }
    if (what == QLatin1String("window")) {
        Window window;
        return showUntilFirstFrame(window);
    }
    std::fputs("usage: corvalence_firstframe form|window\n", stderr);
    return 2;
}
