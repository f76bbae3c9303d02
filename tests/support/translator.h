#ifndef TRANSLATOR_H
#define TRANSLATOR_H

#include <QCoreApplication>
#include <QTranslator>

/// While it exists, the texts of one translation context are shown in brackets: "[text]".
class BracketTranslator : public QTranslator
{
public:
    explicit BracketTranslator(const char *context)
        : m_context(context)
    {
        QCoreApplication::installTranslator(this);
    }
    // The destructor of QTranslator removes it.

    [[nodiscard]] bool isEmpty() const override { return false; }
    [[nodiscard]] QString translate(const char *context, const char *text, const char * /*comment*/,
                                    int /*count*/) const override
    {
        return qstrcmp(context, m_context) == 0 ? u'[' + QString::fromUtf8(text) + u']' : QString();
    }

private:
    const char *m_context;
};

#endif
