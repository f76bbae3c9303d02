#ifndef TST_ENDTOEND_H
#define TST_ENDTOEND_H

#include "formmap.h"

#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

/// How long to wait for what must come, in milliseconds.
inline constexpr int patience = 20000;

/// The main window's title, and keys by their X names.
inline const QString title = QStringLiteral("Corvalence 2.2.0");
inline const QString returnKey = QStringLiteral("Return");
inline const QString tab = QStringLiteral("Tab");
inline const QString space = QStringLiteral("space");

/// What a file holds; nothing when there is none.
[[nodiscard]] QByteArray contents(const QString &path);

// QVERIFY returns from the function that it stands in; this also does when a helper has failed.
#define STEP(step)                                                                                           \
    do {                                                                                                     \
        step;                                                                                                \
        if (QTest::currentTestFailed())                                                                      \
            return;                                                                                          \
    } while (false)

/// One person's session with the built program: a gauge made by keyboard alone, in the order of the tab key,
/// saved in every form, loaded again after a restart and saved again; then the mouse.
///
/// The functions follow one another: each goes on where the one before has stopped.
class tst_EndToEnd : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

    void tabbingReachesTheSweep();
    void tabbingReachesTheRings();
    void tabbingReachesTheArcs();
    void tabbingReachesTheLabels();
    void tabbingReachesTheExports();
    void tabbingReachesTheReference();
    void tabbingReachesTheLayers();
    void tabbingReachesThePresetsAndFiles();
    void savedWhatWasTyped();
    void tabulatedWhatWasTyped();
    void exportsWhatItShows();
    void closingEndsTheProgram();
    void savesTheSameAfterARestart();
    void showsTheSameAfterARestart();
    void takesTheMouse();
    void refusesABrokenFile();
    void printsOnlyThatAPictureCannotBeRead();

private:
    void start();
    [[nodiscard]] QString file(const QString &name) const { return m_folder.filePath(name); }
    /// Types a value into the control that has the focus, and goes on to the next.
    static void enter(const QString &value);
    /// Presses the colour button that has the focus, picks a colour (none: cancels), and goes on.
    void pickColor(const QString &color);
    /// Presses the button that has the focus and answers its file dialog.
    void answerFileDialog(const QString &dialog, const QString &path);
    /// Clicks a button and answers its file dialog.
    void clickAndAnswer(const char *button, const QString &dialog, const QString &path);
    /// Saves the gauge in every form, as NAME.gauge and so on, and waits until all files are there and whole.
    void saveEverything(const QString &name);
    [[nodiscard]] QJsonObject savedLayer(const QString &path, int index) const;
    /// The preview as far as it has its black backdrop, from which it may be off by a pixel, within the
    /// window.
    [[nodiscard]] QRect blackPreview() const
    {
        return m_map->rect("preview") & m_map->rect("referenceLabel");
    }
    void photographPreview(const QString &path) const;

    QTemporaryDir m_folder;
    QProcess m_program;
    QString m_window;
    std::unique_ptr<FormMap> m_map;
    bool m_goesOn = true; ///< Whether all has gone well so far; what comes after a failure says nothing.
};

#endif
