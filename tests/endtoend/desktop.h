#ifndef DESKTOP_H
#define DESKTOP_H

#include <QPoint>
#include <QRect>
#include <QStringList>

/// A person's hands and eyes on the display: keyboard, mouse, and what the window manager shows. Waiting is
/// for something to be so, and ends without it after a while.
namespace desktop {

/// Presses keys one after another, each by its X name, such as "Tab" or "ctrl+a".
void press(const QStringList &keys);

/// Types text into whatever has the focus.
void type(const QString &text);

/// Clicks at a place within a window, @a times times.
void click(const QString &window, QPoint place, int times = 1);

/// The title of the active window, empty when there is none.
[[nodiscard]] QString activeTitle();

/// The active window's identifier.
[[nodiscard]] QString activeWindow();

/// How large a window's contents are.
[[nodiscard]] QSize size(const QString &window);

/// Waits until the window of that title is active. False when it does not become so.
[[nodiscard]] bool waitForActive(const QString &title);

/// Saves what the screen shows in a rectangle of a window.
void photograph(const QString &window, const QRect &area, const QString &path);

/// How many pixels of two pictures differ by more than @a fuzz per cent.
[[nodiscard]] int differingPixels(const QString &a, const QString &b, int fuzz);

} // namespace desktop

#endif
