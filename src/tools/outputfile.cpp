#include "tools/outputfile.h"

#include "tools/terminal.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>

#ifdef Q_OS_WIN
#include <io.h>
#include <windows.h>
#else
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace {

enum class Target { Nothing, RegularFile, StandardOutput, NullDevice, Other };

QString systemError(int error)
{
    return QString::fromStdString(std::generic_category().message(error));
}

#ifndef Q_OS_WIN
bool isNullDevice(const QString &path)
{
    struct stat device = {};
    struct stat null = {};
    return stat(QFile::encodeName(path).constData(), &device) == 0 && stat("/dev/null", &null) == 0 &&
           S_ISCHR(device.st_mode) && device.st_rdev == null.st_rdev;
}
#endif

Target targetOf(const QString &path)
{
    const QFileInfo info(path);
    if (!info.exists() && !info.isSymLink())
        return Target::Nothing;
    if (isStandardOutput(path))
        return Target::StandardOutput;
    if (info.isFile())
        return Target::RegularFile;
#ifndef Q_OS_WIN
    if (isNullDevice(path))
        return Target::NullDevice;
#endif
    return Target::Other;
}

/// Renames without replacing. Returns 0 or an error number.
int renameToNewName(const QString &from, const QString &to)
{
#ifdef Q_OS_WIN
    const auto text = [](const QString &path) { return QDir::toNativeSeparators(path).toStdWString(); };
    if (MoveFileExW(text(from).c_str(), text(to).c_str(), 0) != 0)
        return 0;
    return GetLastError() == ERROR_ALREADY_EXISTS ? EEXIST : EACCES;
#else
    const QByteArray source = QFile::encodeName(from);
    const QByteArray target = QFile::encodeName(to);
#ifdef RENAME_NOREPLACE
    if (renameat2(AT_FDCWD, source.constData(), AT_FDCWD, target.constData(), RENAME_NOREPLACE) == 0)
        return 0;
    if (errno != EINVAL && errno != ENOSYS)
        return errno;
#endif
    // Some network file systems have no such rename, but hard links.
    if (link(source.constData(), target.constData()) != 0)
        return errno;
    unlink(source.constData());
    return 0;
#endif
}

/// Renames and replaces. Returns 0 or an error number.
int renameOver(const QString &from, const QString &to)
{
    std::error_code error;
    std::filesystem::rename(QFileInfo(from).filesystemFilePath(), QFileInfo(to).filesystemFilePath(), error);
    return error.value();
}

/// Makes sure that the bytes are on the disk: some file systems report only now that there is no space.
bool syncToDisk(const QFile &file)
{
#ifdef Q_OS_WIN
    return _commit(file.handle()) == 0;
#else
    return fsync(file.handle()) == 0 || errno == EINVAL || errno == ENOTSUP || errno == EROFS;
#endif
}

bool writeAll(QFile &file, const QByteArray &bytes)
{
    qsizetype done = 0;
    while (done < bytes.size()) {
        const qint64 count = file.write(bytes.constData() + done, bytes.size() - done);
        if (count <= 0)
            return false;
        done += count;
    }
    return true;
}

/// Writes a new file. Unbuffered, so that no error is lost. Returns an empty text, or the reason for a
/// failure.
QString writeNewFile(QFile &file, const QByteArray &bytes)
{
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered))
        return file.errorString();
    if (!writeAll(file, bytes))
        return file.errorString();
    if (!syncToDisk(file))
        return systemError(errno);
    file.close();
    return file.error() == QFileDevice::NoError ? QString() : file.errorString();
}

QString alreadyExists(const QString &path)
{
    return QStringLiteral("%1 already exists (--overwrite replaces it, --keep keeps it).").arg(path);
}

/// Writes a file beside the target and gives it the target's name at the end.
WriteResult writeViaTemporaryFile(const QString &path, const QByteArray &bytes, bool replaces,
                                  ExistingFile existing)
{
    // A link stays; the file that it leads to is replaced.
    const QString target = replaces ? QFileInfo(path).canonicalFilePath() : path;
    const QString folder = QFileInfo(target).path();
    QFile temporary(QStringLiteral("%1/.corvalence-%2.tmp")
                        .arg(folder, QString::number(QRandomGenerator::system()->generate64(), 36)));
    const QString reason = writeNewFile(temporary, bytes);
    if (!reason.isEmpty()) {
        temporary.remove();
        return {false, QStringLiteral("%1: %2").arg(path, reason)};
    }
    if (replaces)
        temporary.setPermissions(QFile::permissions(target));
    const int error =
        replaces ? renameOver(temporary.fileName(), target) : renameToNewName(temporary.fileName(), target);
    if (error == 0)
        return {true, {}};
    temporary.remove();
    if (error != EEXIST)
        return {false, QStringLiteral("%1: %2").arg(path, systemError(error))};
    // Another process made the file in the meantime.
    if (existing == ExistingFile::Overwrite && targetOf(path) == Target::RegularFile)
        return writeViaTemporaryFile(path, bytes, true, existing);
    return {false, existing == ExistingFile::Keep ? QString() : alreadyExists(path)};
}

} // namespace

QString fileId(const QString &path)
{
#ifdef Q_OS_WIN
    return QFileInfo(path).canonicalFilePath();
#else
    struct stat status = {};
    if (stat(QFile::encodeName(path).constData(), &status) != 0)
        return {};
    return QStringLiteral("%1:%2").arg(status.st_dev).arg(status.st_ino);
#endif
}

bool isStandardOutput(const QString &path)
{
    const QString name = QDir::cleanPath(path);
    return name == QLatin1String("/dev/stdout") || name == QLatin1String("/dev/fd/1") ||
           name == QLatin1String("/proc/self/fd/1");
}

WriteResult checkOutputFile(const QString &path, ExistingFile existing)
{
    const Target target = targetOf(path);
    if (target == Target::Nothing || target == Target::StandardOutput || target == Target::NullDevice)
        return {true, {}};
    if (!QFileInfo::exists(path))
        return {false, QStringLiteral("%1 is a link to a file that does not exist.").arg(path)};
    if (existing == ExistingFile::Keep)
        return {};
    if (QFileInfo(path).isDir())
        return {false, QStringLiteral("%1 is a folder.").arg(path)};
    if (target != Target::RegularFile)
        return {false, QStringLiteral("%1 is not a regular file.").arg(path)};
    if (existing == ExistingFile::Refuse)
        return {false, alreadyExists(path)};
    return {true, {}};
}

WriteResult writeOutputFile(const QString &path, const QByteArray &bytes, ExistingFile existing)
{
    WriteResult check = checkOutputFile(path, existing);
    if (!check.written)
        return check;
    switch (targetOf(path)) {
    case Target::StandardOutput:
        check.reason = writeStandardOutput(bytes);
        check.written = check.reason.isEmpty();
        return check;
    case Target::NullDevice:
        return check;
    case Target::RegularFile:
        return writeViaTemporaryFile(path, bytes, existing == ExistingFile::Overwrite, existing);
    case Target::Nothing:
    case Target::Other:
        break;
    }
    const QString folder = QFileInfo(path).path();
    std::error_code error;
    std::filesystem::create_directories(QFileInfo(folder).filesystemFilePath(), error);
    if (error) {
        return {false, QStringLiteral("The folder %1 cannot be created: %2")
                           .arg(folder, QString::fromStdString(error.message()))};
    }
    return writeViaTemporaryFile(path, bytes, false, existing);
}
