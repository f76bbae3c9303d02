#include "desktop.h"

#include <QProcess>
#include <QTest>

namespace {

constexpr int patience = 20000; // milliseconds

/// What a command printed; stops the program when there is no such command, without which nothing can go on.
QString run(const QString &command, const QStringList &arguments, bool errorOutput = false)
{
    QProcess process;
    process.start(command, arguments);
    if (!process.waitForFinished(patience))
        qFatal("%s does not run: %s", qPrintable(command), qPrintable(process.errorString()));
    return QString::fromLocal8Bit(errorOutput ? process.readAllStandardError()
                                              : process.readAllStandardOutput())
        .trimmed();
}

QString xdotool(const QStringList &arguments)
{
    return run(QStringLiteral("xdotool"), arguments);
}

} // namespace

namespace desktop {

void press(const QStringList &keys)
{
    xdotool(QStringList{QStringLiteral("key")} + keys);
}

void type(const QString &text)
{
    xdotool({QStringLiteral("type"), QStringLiteral("--"), text});
}

void click(const QString &window, QPoint place, int times)
{
    xdotool({QStringLiteral("mousemove"), QStringLiteral("--sync"), QStringLiteral("--window"), window,
             QString::number(place.x()), QString::number(place.y()), QStringLiteral("click"),
             QStringLiteral("--repeat"), QString::number(times), QStringLiteral("1")});
}

QString activeTitle()
{
    return xdotool({QStringLiteral("getactivewindow"), QStringLiteral("getwindowname")});
}

QString activeWindow()
{
    return xdotool({QStringLiteral("getactivewindow")});
}

QSize size(const QString &window)
{
    // WIDTH=... and HEIGHT=... among others, a line each.
    QSize size;
    const QStringList lines =
        xdotool({QStringLiteral("getwindowgeometry"), QStringLiteral("--shell"), window})
            .split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        const int value = line.section(QLatin1Char('='), 1).toInt();
        if (line.startsWith(QLatin1String("WIDTH=")))
            size.setWidth(value);
        else if (line.startsWith(QLatin1String("HEIGHT=")))
            size.setHeight(value);
    }
    return size;
}

bool waitForActive(const QString &title)
{
    return QTest::qWaitFor([&title] { return activeTitle() == title; }, patience);
}

void photograph(const QString &window, const QRect &area, const QString &path)
{
    const QString crop =
        QStringLiteral("%1x%2+%3+%4").arg(area.width()).arg(area.height()).arg(area.left()).arg(area.top());
    run(QStringLiteral("import"),
        {QStringLiteral("-window"), window, QStringLiteral("-crop"), crop, QStringLiteral("+repage"), path});
}

int differingPixels(const QString &a, const QString &b, int fuzz)
{
    const QString count = run(QStringLiteral("compare"),
                              {QStringLiteral("-metric"), QStringLiteral("AE"), QStringLiteral("-fuzz"),
                               QStringLiteral("%1%").arg(fuzz), a, b, QStringLiteral("null:")},
                              true);
    bool isNumber = false;
    const double pixels = count.toDouble(&isNumber);
    if (!isNumber)
        qFatal("%s and %s cannot be compared: %s", qPrintable(a), qPrintable(b), qPrintable(count));
    return static_cast<int>(pixels);
}

} // namespace desktop
