// Starts, shows one window, and ends as soon as its first frame is painted: for timing whole processes.
// "form" shows the bare form, "window" the editor.

#include "ui_window.h"
#include "window.h"

#include <QApplication>
#include <QFile>
#include <QTextStream>

namespace {

/// Ends the program once the watched window has been painted and the event loop has caught up.
class FirstFrame : public QObject
{
public:
    explicit FirstFrame(QWidget &window)
        : QObject(&window)
    {
        window.installEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            QMetaObject::invokeMethod(this, &FirstFrame::finish, Qt::QueuedConnection);
        return QObject::eventFilter(watched, event);
    }

private:
    void finish()
    {
        QFile status(QStringLiteral("/proc/self/status"));
        if (qEnvironmentVariableIsSet("FIRSTFRAME_MEMORY") && status.open(QIODevice::ReadOnly)) {
            const auto lines = status.readAll().split('\n');
            for (const QByteArray &line : lines) {
                if (line.startsWith("VmRSS"))
                    QTextStream(stdout) << line << '\n';
            }
        }
        QCoreApplication::quit();
    }
};

int showUntilFirstFrame(QWidget &window)
{
    const FirstFrame watcher(window);
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
    QTextStream(stderr) << "usage: firstframe form|window\n";
    return 2;
}
