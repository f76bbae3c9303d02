// The reader of the version description and the comparison of versions.

#include "support/random.h"
#include "target.h"
#include "values.h"
#include "versiondescription.h"
#include "xmlmutator.h"

#include <QDomDocument>
#include <QMap>
#include <QStringList>
#include <QXmlStreamReader>

#include <algorithm>
#include <optional>

namespace {

constexpr int maxElementDepth = 256;

/// What a stream reader finds in a description. The code under test uses QDomDocument.
struct Content
{
    bool isWellFormed = false;
    bool hasInternalSubset = false;
    int depth = 0;
    QMap<QString, QString> texts; ///< Of the first children of the root with each name.
};

Content readContent(const QByteArray &xml)
{
    Content content;
    QXmlStreamReader reader(xml);
    reader.setNamespaceProcessing(false);
    int depth = 0;
    QString *text = nullptr;
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isDTD()) {
            content.hasInternalSubset = reader.text().contains(QLatin1Char('['));
        } else if (reader.isStartElement()) {
            content.depth = std::max(content.depth, ++depth);
            const QString name = reader.qualifiedName().toString();
            if (depth == 2)
                text = content.texts.contains(name) ? nullptr : &content.texts[name];
        } else if (reader.isEndElement()) {
            if (--depth < 2)
                text = nullptr;
        } else if (reader.isCharacters() && text != nullptr) {
            *text += reader.text();
        }
    }
    content.isWellFormed = !reader.hasError();
    return content;
}

/// QDomDocument removes some white space.
QString withoutSpace(QString text)
{
    return text.removeIf([](QChar c) { return c.isSpace(); });
}

void checkDescription(const QByteArray &xml, const std::optional<VersionDescription> &description)
{
    if (xml.size() > maxVersionDescriptionSize) {
        require(!description, "a description above the size limit is rejected");
        return;
    }
    const Content content = readContent(xml);
    if (!description) {
        // QDomDocument rejects some documents that the stream reader accepts, such as two document types.
        require(!content.isWellFormed || content.depth > maxElementDepth || content.hasInternalSubset ||
                    !QDomDocument().setContent(xml),
                "well-formed XML within the limits is read");
        return;
    }
    require(content.isWellFormed, "XML that is not well-formed is rejected");
    require(content.depth <= maxElementDepth, "deep nesting is rejected");
    require(!content.hasInternalSubset, "a document type with an internal subset is rejected");
    for (const auto &[name, text] : {std::pair("version", description->version),
                                     {"url_lin", description->downloadUrl},
                                     {"notes", description->notes}})
        require(withoutSpace(text) == withoutSpace(content.texts.value(QLatin1String(name))),
                "the first child of the root with the name is read");
}

/// The numbers of a version such as "2.10.1". Nothing for other texts and for very large numbers.
std::optional<QList<int>> plainVersion(const QString &text)
{
    QList<int> numbers;
    for (const QString &part : text.split(QLatin1Char('.'))) {
        const bool isPlain =
            std::all_of(part.begin(), part.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
        if (!isPlain || part.isEmpty() || part.size() > 9)
            return std::nullopt;
        numbers.append(part.toInt());
    }
    return numbers;
}

void checkComparison(const QString &a, const QString &b)
{
    const bool newer = isNewerVersion(a, b);
    require(!newer || !isNewerVersion(b, a), "of two versions one at most is newer");
    require(!newer || !a.isEmpty(), "an empty version is not newer");
    const auto numbersOfA = plainVersion(a);
    const auto numbersOfB = plainVersion(b);
    if (numbersOfA && numbersOfB)
        require(newer == (*numbersOfA > *numbersOfB), "versions are compared number by number");
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

    // The texts between tags are compared as versions.
    QStringList versions{QStringLiteral("2.2.0"), QStringLiteral("2.10"), QString()};
    for (const QByteArray &piece : bytes.left(500).split('>').mid(0, 4))
        versions.append(QString::fromUtf8(piece.split('<').first()));
    if (description)
        versions.append(description->version);
    for (const QString &a : versions) {
        for (const QString &b : versions)
            checkComparison(a, b);
    }
    return 0;
}

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t maxSize, unsigned int seed)
{
    Random random(seed);
    QByteArray xml = toBytes(data, size);
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
        xml = damagedVersionDescription(xml, maxVersionDescriptionSize, random);
        break;
    }
    return store(xml, data, maxSize);
}

extern "C" size_t LLVMFuzzerCustomCrossOver(const uint8_t *data1, size_t size1, const uint8_t *data2,
                                            size_t size2, uint8_t *out, size_t maxOutSize, unsigned int seed)
{
    Random random(seed);
    return store(joinedVersionDescriptions(toBytes(data1, size1), toBytes(data2, size2), random), out,
                 maxOutSize);
}
