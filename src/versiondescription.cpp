#include "versiondescription.h"

#include <QDomDocument>
#include <QVersionNumber>
#include <QXmlStreamReader>

namespace {

constexpr int maxDepth = 256;

/// Whether a document tree of @a xml can be built with little time and memory. False for XML that is not
/// well-formed, too.
bool isCheapToRead(const QByteArray &xml)
{
    if (xml.size() > maxVersionDescriptionSize)
        return false;
    QXmlStreamReader reader(xml);
    reader.setNamespaceProcessing(false); // as QDomDocument::setContent() does
    int depth = 0;
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
        case QXmlStreamReader::DTD:
            // An internal subset can declare entities, which expand, and attributes of every element.
            if (reader.text().contains(QLatin1Char('[')))
                return false;
            break;
        case QXmlStreamReader::StartElement:
            if (++depth > maxDepth)
                return false;
            break;
        case QXmlStreamReader::EndElement:
            --depth;
            break;
        default:
            break;
        }
    }
    return !reader.hasError();
}

} // namespace

std::optional<VersionDescription> readVersionDescription(const QByteArray &xml)
{
    QDomDocument document;
    if (!isCheapToRead(xml) || !document.setContent(xml))
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
