// Draws the pictures of README.md and docs/ with the editor's own window and painter.
//
//     corvalence_pictures DOCS_FOLDER
#include "pictures.h"

#include "projectinfo.h"

#include <QApplication>
#include <QLoggingCategory>
#include <QNetworkProxy>

#include <cstdio>

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    QApplication::setApplicationName(projectInfo::name.toString());
    if (argc != 2) {
        std::fprintf(stderr, "usage: corvalence_pictures DOCS_FOLDER\n");
        return 2;
    }
    QApplication::setFont(QFont(QStringLiteral("Sans Serif"), 9)); // the default on Linux without a desktop
    // Qt warns of the color buttons' style sheets and of what the offscreen platform cannot do.
    QLoggingCategory::setFilterRules(QStringLiteral("default.warning=false\nqt.*.warning=false"));
    // Every window asks for updates when it opens. These requests must not leave the machine.
    QNetworkProxy::setApplicationProxy({QNetworkProxy::HttpProxy, QStringLiteral("127.0.0.1"), 9});

    const QDir docs(QString::fromLocal8Bit(argv[1]));
    drawGuide(docs);
    drawGallery(docs);
    drawFittedScales(docs);
    return 0;
}
