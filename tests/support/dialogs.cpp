#include "support/dialogs.h"

#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>

DialogAnswers::DialogAnswers()
{
    connect(&m_timer, &QTimer::timeout, this, &DialogAnswers::look);
    m_timer.start(0);
}

void DialogAnswers::expectFile(const QString &path)
{
    expect<QFileDialog>([path](QFileDialog &dialog) {
        dialog.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(path);
        dialog.setOption(QFileDialog::DontConfirmOverwrite);
        static_cast<QDialog &>(dialog).accept();
    });
}

void DialogAnswers::expectMessage(const QWidget *parent, QMessageBox::Icon icon, const QString &title,
                                  const QString &text)
{
    expect<QMessageBox>([this, parent, icon, title, text](QMessageBox &box) {
        if (box.parentWidget() != parent)
            m_problems.append(QStringLiteral("the message \"%1\" has another parent").arg(box.windowTitle()));
        if (box.icon() != icon)
            m_problems.append(QStringLiteral("icon %1 in place of %2").arg(box.icon()).arg(icon));
        if (box.windowTitle() != title)
            m_problems.append(
                QStringLiteral("title \"%1\" in place of \"%2\"").arg(box.windowTitle(), title));
        if (box.text() != text)
            m_problems.append(QStringLiteral("text \"%1\" in place of \"%2\"").arg(box.text(), text));
        if (!box.informativeText().isEmpty() || !box.detailedText().isEmpty())
            m_problems.append(QStringLiteral("more text than \"%1\"").arg(text));
        if (box.buttons().size() != 1 || box.standardButtons() != QMessageBox::Ok)
            m_problems.append(QStringLiteral("the message \"%1\" offers more than OK").arg(text));
        box.accept();
    });
}

QStringList DialogAnswers::problems() const
{
    QStringList all = m_problems;
    if (!m_expected.isEmpty())
        all.append(QStringLiteral("%1 expected dialog(s) never came").arg(m_expected.size()));
    return all;
}

void DialogAnswers::look()
{
    auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
    // An answer may itself run an event loop; the dialog that it is about is left to it.
    if (dialog == nullptr || !dialog->isVisible() || m_busyWith.contains(dialog))
        return;

    m_busyWith.append(dialog);
    if (m_expected.isEmpty()) {
        m_problems.append(QStringLiteral("unexpected %1 \"%2\"")
                              .arg(QLatin1String(dialog->metaObject()->className()), dialog->windowTitle()));
        dialog->reject();
    } else if (!m_expected.takeFirst()(*dialog)) {
        m_problems.append(QStringLiteral("a %1 \"%2\" came in place of the expected dialog")
                              .arg(QLatin1String(dialog->metaObject()->className()), dialog->windowTitle()));
        dialog->reject();
    }
    m_busyWith.removeOne(dialog);
}
