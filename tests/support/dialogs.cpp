#include "support/dialogs.h"

#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>

using namespace Qt::StringLiterals;

DialogAnswers::DialogAnswers()
{
    connect(&m_timer, &QTimer::timeout, this, &DialogAnswers::look);
    m_timer.start(0);
}

void DialogAnswers::expectFile(const QString &path)
{
    expect<QFileDialog>([path](QFileDialog &dialog) {
        dialog.findChild<QLineEdit *>(u"fileNameEdit"_s)->setText(path);
        dialog.setOption(QFileDialog::DontConfirmOverwrite);
        static_cast<QDialog &>(dialog).accept();
    });
}

void DialogAnswers::expectMessage(const QWidget *parent, QMessageBox::Icon icon, const QString &title,
                                  const QString &text)
{
    expect<QMessageBox>([this, parent, icon, title, text](QMessageBox &box) {
        if (box.parentWidget() != parent)
            m_problems.append(u"the message \"%1\" has another parent"_s.arg(box.windowTitle()));
        if (box.icon() != icon)
            m_problems.append(u"icon %1 instead of %2"_s.arg(box.icon()).arg(icon));
        if (box.windowTitle() != title)
            m_problems.append(u"title \"%1\" instead of \"%2\""_s.arg(box.windowTitle(), title));
        if (box.text() != text)
            m_problems.append(u"text \"%1\" instead of \"%2\""_s.arg(box.text(), text));
        if (!box.informativeText().isEmpty() || !box.detailedText().isEmpty())
            m_problems.append(u"has more text than \"%1\""_s.arg(text));
        if (box.buttons().size() != 1 || box.standardButtons() != QMessageBox::Ok)
            m_problems.append(u"the message \"%1\" offers more than OK"_s.arg(text));
        box.accept();
    });
}

QStringList DialogAnswers::problems() const
{
    QStringList all = m_problems;
    if (!m_expected.isEmpty())
        all.append(u"%1 expected dialog(s) did not open"_s.arg(m_expected.size()));
    return all;
}

void DialogAnswers::look()
{
    auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
    // An answer may run an event loop itself. Its dialog is not answered again.
    if (dialog == nullptr || !dialog->isVisible() || m_busyWith.contains(dialog))
        return;

    m_busyWith.append(dialog);
    if (m_expected.isEmpty()) {
        m_problems.append(u"unexpected %1 \"%2\""_s.arg(QLatin1String(dialog->metaObject()->className()),
                                                        dialog->windowTitle()));
        dialog->reject();
    } else if (!m_expected.takeFirst()(*dialog)) {
        m_problems.append(u"%1 \"%2\" opened instead of the expected dialog"_s.arg(
            QLatin1String(dialog->metaObject()->className()), dialog->windowTitle()));
        dialog->reject();
    }
    m_busyWith.removeOne(dialog);
}
