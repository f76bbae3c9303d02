#include "versiondescription.h"

#include <QDomDocument>
#include <QVersionNumber>
#include <QXmlStreamReader>

namespace {

constexpr qsizetype largestDescription = qsizetype(1024) * 1024;
constexpr int deepestNesting = 256;

/// Whether the text would cost QDomDocument more than a description is worth: it builds nested elements and
/// expands entities in time and memory that grow with the square of the text.
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
        case QXmlStreamReader::DTD:
            // Parameter entities count, too. The word in a comment or an instruction declares nothing.
            if (!reader.entityDeclarations().isEmpty())
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
