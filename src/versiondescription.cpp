#include "versiondescription.h"

#include <QDomDocument>
#include <QStringDecoder>
#include <QVersionNumber>
#include <QXmlStreamReader>

#include <algorithm>

namespace {

constexpr qsizetype largestDescription = qsizetype(1024) * 1024;
constexpr int deepestNesting = 256;
constexpr qsizetype mostAttributes = 5000;
/// An attribute's name, type and value in a document type take at least so many characters.
constexpr qsizetype shortestDeclaration = 10;

/// How many attributes the text could hold: equals signs before a quote, in the encoding that it declares or
/// begins with. A zero byte is what another encoding leaves between the two.
qsizetype possibleAttributes(const QByteArray &xml, const QString &declaredEncoding)
{
    const auto begunEncoding = QStringConverter::encodingForData(xml).value_or(QStringConverter::Utf8);
    QStringDecoder decoder = declaredEncoding.isEmpty()
                                 ? QStringDecoder(begunEncoding)
                                 : QStringDecoder(declaredEncoding.toLatin1().constData());
    const QString text = decoder.isValid() ? QString(decoder(xml)) : QString::fromLatin1(xml);

    // By hand: a regular expression begins anew for each match, and checks all of the rest each time.
    qsizetype count = 0;
    for (qsizetype sign = text.indexOf(QLatin1Char('=')); sign >= 0;
         sign = text.indexOf(QLatin1Char('='), sign + 1)) {
        const QChar *const after = std::find_if_not(text.cbegin() + sign + 1, text.cend(),
                                                    [](QChar c) { return c.isNull() || c.isSpace(); });
        if (after != text.cend() && (*after == QLatin1Char('"') || *after == QLatin1Char('\'')))
            ++count;
    }
    return count;
}

/// Whether the text would cost QDomDocument more than a description is worth: it builds nested elements,
/// expands entities and looks for doubled attributes in time and memory that grow with the square of the
/// text.
bool isCostly(const QByteArray &xml)
{
    if (xml.size() > largestDescription)
        return true;
    QXmlStreamReader reader(xml);
    // As QDomDocument reads: an undeclared prefix is no error, and must not end this look early.
    reader.setNamespaceProcessing(false);
    int depth = 0;
    qsizetype attributes = 0;
    qsizetype declaredAttributes = 0; // at most
    while (!reader.atEnd() && attributes <= mostAttributes) {
        switch (reader.readNext()) {
        case QXmlStreamReader::StartDocument:
            // Counted ahead, since this look would itself take long over a tag of many attributes.
            if (possibleAttributes(xml, reader.documentEncoding().toString()) > mostAttributes)
                return true;
            break;
        case QXmlStreamReader::DTD:
            // Parameter entities count, too. The word in a comment or an instruction declares nothing.
            if (!reader.entityDeclarations().isEmpty())
                return true;
            if (reader.text().contains(QLatin1String("<!ATTLIST")))
                declaredAttributes = reader.text().size() / shortestDeclaration;
            attributes += declaredAttributes;
            break;
        case QXmlStreamReader::StartElement:
            if (++depth > deepestNesting)
                return true;
            // Those that are declared with a value come to every element, written or not.
            attributes += declaredAttributes;
            break;
        case QXmlStreamReader::EndElement:
            --depth;
            break;
        default:
            break;
        }
    }
    return attributes > mostAttributes;
}

} // namespace

std::optional<VersionDescription> readVersionDescription(const QByteArray &xml)
{
    QDomDocument document;
    if (isCostly(xml) || !document.setContent(xml))
        return std::nullopt;

    const QDomElement root = document.documentElement();
    const auto childText = [&root](const char *name) {
        return root.firstChildElement(QLatin1String(name)).text();
    };
    // "url_win" and "url_mac" name the downloads for other platforms.
    return VersionDescription{childText("version"), childText("url_lin"), childText("notes")};
}

bool isNewerVersion(const QString &published, const QString &own)
{
    return QVersionNumber::compare(QVersionNumber::fromString(published), QVersionNumber::fromString(own)) >
           0;
}
