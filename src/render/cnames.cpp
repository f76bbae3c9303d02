#include "render/cnames.h"

QByteArray identifierPart(const QString &name)
{
    constexpr qsizetype maxLength = 28; // compilers need not tell identifiers apart after 63 characters
    QByteArray part;
    bool isBetween = false;
    for (const QChar character : name) {
        const bool isPlain = character.unicode() < 0x80 && character.isLetterOrNumber();
        const bool isLetter = isPlain || character.isLetterOrNumber() || character.isSurrogate();
        if (isLetter && isBetween && !part.isEmpty())
            part += '_';
        isBetween = !isLetter;
        if (isPlain)
            part += character.toLower().toLatin1();
        else if (isLetter)
            part += 'u' + QByteArray::number(character.unicode(), 16);
        if (part.size() >= maxLength)
            break;
    }
    return part.left(maxLength);
}

QByteArray gaugePrefix(const QString &gaugeName)
{
    const QByteArray part = identifierPart(gaugeName);
    if (part.isEmpty())
        return "gauge";
    const bool startsWithDigit = part.front() >= '0' && part.front() <= '9';
    return startsWithDigit ? "gauge_" + part : part;
}

QByteArray commentText(const QString &name)
{
    QByteArray text = "\"";
    for (const QChar character : name) {
        const bool isPlain = character >= u' ' && character <= u'~' && character != u'*' &&
                             character != u'/' && character != u'\\' && character != u'?' &&
                             character != u'"';
        text += isPlain ? QByteArray(1, character.toLatin1())
                        : "<" + QByteArray::number(character.unicode(), 16).rightJustified(4, '0') + ">";
    }
    return text + '"';
}
