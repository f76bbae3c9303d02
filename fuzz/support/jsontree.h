#ifndef JSONTREE_H
#define JSONTREE_H

#include <QByteArray>
#include <QByteArrayView>

#include <optional>
#include <vector>

/// A JSON value as text that need not be right: scalars and keys keep their spelling, objects their order and
/// their doubled keys. What a JSON library would refuse or tidy up can be held, changed and written.
struct JsonTree
{
    enum class Kind { Scalar, Array, Object };

    Kind kind = Kind::Scalar;
    QByteArray scalar = "null";
    std::vector<QByteArray> keys; ///< Of an object, as spelled and with their quotes; one for each child.
    std::vector<JsonTree> children;

    static JsonTree array() { return {Kind::Array, {}, {}, {}}; }
    static JsonTree object() { return {Kind::Object, {}, {}, {}}; }
    static JsonTree text(const QByteArray &unescaped);
    static JsonTree raw(const QByteArray &spelling) { return {Kind::Scalar, spelling, {}, {}}; }

    /// Adds @a value under the plain @a key.
    void add(const char *key, JsonTree value);

    /// Reads what has the shape of one JSON value; nothing when it has not, or nests beyond reason.
    static std::optional<JsonTree> parse(QByteArrayView text);

    [[nodiscard]] QByteArray toBytes() const;
};

#endif
