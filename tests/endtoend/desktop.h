#ifndef DESKTOP_H
#define DESKTOP_H

#include <QPoint>
#include <QRect>
#include <QStringList>

/// Keyboard, mouse and screen of the display, by means of xdotool and ImageMagick. Windows are X identifiers.
namespace desktop {

/// How long to wait for something, in milliseconds.
inline constexpr int timeout = 20000;

/// Presses keys one after another, each by its X name, such as "Tab" or "ctrl+a".
void press(const QStringList &keys);
/// Types text into the control that has the focus.
void type(const QString &text);
/// Clicks in a window @a times times.
void click(const QString &window, QPoint place, int times = 1);

[[nodiscard]] QString activeWindow();
[[nodiscard]] QString activeTitle();
/// Waits until the active window has this title. Returns false if it has not in time.
[[nodiscard]] bool waitForActive(const QString &title);
/// The size of a window without its frame.
[[nodiscard]] QSize size(const QString &window);

/// Saves a part of a window as it is on the screen.
void saveScreenshot(const QString &window, const QRect &area, const QString &path);
/// The number of pixels in which two images differ by more than @a tolerance per cent.
[[nodiscard]] int differingPixels(const QString &a, const QString &b, int tolerance);

} // namespace desktop

#endif
