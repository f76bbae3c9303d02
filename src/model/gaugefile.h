#ifndef GAUGEFILE_H
#define GAUGEFILE_H

#include "model/gaugedata.h"

#include <QByteArray>
#include <QList>

/// Converts layers to the bytes of a gauge file and back. Does no file access.
class gaugeFile
{
public:
    gaugeFile() = delete;

    /// Returns an indented JSON document in UTF-8. read() rejects the document of an empty list.
    [[nodiscard]] static QByteArray write(const QList<gaugeLayer> &layers);

    /// Reads a JSON document or, when the bytes do not start with "{", the comma-separated format of earlier
    /// versions, which gives one unnamed layer.
    ///
    /// Returns true and fills @a layers with at least one layer. On failure returns false, clears @a layers
    /// and sets @a error to a translated message. @a error may be null. If @a layers is null, returns false
    /// and does nothing else.
    static bool read(const QByteArray &bytes, QList<gaugeLayer> *layers, QString *error);
};

#endif
