#ifndef VERSIONDESCRIPTION_H
#define VERSIONDESCRIPTION_H

#include <QByteArray>
#include <QString>

#include <optional>

/// The published description of the newest version. A missing element gives an empty text.
struct VersionDescription
{
    QString version;
    QString downloadUrl; ///< For the platform that the program runs on.
    QString notes;
};

/// The size in bytes up to which a description is read. Qt's XML reader compares each attribute of an element
/// with every other one, so its time grows with the square of the size: at this size it takes up to half a
/// second, at 256 KiB up to ten.
inline constexpr qsizetype maxVersionDescriptionSize = qsizetype(64) * 1024;

/// Reads the published XML. The texts are those of the first direct children of the root with the names
/// "version", "url_lin" and "notes".
///
/// Returns nothing when the XML is not well-formed, or could take long to read: when it is larger than
/// maxVersionDescriptionSize, nests elements more than 256 levels deep, or has a document type with an
/// internal subset.
[[nodiscard]] std::optional<VersionDescription> readVersionDescription(const QByteArray &xml);

/// Whether @a published is a later version than @a own. A text that is not a version counts as the earliest.
[[nodiscard]] bool isNewerVersion(const QString &published, const QString &own);

#endif
