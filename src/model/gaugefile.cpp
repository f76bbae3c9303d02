#include "model/gaugefile.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>
#include <QObject>

using namespace Qt::StringLiterals;

namespace {

bool fail(QString *error, const QString &message)
{
    if (error != nullptr)
        *error = message;
    return false;
}

bool readJson(const QByteArray &bytes, QList<gaugeLayer> &layers, QString *error)
{
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &parseError);
    if (document.isNull())
        return fail(error, parseError.errorString());

    const QJsonArray elements = document.object().value("layers"_L1).toArray();
    if (elements.isEmpty())
        return fail(error, QObject::tr("The file contains no layers."));

    layers.reserve(elements.size());
    for (const auto &element : elements) {
        const QJsonObject object = element.toObject();
        gaugeLayer &layer = layers.emplaceBack();
        layer.data.fromJson(object);
        layer.name = object.value("name"_L1).toString();
    }
    return true;
}

bool readEarlierVersion(const QByteArray &bytes, QList<gaugeLayer> &layers, QString *error)
{
    gaugeLayer layer;
    if (!layer.data.fromQString(QString::fromUtf8(bytes))) {
        return fail(error, QObject::tr("It is not valid JSON, and does not look like a gauge file from an "
                                       "earlier version either."));
    }
    layers.append(layer);
    return true;
}

} // namespace

QByteArray gaugeFile::write(const QList<gaugeLayer> &layers)
{
    QJsonArray elements;
    for (const gaugeLayer &layer : layers) {
        QJsonObject element = layer.data.toJson();
        element.insert("name"_L1, layer.name);
        elements.append(element);
    }
    const QJsonObject root{{u"format"_s, u"corvalence.gauge"_s}, {u"version"_s, 2}, {u"layers"_s, elements}};
    return QJsonDocument(root).toJson(QJsonDocument::Indented);
}

bool gaugeFile::read(const QByteArray &bytes, QList<gaugeLayer> *layers, QString *error)
{
    if (layers == nullptr)
        return false;
    layers->clear();

    const QByteArray trimmed = bytes.trimmed();
    if (trimmed.isEmpty())
        return fail(error, QObject::tr("The file is empty."));
    return trimmed.startsWith('{') ? readJson(trimmed, *layers, error)
                                   : readEarlierVersion(trimmed, *layers, error);
}
