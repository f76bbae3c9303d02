#include "projectinfo.h"
#include "window.h"

#include <QApplication>

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    QApplication::setApplicationName(projectInfo::name.toString());
    QApplication::setApplicationVersion(projectInfo::version.toString());

    Window window(nullptr);
    window.show();
    return QApplication::exec();
}
