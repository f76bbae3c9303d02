#ifndef OUTPUTFILE_H
#define OUTPUTFILE_H

#include <QByteArray>
#include <QString>

/// What happens to a file that exists already.
enum class ExistingFile { Refuse, Overwrite, Keep };

/// Identifies a file: the same text for all paths and links that lead to it. Empty when there is no such
/// file.
[[nodiscard]] QString fileId(const QString &path);

/// Whether @a path names this process's standard output, as /dev/stdout does.
[[nodiscard]] bool isStandardOutput(const QString &path);

/// What became of an output.
struct WriteResult
{
    bool written = false;
    QString reason; ///< Why not. Empty when it was written or an existing file was kept.
};

/// Returns what writeOutputFile() would do to a file that already exists, without doing it. If the file is
/// kept, written is false and reason is empty.
[[nodiscard]] WriteResult checkOutputFile(const QString &path, ExistingFile existing);

/// Writes a file whole or not at all, and creates its folder. Only regular files are replaced, and only with
/// ExistingFile::Overwrite, even if the file appears while this function runs. Standard output and the null
/// device are written to.
[[nodiscard]] WriteResult writeOutputFile(const QString &path, const QByteArray &bytes,
                                          ExistingFile existing);

#endif
