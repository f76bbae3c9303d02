// The reader of the published version description, and the comparison of versions.

#include "promise.h"
#include "random.h"
#include "target.h"
#include "values.h"
#include "versiondescription.h"
#include "xmlmutator.h"

#include <QDomDocument>
#include <QStringList>
#include <QXmlStreamReader>

#include <algorithm>
#include <array>
#include <optional>

namespace {

constexpr int maxDepth = 256;

/// What a second reader, which builds no tree, finds in the description.
struct Look
{
    bool wellFormed = false;
    bool hasInternalSubset = false;
    int depth = 0;
    std::array<std::optional<QString>, 3> texts; ///< Of the first version, url_lin and notes below the root.
};

constexpr std::array elements{"version", "url_lin", "notes"};

Look lookAt(const QByteArray &xml)
{
    Look look;
    QXmlStreamReader reader(xml);
    reader.setNamespaceProcessing(false);
    int depth = 0;
    QString *current = nullptr;
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isDTD()) {
            look.hasInternalSubset = reader.text().contains(QLatin1Char('['));
        } else if (reader.isStartElement()) {
            look.depth = std::max(look.depth, ++depth);
            for (size_t i = 0; depth == 2 && i < elements.size(); ++i) {
                if (reader.qualifiedName() == QLatin1String(elements[i]) && !look.texts[i])
                    current = &look.texts[i].emplace();
            }
        } else if (reader.isEndElement()) {
            if (--depth < 2)
                current = nullptr;
        } else if (reader.isCharacters() && current != nullptr) {
            *current += reader.text();
        }
    }
    look.wellFormed = !reader.hasError();
    return look;
}

/// Without white space, of which a tree keeps less than a stream.
QString bare(const QString &text)
{
    QString result = text;
    result.removeIf([](QChar c) { return c.isSpace(); });
    return result;
}

void checkDescription(const QByteArray &xml, const std::optional<VersionDescription> &description)
{
    if (xml.size() > maxVersionDescriptionSize) {
        require(!description, "no description above the size limit is read");
        return;
    }
    const Look look = lookAt(xml);
    const bool isAcceptable = look.wellFormed && look.depth <= maxDepth && !look.hasInternalSubset;
    if (!description) {
        // The stream reader accepts some documents that QDomDocument rejects, such as those with two document
        // types.
        require(!isAcceptable || !QDomDocument().setContent(xml),
                "well-formed XML within the limits is read");
        return;
    }
    require(look.wellFormed, "XML that is not well-formed is not read");
    require(look.depth <= maxDepth, "deep nesting is rejected");
    require(!look.hasInternalSubset, "a document type with an internal subset is not read");
    const std::array found{description->version, description->downloadUrl, description->notes};
    for (size_t i = 0; i < found.size(); ++i)
        require(bare(found[i]) == bare(look.texts[i].value_or(QString())),
                "the first child of the root with the name is read");
}

/// The numbers of a plain version; nothing for anything that takes a library to make sense of.
std::optional<std::vector<int>> plainVersion(const QString &text)
{
    std::vector<int> numbers;
    for (const QString &part : text.split(QLatin1Char('.'))) {
        const bool plain =
            std::all_of(part.begin(), part.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
        if (!plain || part.isEmpty() || part.size() > 9)
            return std::nullopt;
        numbers.push_back(part.toInt());
    }
    return numbers;
}

void checkComparison(const QString &a, const QString &b)
{
    const bool newer = isNewerVersion(a, b);
    require(!newer || !isNewerVersion(b, a), "of two versions at most one is newer");
    require(isNewerVersion(a, b) == newer, "a comparison comes out the same again");
    const auto numbersOfA = plainVersion(a);
    const auto numbersOfB = plainVersion(b);
    if (numbersOfA && numbersOfB)
        require(newer == (*numbersOfA > *numbersOfB), "versions are compared number by number");
    if (a.isEmpty())
        require(!newer, "no version is not newer than any");
}

void checkVersions(QStringList versions)
{
    versions.append({QStringLiteral("2.2.0"), QStringLiteral("2.10"), QString()});
    for (const QString &a : versions) {
        for (const QString &b : versions) {
            checkComparison(a, b);
            for (const QString &c : versions) {
                require(!(isNewerVersion(a, b) && isNewerVersion(b, c)) || isNewerVersion(a, c),
                        "newer than a newer one is newer");
            }
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int * /*argc*/, char *** /*argv*/)
{
    prepareQt();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes = toBytes(data, size);
    const std::optional<VersionDescription> description = readVersionDescription(bytes);
    checkDescription(bytes, description);

    // Whatever stands between tags may be compared as a version too.
    QStringList versions;
    for (const QByteArray &piece : bytes.left(500).split('>'))
        versions.append(QString::fromUtf8(piece.split('<').first()));
    versions = versions.first(std::min<qsizetype>(versions.size(), 3));
    if (description)
        versions.append(description->version);
    checkVersions(versions);
    return 0;
}

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t maxSize, unsigned int seed)
{
    Random random(seed);
    QByteArray xml = toBytes(data, size);
    if (xml.size() > 50000 && !random.oneIn(20)) // large ones take long, and seldom teach anything
        return store(someVersionDescription(random), data, maxSize);
    switch (random.below(16)) {
    case 0:
        return LLVMFuzzerMutate(data, size, maxSize);
    case 1:
        damageBytes(xml, random);
        break;
    case 2:
    case 3:
    case 4:
        xml = someVersionDescription(random);
        break;
    default:
        xml = damagedVersionDescription(xml, maxSize, random);
        break;
    }
    return store(xml, data, maxSize);
}

extern "C" size_t LLVMFuzzerCustomCrossOver(const uint8_t *data1, size_t size1, const uint8_t *data2,
                                            size_t size2, uint8_t *out, size_t maxOutSize, unsigned int seed)
{
    Random random(seed);
    return store(crossedVersionDescriptions(toBytes(data1, size1), toBytes(data2, size2), random), out,
                 maxOutSize);
}
