#include "render/cnames.h"

#include <QCryptographicHash>

QByteArray identifierPart(const QString &name)
{
    constexpr qsizetype maxLength = 22; // compilers need not tell identifiers apart after 63 characters
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
    part.truncate(maxLength);
    // Two underscores in a row are reserved in C++.
    if (part.endsWith('_'))
        part.chop(1);
    return part;
}

QByteArray gaugePrefix(const QString &gaugeName)
{
    QByteArray part = identifierPart(gaugeName);
    const bool isWhole = QString::fromLatin1(part).replace(u'_', u' ') == gaugeName.toLower();
    const bool startsLikeOthers = part.isEmpty() || part.startsWith("gauge");
    if (part.isEmpty())
        part = "gauge";
    else if (part.front() >= '0' && part.front() <= '9')
        part.prepend("gauge_");
    if (isWhole && !startsLikeOthers)
        return part;
    constexpr qsizetype hashLength = 6;
    const QByteArray hash = QCryptographicHash::hash(gaugeName.toUtf8(), QCryptographicHash::Sha256).toHex();
    return part + '_' + hash.left(hashLength);
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
