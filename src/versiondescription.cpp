#include "versiondescription.h"

#include <QDomDocument>
#include <QRegularExpression>
#include <QStringDecoder>
#include <QVersionNumber>
#include <QXmlStreamReader>

namespace {

constexpr qsizetype largestDescription = qsizetype(1024) * 1024;
constexpr int deepestNesting = 256;
constexpr qsizetype mostAttributes = 5000;

/// How many attributes the text could hold: equals signs before a quote, in the encoding that it declares or
/// begins with. A zero byte is what another encoding leaves between the two.
qsizetype possibleAttributes(const QByteArray &xml, const QString &declaredEncoding)
{
    static const QRegularExpression assignment(QStringLiteral(R"(=[\s\x00]*["'])"));
    const auto begunEncoding = QStringConverter::encodingForData(xml).value_or(QStringConverter::Utf8);
    QStringDecoder decoder = declaredEncoding.isEmpty()
                                 ? QStringDecoder(begunEncoding)
                                 : QStringDecoder(declaredEncoding.toLatin1().constData());
    const QString text = decoder.isValid() ? QString(decoder(xml)) : QString::fromLatin1(xml);
    return text.count(assignment);
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
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
        case QXmlStreamReader::StartDocument:
            // Counted ahead, since this look would itself take long over a tag of many attributes.
            if (possibleAttributes(xml, reader.documentEncoding().toString()) > mostAttributes)
                return true;
            break;
        case QXmlStreamReader::DTD:
            // Parameter entities count, too. The word in a comment or an instruction declares nothing.
            // Attributes that are declared with a value come to every element, written or not.
            if (!reader.entityDeclarations().isEmpty() || reader.text().contains(QLatin1String("<!ATTLIST")))
                return true;
            break;
        case QXmlStreamReader::StartElement:
            if (++depth > deepestNesting)
                return true;
            break;
        case QXmlStreamReader::EndElement:
            --depth;
            break;
        default:
            break;
        }
    }
    return false;
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
