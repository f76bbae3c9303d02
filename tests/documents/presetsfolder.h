#ifndef PRESETSFOLDER_H
#define PRESETSFOLDER_H

#include <QCoreApplication>
#include <QDir>

/// The presets folder next to the test program. Exists, empty at first, during the lifetime of the object.
class PresetsFolder
{
public:
    PresetsFolder()
    {
        if (!QDir().mkpath(path()))
            qFatal("The presets folder cannot be created.");
    }
    ~PresetsFolder() { QDir(path()).removeRecursively(); }

    PresetsFolder(const PresetsFolder &) = delete;
    PresetsFolder &operator=(const PresetsFolder &) = delete;

    [[nodiscard]] static QString path()
    {
        return QCoreApplication::applicationDirPath() + QStringLiteral("/Presets");
    }
    [[nodiscard]] static QString filePath(const QString &fileName) { return path() + u'/' + fileName; }
};

#endif
