#ifndef VERSIONDESCRIPTION_H
#define VERSIONDESCRIPTION_H

#include <QByteArray>
#include <QString>

#include <optional>

/// What the project publishes of its newest version. A text that the description does not carry is empty.
struct VersionDescription
{
    QString version;
    QString downloadUrl; ///< For the platform that the program runs on.
    QString notes;
};

/// Reads the published XML: of each element the first direct child of the root by that name. Nothing when it
/// is not well-formed, and when it is not what anybody would publish: more than a mebibyte, elements nested
/// more than 256 deep, thousands of attributes, written or declared, or entities of its own, all of which can
/// cost a reader minutes and gigabytes.
[[nodiscard]] std::optional<VersionDescription> readVersionDescription(const QByteArray &xml);

/// Whether @a published is a later version than @a own. Text that is no version counts as earlier than any.
[[nodiscard]] bool isNewerVersion(const QString &published, const QString &own);

#endif
