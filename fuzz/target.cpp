#include "target.h"

#include <QLocale>
#include <QtGlobal>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

QByteArray toBytes(const uint8_t *data, size_t size)
{
    return {reinterpret_cast<const char *>(data), static_cast<qsizetype>(size)};
}

size_t store(const QByteArray &bytes, uint8_t *data, size_t maxSize)
{
    const size_t size = std::min(static_cast<size_t>(bytes.size()), maxSize);
    std::memcpy(data, bytes.constData(), size);
    return size;
}

void prepareQt()
{
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    QLocale::setDefault(QLocale::c());
}

void require(bool kept, const char *promise)
{
    if (kept)
        return;
    std::fprintf(stderr, "broken promise: %s\n", promise);
    std::abort();
}
