#ifndef PROJECTINFO_H
#define PROJECTINFO_H

#include <QLatin1StringView>

// The host of the version description, and the project's web page. Distributors set them with compile
// definitions or with CMake cache variables of the same names.
#ifndef CORVALENCE_UPDATE_HOST
#define CORVALENCE_UPDATE_HOST "downloads.corvalence.example"
#endif
#ifndef CORVALENCE_WEB_PAGE
#define CORVALENCE_WEB_PAGE "https://corvalence.example/"
#endif

/// The name, the version and the addresses of the project.
namespace projectInfo {

inline constexpr QLatin1StringView name("Corvalence");
/// CMake reads the project's version from this line.
inline constexpr QLatin1StringView version("2.2.0");

/// The address of the published version description.
inline constexpr QLatin1StringView versionXmlUrl("https://" CORVALENCE_UPDATE_HOST
                                                 "/downloads/Corvalence_version.xml");
/// The address that "Visit Site" opens.
inline constexpr QLatin1StringView webPageUrl(CORVALENCE_WEB_PAGE);

} // namespace projectInfo

#endif
