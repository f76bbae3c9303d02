#include "support/files.h"

#include <QFile>

void writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.flush())
        qFatal("%s cannot be written: %s", qPrintable(path), qPrintable(file.errorString()));
}

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString testDataPath(const QString &name)
{
    return QStringLiteral(CORVALENCE_TEST_DATA "/") + name;
}
