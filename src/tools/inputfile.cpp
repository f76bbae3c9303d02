#include "tools/inputfile.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace {

constexpr qint64 bytesPerMiB = qint64(1024) * 1024;

// A layer takes about 1 KiB of memory, but may be two bytes long in the file.
constexpr qsizetype maxLayerCount = 100'000;

QString tooLarge(qint64 maxSize, const QString &limitOption)
{
    const QString size = QStringLiteral("It is larger than %1 MiB").arg(maxSize);
    return limitOption.isEmpty() ? size + u'.' : size + QStringLiteral(" (%1 raises this).").arg(limitOption);
}

/// Reads an open file until its end or the limit, whatever size the file says it has.
QString readAll(QFile &file, qint64 maxSize, QByteArray &bytes, const QString &limitOption)
{
    constexpr qint64 chunkSize = qint64(64) * 1024;
    while (bytes.size() <= maxSize * bytesPerMiB) {
        const QByteArray chunk = file.read(chunkSize);
        if (file.error() != QFileDevice::NoError)
            return file.errorString();
        if (chunk.isEmpty())
            return {};
        bytes.append(chunk);
    }
    return tooLarge(maxSize, limitOption);
}

QString checkJson(const QByteArray &json)
{
    // An array of n elements has n - 1 commas, so that most files need not be parsed twice.
    if (json.count(',') < maxLayerCount)
        return {};
    const qsizetype layerCount =
        QJsonDocument::fromJson(json).object().value(QLatin1String("layers")).toArray().size();
    if (layerCount <= maxLayerCount)
        return {};
    return QStringLiteral("It has %1 layers, more than the limit of %2.").arg(layerCount).arg(maxLayerCount);
}

QString checkOlderForm(const QString &text)
{
    constexpr std::array numbers{0, 1, 2};
    constexpr std::array flags{3, 4, 20, 41, 46, 47};
    constexpr std::array counts{5, 6, 7, 44};
    constexpr qsizetype minFieldCount = 50;

    const QStringList fields = text.split(QLatin1Char(','));
    if (fields.size() < minFieldCount)
        return {}; // The reader has a message for this.
    const auto isFinite = [&fields](int index) {
        bool isNumber = false;
        const double value = fields.at(index).toDouble(&isNumber);
        return isNumber && std::isfinite(value);
    };
    const auto isFlag = [&fields](int index) {
        return fields.at(index) == QLatin1String("0") || fields.at(index) == QLatin1String("1");
    };
    const auto isInteger = [&fields](int index) {
        bool isNumber = false;
        (void)fields.at(index).toInt(&isNumber);
        return isNumber;
    };
    if (std::ranges::all_of(numbers, isFinite) && std::ranges::all_of(flags, isFlag) &&
        std::ranges::all_of(counts, isInteger))
        return {};
    return QStringLiteral("It is not a gauge: it is neither JSON nor the older form.");
}

} // namespace

QString readInputFile(const QString &path, qint64 maxSize, QByteArray &bytes, const QString &limitOption)
{
    const QFileInfo info(path);
    if (info.isDir())
        return QStringLiteral("It is a folder.");
    if (info.exists() && !info.isFile())
        return QStringLiteral("It is not a regular file.");
    if (info.size() > maxSize * bytesPerMiB)
        return tooLarge(maxSize, limitOption);
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return file.errorString();
    return readAll(file, maxSize, bytes, limitOption);
}

QString readStandardInput(qint64 maxSize, QByteArray &bytes, const QString &limitOption)
{
    QFile file;
    if (!file.open(stdin, QIODevice::ReadOnly))
        return file.errorString();
    return readAll(file, maxSize, bytes, limitOption);
}

QString checkIsGauge(const QByteArray &bytes)
{
    const QByteArray trimmed = bytes.trimmed();
    if (trimmed.contains('\0'))
        return QStringLiteral("It is not a gauge: it holds NUL bytes.");
    for (const char *mark : {"\xef\xbb\xbf", "\xff\xfe", "\xfe\xff"}) {
        if (trimmed.startsWith(mark))
            return QStringLiteral("It is not a gauge: it begins with a byte-order mark.");
    }
    if (trimmed.startsWith('['))
        return QStringLiteral("It is not a gauge: it begins with \"[\".");
    return trimmed.startsWith('{') ? checkJson(trimmed) : checkOlderForm(QString::fromUtf8(trimmed));
}
