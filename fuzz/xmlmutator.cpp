#include "xmlmutator.h"

#include "values.h"

#include <QByteArrayList>
#include <QStringConverter>

#include <array>

namespace {

const QByteArrayList versions =
    QByteArray(
        "2.2.0|2.2.1|2.2|2|2.10|3|2.2.0.0|2.1.99|10.0|02.02.01|2.3.0-beta|v2.3| 2.3 "
        "|\n2.3\n|2..3|.3|3.|-3|+3|"
        "2147483647|2147483648|9.18446744073709551616|99999999999999999999999|newest||\xd9\xa3.\xd9\xa0|"
        "2.3<!---->.0|2.<b>3</b>|2.2.&#49;|<![CDATA[2.9]]>")
        .split('|');

const QByteArrayList names =
    QByteArray("version url_lin url_win notes Version release a b:version version. _ url_lin2").split(' ');

const QByteArrayList attributes = QByteArray(" lang=\"en\"| a='1'| a=\"&lt;\"| xmlns=\"urn:x\"| "
                                             "xmlns:b=\"urn:b\"| xml:space=\"preserve\"| version='9'|"
                                             " a=\"&e;\"| b:c=''| x")
                                      .split('|');

const QByteArrayList contents =
    QByteArray(
        "Better "
        "labels.|line\nline\r\nline|&lt;b&gt;&amp;&quot;&apos;|&#x41;&#66;|&#xD800;|&#0;|&unknown;|&e;|"
        "<![CDATA[<version>9</version>]]>|<![CDATA[]]>|<!-- <version>9</version> -->|<?php version 9 ?>|"
        "https://downloads.example/c.tar.gz?a=1&amp;b=2|<img src='file:///etc/passwd'/>|   |]]>|a & b|"
        "\xc3\xa9\xf0\x9f\x95\xb0|\xff|\x01")
        .split('|');

const QByteArrayList documentTypes =
    QByteArray(
        "<!DOCTYPE r>|<!DOCTYPE r SYSTEM \"r.dtd\">|<!DOCTYPE r PUBLIC \"-//x\" \"http://x.example/r.dtd\">|"
        "<!DOCTYPE r []>|<!DOCTYPE r [<!ENTITY e \"text\">]>|<!DOCTYPE r [<!ENTITY e \"&e;&e;\">]>|"
        "<!DOCTYPE r [<!ENTITY % p \"<!ENTITY e 'x'>\"> %p;]>|<!DOCTYPE r [<!ENTITY e SYSTEM "
        "\"file:///e\">]>|"
        "<!DOCTYPE r [<!ATTLIST version a CDATA \"x\">]>|<!DOCTYPE r [<!-- <!ENTITY c 'd'> --><?pi ?>]>")
        .split('|');

const QByteArrayList encodings =
    QByteArray("UTF-8 UTF-16 ISO-8859-1 US-ASCII UTF-32 windows-1252 nothing").split(' ');

QByteArray element(Random &random, int depth)
{
    const QByteArray name = random.pick(names);
    QByteArray inside;
    if (name == "version" && !random.oneIn(8)) {
        inside = someVersion(random);
    } else {
        for (int parts = random.between(0, 2); parts > 0; --parts) {
            if (depth > 0 && random.oneIn(3))
                inside += element(random, depth - 1);
            else
                inside += random.oneIn(8) ? someText(random) : random.pick(contents);
        }
    }
    const QByteArray attribute = random.oneIn(6) ? random.pick(attributes) : QByteArray();
    return '<' + name + attribute + '>' + inside + "</" + name + '>';
}

QByteArray prolog(Random &random)
{
    QByteArray text;
    if (random.oneIn(3))
        text += "<?xml version=\"1.0\" encoding=\"" + random.pick(encodings) + "\"?>";
    if (random.oneIn(5))
        text += random.pick(documentTypes);
    return text;
}

QByteArray encoded(const QByteArray &xml, Random &random)
{
    constexpr std::array others{QStringConverter::Utf16, QStringConverter::Utf16BE, QStringConverter::Utf32LE,
                                QStringConverter::Latin1};
    QStringEncoder encoder(random.pick(others), QStringConverter::Flag::WriteBom);
    return encoder.encode(QString::fromUtf8(xml));
}

/// Tags and the texts between them.
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
    switch (random.below(5)) {
    case 0:
        return random.pick(contents);
    case 1:
        return '<' + random.pick(names) + random.pick(attributes) + '>';
    case 2:
        return "</" + random.pick(names) + '>';
    case 3:
        return prolog(random);
    default:
        return element(random, 2);
    }
}

/// Nests an element in about as many others as are allowed.
QByteArray nested(Random &random)
{
    const int depth = random.between(248, 264);
    return QByteArray("<a>").repeated(depth) + element(random, 1) + QByteArray("</a>").repeated(depth);
}

} // namespace

QByteArray someVersion(Random &random)
{
    if (random.oneIn(50))
        return QByteArray("9.").repeated(random.between(0, 1000));
    if (random.oneIn(2))
        return random.pick(versions);
    QByteArray version = QByteArray::number(random.between(0, 3));
    for (int parts = random.between(0, 3); parts > 0; --parts)
        version += '.' + QByteArray::number(random.between(0, 3));
    return version;
}

QByteArray someVersionDescription(Random &random)
{
    QByteArray inside;
    for (int children = random.between(0, 6); children > 0; --children)
        inside += element(random, 3);
    if (random.oneIn(20))
        inside += nested(random);
    const QByteArray xml = prolog(random) + "<r>" + inside + "</r>";
    return random.oneIn(10) ? encoded(xml, random) : xml;
}

QByteArray damagedVersionDescription(const QByteArray &xml, qsizetype size, Random &random)
{
    if (random.oneIn(30))
        return encoded(xml, random);
    QByteArrayList all = pieces(xml);
    for (int i = random.between(1, 4); i > 0; --i)
        damagePieces(all, random, [&random] { return somePiece(random); });
    if (random.oneIn(400)) {
        const QByteArray piece = somePiece(random);
        all.insert(random.between(0, static_cast<int>(all.size())),
                   piece.repeated(size / std::max<qsizetype>(piece.size(), 1)));
    }
    return all.join();
}

QByteArray joinedVersionDescriptions(const QByteArray &first, const QByteArray &second, Random &random)
{
    const int cut = random.between(0, 20);
    return pieces(first).mid(0, cut).join() + pieces(second).mid(cut).join();
}
