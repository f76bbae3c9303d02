#include "projectinfo.h"
#include "window.h"

#include <QApplication>
#include <QRegularExpression>

namespace {

QtMessageHandler previousHandler = nullptr;

/// Drops the warnings about three style sheets that Qt cannot read, and passes on every other message. The
/// sheets are part of the design: those of the colour buttons and of the preview's backdrop end in a lone
/// brace, and the one of the about label sets a property that Qt does not know.
void dropStyleSheetWarnings(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    static const QRegularExpression expected(QRegularExpression::anchoredPattern(
        QStringLiteral(R"(Could not parse stylesheet of object QToolButton\(\w+, name = "\w+ColorButton"\))"
                       R"(|Could not parse stylesheet of object QLabel\(\w+, name = "referenceLabel"\))"
                       R"(|Unknown property lineHeight)")));
    if (type != QtWarningMsg || !expected.match(message).hasMatch())
        previousHandler(type, context, message);
}

} // namespace

int main(int argc, char *argv[])
{
    previousHandler = qInstallMessageHandler(dropStyleSheetWarnings);
    const QApplication application(argc, argv);
    QApplication::setApplicationName(projectInfo::name.toString());
    QApplication::setApplicationVersion(projectInfo::version.toString());

    Window window(nullptr);
    window.show();
    return QApplication::exec();
}
