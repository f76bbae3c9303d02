#ifndef GAUGEFILE_H
#define GAUGEFILE_H

#include "model/gaugedata.h"

#include <QByteArray>
#include <QList>

/// Turns layers into the bytes of a gauge file and back. Touches no file and keeps no state.
class gaugeFile
{
public:
    gaugeFile() = delete;

    /// The file's bytes: an indented JSON document in UTF-8. An empty list gives a document without layers,
    /// which read() refuses.
    [[nodiscard]] static QByteArray write(const QList<gaugeLayer> &layers);

    /// Reads a document of today's form, or one of the comma-separated form of earlier versions (anything
    /// that does not begin with "{"), which yields one layer without a name.
    ///
    /// Returns true with at least one layer in @a layers. Otherwise returns false, leaves @a layers empty and
    /// puts a translated message for the user into @a error. A null @a error is allowed; with null @a layers
    /// nothing at all is done.
    static bool read(const QByteArray &bytes, QList<gaugeLayer> *layers, QString *error);
};

#endif
