#include "xmlmutator.h"

#include "values.h"

#include <QByteArrayList>
#include <QStringConverter>

#include <algorithm>
#include <array>

namespace {

constexpr std::array versions{"2.2.0",
                              "2.2.1",
                              "2.2",
                              "2",
                              "2.10",
                              "3",
                              "2.2.0.0",
                              "2.2.0.1",
                              "2.1.99",
                              "10.0",
                              "02.02.01",
                              "2.3.0-beta",
                              "v2.3",
                              " 2.3 ",
                              "\n2.3\n",
                              "2..3",
                              ".3",
                              "3.",
                              "-3",
                              "+3",
                              "2147483647",
                              "2147483648",
                              "9.18446744073709551616",
                              "99999999999999999999999",
                              "newest",
                              "",
                              "\xd9\xa3.\xd9\xa0",
                              "2.3<!---->.0",
                              "2.<b>3</b>",
                              "2.2.&#49;",
                              "<![CDATA[2.9]]>"};

constexpr std::array names{"version", "url_lin",   "url_win",  "url_mac", "notes",      "Version", "release",
                           "a",       "b:version", "version.", "_",       "corvalence", "url_lin2"};

constexpr std::array attributes{" lang=\"en\"",
                                " a='1'",
                                " a=\"&lt;\"",
                                " xmlns=\"urn:x\"",
                                " xmlns:b=\"urn:b\"",
                                " xml:space=\"preserve\"",
                                " version='9'",
                                " a=\"&e;\"",
                                " b:c=''",
                                " x"};

constexpr std::array characterData{"Better labels.",
                                   "line\nline\r\nline",
                                   "&lt;b&gt;&amp;&quot;&apos;",
                                   "&#x41;&#66;",
                                   "&#xD800;",
                                   "&#0;",
                                   "&unknown;",
                                   "&e;",
                                   "<![CDATA[<version>9</version>]]>",
                                   "<![CDATA[]]>",
                                   "<!-- <version>9</version> -->",
                                   "<?php version 9 ?>",
                                   "https://downloads.example/c.tar.gz?a=1&amp;b=2",
                                   "javascript:alert(1)",
                                   "<img src='file:///etc/passwd'/>",
                                   "   ",
                                   "]]>",
                                   "a & b",
                                   "\xc3\xa9\xe2\x80\xa6\xf0\x9f\x95\xb0",
                                   "\xff",
                                   "\x01"};

constexpr std::array declarations{"<!ENTITY e \"text\">",
                                  "<!ENTITY e \"&e;&e;\">",
                                  "<!ENTITY % p \"<!ENTITY e 'x'>\">",
                                  "%p;",
                                  "<!ENTITY e SYSTEM \"file:///etc/passwd\">",
                                  "<!ELEMENT version ANY>",
                                  "<!ATTLIST version a CDATA \"x\" b CDATA #IMPLIED>",
                                  "<!NOTATION n SYSTEM \"n\">",
                                  "<!-- <!ENTITY c 'd'> -->",
                                  "<?pi ?>",
                                  " "};

constexpr std::array doctypes{"<!DOCTYPE r>", "<!DOCTYPE r SYSTEM \"r.dtd\">",
                              "<!DOCTYPE r PUBLIC \"-//x\" \"http://x.example/r.dtd\">", "<!DOCTYPE html>"};

constexpr std::array encodings{"UTF-8", "utf-8",  "UTF-16",       "ISO-8859-1", "US-ASCII",
                               "UTF-7", "UTF-32", "windows-1252", "Shift_JIS",  "nothing"};

QByteArray element(Random &random, int depth);

QByteArray content(Random &random, int depth)
{
    QByteArray inside;
    for (size_t parts = random.below(3); parts > 0; --parts) {
        if (depth > 0 && random.oneIn(4))
            inside += element(random, depth - 1);
        else
            inside += random.oneIn(8) ? someText(random) : QByteArray(random.pick(characterData));
    }
    return inside;
}

QByteArray tagged(const QByteArray &name, const QByteArray &inside, Random &random)
{
    const QByteArray attribute = random.oneIn(6) ? QByteArray(random.pick(attributes)) : QByteArray();
    if (inside.isEmpty() && random.oneIn(2))
        return '<' + name + attribute + "/>";
    return '<' + name + attribute + '>' + inside + "</" + name + '>';
}

QByteArray element(Random &random, int depth)
{
    const QByteArray name = random.pick(names);
    const bool version = name == "version" && !random.oneIn(8);
    return tagged(name, version ? someVersion(random) : content(random, depth), random);
}

QByteArray documentType(Random &random)
{
    if (random.oneIn(3))
        return random.pick(doctypes);
    QByteArray inside;
    for (size_t parts = random.below(4); parts > 0; --parts)
        inside += random.pick(declarations);
    return "<!DOCTYPE r [" + inside + "]>";
}

QByteArray prolog(Random &random)
{
    QByteArray start;
    if (random.oneIn(3))
        start += "<?xml version=\"1.0\" encoding=\"" + QByteArray(random.pick(encodings)) + "\"?>";
    if (random.oneIn(8))
        start += random.pick(characterData);
    if (random.oneIn(5))
        start += documentType(random);
    return start;
}

QByteArray inOtherEncoding(const QByteArray &xml, Random &random)
{
    constexpr std::array others{QStringConverter::Utf16, QStringConverter::Utf16BE, QStringConverter::Utf32LE,
                                QStringConverter::Latin1};
    QStringEncoder encoder(random.pick(others), QStringConverter::Flag::WriteBom);
    return encoder.encode(QString::fromUtf8(xml));
}

/// Tags, declarations and what stands between them, each on its own.
QByteArrayList pieces(const QByteArray &xml)
{
    QByteArrayList all;
    qsizetype start = 0;
    while (start < xml.size()) {
        const char end = xml.at(start) == '<' ? '>' : '<';
        qsizetype next = xml.indexOf(end, start + 1);
        next = next < 0 ? xml.size() : next + (end == '>' ? 1 : 0);
        all.append(xml.sliced(start, next - start));
        start = next;
    }
    return all;
}

QByteArray somePiece(Random &random)
{
    switch (random.below(6)) {
    case 0:
        return element(random, 2);
    case 1:
        return random.pick(characterData);
    case 2:
        return '<' + QByteArray(random.pick(names)) + random.pick(attributes) + '>';
    case 3:
        return "</" + QByteArray(random.pick(names)) + '>';
    case 4:
        return documentType(random);
    default:
        return prolog(random);
    }
}

void damagePieces(QByteArrayList &all, Random &random)
{
    const auto at = static_cast<qsizetype>(random.below(static_cast<size_t>(all.size())));
    const auto other = static_cast<qsizetype>(random.below(static_cast<size_t>(all.size())));
    switch (random.below(8)) {
    case 0:
        all.removeAt(at);
        break;
    case 1:
        all.insert(other, QByteArray(all.at(at)));
        break;
    case 2:
        all.swapItemsAt(at, other);
        break;
    case 3: // a tag gets an attribute
        if (all.at(at).endsWith('>') && !all.at(at).startsWith("</"))
            all[at].insert(all.at(at).size() - (all.at(at).endsWith("/>") ? 2 : 1), random.pick(attributes));
        break;
    case 4:
        all[at] = somePiece(random);
        break;
    case 5: // declarations without which nothing can be declared
        all.prepend(documentType(random));
        break;
    default:
        all.insert(at, somePiece(random));
        break;
    }
    if (all.isEmpty())
        all.append(QByteArray());
}

/// Puts an element into elements within elements, about as many as may be or any number of them.
QByteArray nested(QByteArrayList all, Random &random)
{
    const auto levels = static_cast<qsizetype>(random.oneIn(2) ? 248 + random.below(16) : random.below(400));
    const QByteArray name = random.pick(names);
    // Before the last end tag, most likely, so that what was well-formed is so still.
    all.insert(all.size() - (all.last().startsWith("</") ? 1 : 2),
               QByteArray('<' + name + '>').repeated(levels) + element(random, 1) +
                   QByteArray("</" + name + '>').repeated(levels));
    return all.join();
}

/// Repeats something until the description is about as large as one may be, or larger.
QByteArray swollen(QByteArrayList all, size_t mostBytes, Random &random)
{
    const auto at = static_cast<qsizetype>(random.below(static_cast<size_t>(all.size())));
    const auto room = static_cast<qsizetype>(mostBytes) - all.join().size();
    const bool intoTag = all.at(at).endsWith('>') && random.oneIn(2);
    const QByteArray once = intoTag ? QByteArray(random.pick(attributes)) : somePiece(random);
    const qsizetype times = std::max<qsizetype>(room, 0) / std::max<qsizetype>(once.size(), 1);
    if (intoTag) {
        // Each attribute needs a name of its own.
        QByteArray many;
        while (many.size() < room - 12)
            many += " a" + QByteArray::number(many.size()) + "=''";
        all[at].insert(all.at(at).size() - 1, many);
    } else {
        all.insert(at, once.repeated(times));
    }
    return all.join();
}

} // namespace

QByteArray someVersion(Random &random)
{
    if (random.oneIn(3)) {
        QByteArray version = QByteArray::number(random.below(4));
        for (size_t parts = random.below(4); parts > 0; --parts)
            version += '.' + QByteArray::number(random.below(4));
        return version;
    }
    return random.oneIn(50) ? QByteArray("9.").repeated(static_cast<qsizetype>(random.below(1000)))
                            : QByteArray(random.pick(versions));
}

QByteArray someVersionDescription(Random &random)
{
    QByteArray inside;
    for (size_t children = random.below(7); children > 0; --children)
        inside += element(random, 3);
    const QByteArray xml = prolog(random) + tagged(random.pick(names), inside, random);
    return random.oneIn(10) ? inOtherEncoding(xml, random) : xml;
}

QByteArray damagedVersionDescription(const QByteArray &xml, size_t mostBytes, Random &random)
{
    QByteArrayList all = pieces(xml);
    if (all.isEmpty())
        return someVersionDescription(random);
    if (random.oneIn(20) && all.size() > 1)
        return nested(all, random);
    if (random.oneIn(400))
        return swollen(all, mostBytes, random);
    if (random.oneIn(30))
        return inOtherEncoding(xml, random);
    for (size_t damages = 1 + random.below(4); damages > 0; --damages)
        damagePieces(all, random);
    return all.join();
}

QByteArray crossedVersionDescriptions(const QByteArray &first, const QByteArray &second, Random &random)
{
    const QByteArrayList start = pieces(first);
    const QByteArrayList end = pieces(second);
    const auto startAt = static_cast<qsizetype>(random.below(static_cast<size_t>(start.size()) + 1));
    const auto endAt = static_cast<qsizetype>(random.below(static_cast<size_t>(end.size()) + 1));
    return start.first(startAt).join() + end.sliced(endAt).join();
}
