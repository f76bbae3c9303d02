#ifndef DIALOGS_H
#define DIALOGS_H

#include <QDialog>
#include <QList>
#include <QMessageBox>
#include <QObject>
#include <QStringList>
#include <QTimer>

#include <functional>

/// Answers the modal dialogs that a test brings up, in the order in which they are expected.
///
/// A dialog runs its own event loop, so what answers it must be set up before: expect() names the dialog's
/// type and what to do with it once it is there. Each answer must close its dialog. A dialog that nobody
/// expects is closed and noted, so that a test never hangs; problems() tells whether exactly the expected
/// ones came.
class DialogAnswers : public QObject
{
    Q_OBJECT

public:
    DialogAnswers();

    /// Expects a dialog of type Dialog next and hands it to @a answer.
    template <typename Dialog>
    void expect(std::function<void(Dialog &)> answer)
    {
        m_expected.append([answer](QDialog &dialog) {
            auto *typed = qobject_cast<Dialog *>(&dialog);
            if (typed == nullptr)
                return false;
            answer(*typed);
            return true;
        });
    }

    /// Expects a dialog of type Dialog next and cancels it, as the Escape key does.
    template <typename Dialog>
    void expectAndCancel()
    {
        expect<Dialog>([](Dialog &dialog) { dialog.reject(); });
    }

    /// Expects a file dialog next, types @a path as the file name and accepts it, overwriting included.
    void expectFile(const QString &path);

    /// Expects a message next that has this icon, title and text, belongs to @a parent and offers nothing but
    /// OK, which is pressed. What is different is noted as a problem.
    void expectMessage(const QWidget *parent, QMessageBox::Icon icon, const QString &title,
                       const QString &text);

    /// What went wrong: dialogs that nobody expected, of another type, or that never came. Empty when all is
    /// well; compare it with an empty list at the end of the test.
    [[nodiscard]] QStringList problems() const;

private:
    void look();

    QTimer m_timer;
    QList<std::function<bool(QDialog &)>> m_expected;
    QStringList m_problems;
    QList<QDialog *> m_busyWith;
};

#endif
