#include "desktop.h"

#include <QProcess>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// The output of a command. Ends the test program if it cannot be started.
QString run(const QString &command, const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(command, arguments);
    if (!process.waitForFinished(desktop::timeout))
        qFatal("%s does not run: %s", qPrintable(command), qPrintable(process.errorString()));
    return QString::fromLocal8Bit(process.readAll()).trimmed();
}

QString xdotool(const QStringList &arguments)
{
    return run(u"xdotool"_s, arguments);
}

} // namespace

namespace desktop {

void press(const QStringList &keys)
{
    xdotool(QStringList{u"key"_s} + keys);
}

void type(const QString &text)
{
    xdotool({u"type"_s, u"--"_s, text});
}

void click(const QString &window, QPoint place, int times)
{
    xdotool({u"mousemove"_s, u"--sync"_s, u"--window"_s, window, QString::number(place.x()),
             QString::number(place.y()), u"click"_s, u"--repeat"_s, QString::number(times), u"1"_s});
}

QString activeWindow()
{
    return xdotool({u"getactivewindow"_s});
}

QString activeTitle()
{
    return xdotool({u"getactivewindow"_s, u"getwindowname"_s});
}

bool waitForActive(const QString &title)
{
    return QTest::qWaitFor([&title] { return activeTitle() == title; }, timeout);
}

QSize size(const QString &window)
{
    // Lines such as WIDTH=1280.
    const QStringList lines = xdotool({u"getwindowgeometry"_s, u"--shell"_s, window}).split(u'\n');
    const auto value = [&lines](const QString &key) {
        return lines.filter(key).value(0).section(u'=', 1).toInt();
    };
    return {value(u"WIDTH="_s), value(u"HEIGHT="_s)};
}

void saveScreenshot(const QString &window, const QRect &area, const QString &path)
{
    const QString crop =
        u"%1x%2+%3+%4"_s.arg(area.width()).arg(area.height()).arg(area.left()).arg(area.top());
    run(u"import"_s, {u"-window"_s, window, u"-crop"_s, crop, u"+repage"_s, path});
}

int differingPixels(const QString &a, const QString &b, int tolerance)
{
    const QString count =
        run(u"compare"_s, {u"-metric"_s, u"AE"_s, u"-fuzz"_s, u"%1%"_s.arg(tolerance), a, b, u"null:"_s});
    bool isNumber = false;
    const double pixels = count.toDouble(&isNumber);
    if (!isNumber)
        qFatal("%s and %s cannot be compared: %s", qPrintable(a), qPrintable(b), qPrintable(count));
    return static_cast<int>(pixels);
}

} // namespace desktop
