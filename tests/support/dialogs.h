#ifndef DIALOGS_H
#define DIALOGS_H

#include <QDialog>
#include <QList>
#include <QMessageBox>
#include <QObject>
#include <QStringList>
#include <QTimer>

#include <functional>

/// Answers modal dialogs in the expected order.
///
/// Since a dialog runs its own event loop, expect() must be called before the dialog opens. An answer must
/// close its dialog. Unexpected dialogs are closed, so that a test never hangs; problems() reports them.
class DialogAnswers : public QObject
{
    Q_OBJECT

public:
    DialogAnswers();

    /// Expects a dialog of this type next and calls @a answer with it.
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

    /// Expects a dialog of this type next and cancels it.
    template <typename Dialog>
    void expectAndCancel()
    {
        expect<Dialog>([](Dialog &dialog) { dialog.reject(); });
    }

    /// Expects a file dialog next, enters @a path and accepts it. The dialog does not ask before overwriting.
    void expectFile(const QString &path);

    /// Expects a message next with this parent, icon, title and text, and with OK as its only button. Presses
    /// OK. Differences are problems.
    void expectMessage(const QWidget *parent, QMessageBox::Icon icon, const QString &title,
                       const QString &text);

    /// Dialogs that were unexpected, had another type or did not open, and wrong messages. Compare it with an
    /// empty list at the end of the test.
    [[nodiscard]] QStringList problems() const;

private:
    void look();

    QTimer m_timer;
    QList<std::function<bool(QDialog &)>> m_expected;
    QStringList m_problems;
    QList<QDialog *> m_busyWith;
};

#endif
