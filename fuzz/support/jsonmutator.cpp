#include "jsonmutator.h"

#include "jsontree.h"
#include "values.h"

#include <array>
#include <functional>
#include <utility>

namespace {

struct Key
{
    const char *name;
    JsonTree (*value)(Random &);
};

JsonTree number(Random &random)
{
    return JsonTree::raw(someNumber(random));
}

JsonTree integer(Random &random)
{
    return JsonTree::raw(someInteger(random));
}

JsonTree flag(Random &random)
{
    return JsonTree::raw(random.oneIn(2) ? "true" : "false");
}

JsonTree color(Random &random)
{
    return JsonTree::text(someColor(random));
}

JsonTree text(Random &random)
{
    static const std::array<QByteArray, 4> spelled{R"("\ud800")", R"("\udc00\ud83d")", R"("\u0000x")",
                                                   R"("\x")"};
    return random.oneIn(10) ? JsonTree::raw(random.pick(spelled)) : JsonTree::text(someText(random));
}

JsonTree anything(Random &random)
{
    switch (random.below(8)) {
    case 0:
        return JsonTree::raw("null");
    case 1:
        return flag(random);
    case 2:
        return number(random);
    case 3:
        return integer(random);
    case 4:
        return text(random);
    case 5:
        return color(random);
    case 6:
        return JsonTree::array();
    default:
        return JsonTree::object();
    }
}

/// An object with the keys of the table: nearly always each with its own kind of value.
template <size_t count>
JsonTree objectOf(const std::array<Key, count> &keys, Random &random)
{
    JsonTree object = JsonTree::object();
    for (const Key &key : keys) {
        if (random.oneIn(25))
            continue;
        object.add(key.name, random.oneIn(25) ? anything(random) : key.value(random));
    }
    return object;
}

/// Mostly of the usual length, now and then shorter or longer.
JsonTree arrayOf(JsonTree (*element)(Random &), size_t usual, Random &random)
{
    const size_t length = random.oneIn(6) ? random.below(2 * usual + 2) : usual;
    JsonTree array = JsonTree::array();
    for (size_t i = 0; i < length; ++i)
        array.children.push_back(random.oneIn(30) ? anything(random) : element(random));
    return array;
}

constexpr std::array gaugeKeys{Key{"startAngle", number},    Key{"angleLength", number},
                               Key{"bias", number},          Key{"midpointBias", flag},
                               Key{"roundedTickCaps", flag}, Key{"roundedArcCaps", flag}};
constexpr std::array divisionKeys{Key{"count", integer}, Key{"innerRadius", number},
                                  Key{"outerRadius", number}, Key{"width", number}, Key{"color", color}};
constexpr std::array arcKeys{Key{"startAngle", number}, Key{"angleLength", number}, Key{"radius", number},
                             Key{"width", number}, Key{"color", color}};
constexpr std::array fontKeys{Key{"family", text}, Key{"pointSize", integer}, Key{"bold", flag},
                              Key{"italic", flag}};

JsonTree font(Random &random)
{
    return objectOf(fontKeys, random);
}

constexpr std::array tickKeys{Key{"enabled", flag},          Key{"start", number},  Key{"increment", number},
                              Key{"decimalPlaces", integer}, Key{"radius", number}, Key{"rotate", flag},
                              Key{"skipFirst", flag},        Key{"font", font},     Key{"color", color}};

JsonTree gauge(Random &random)
{
    return objectOf(gaugeKeys, random);
}

JsonTree division(Random &random)
{
    return objectOf(divisionKeys, random);
}

JsonTree arc(Random &random)
{
    return objectOf(arcKeys, random);
}

JsonTree ticks(Random &random)
{
    return objectOf(tickKeys, random);
}

JsonTree divisions(Random &random)
{
    return arrayOf(division, 3, random);
}

JsonTree arcs(Random &random)
{
    return arrayOf(arc, 4, random);
}

constexpr std::array layerKeys{Key{"name", text}, Key{"gauge", gauge}, Key{"divisions", divisions},
                               Key{"arcs", arcs}, Key{"ticks", ticks}};

JsonTree layer(Random &random)
{
    return objectOf(layerKeys, random);
}

JsonTree layers(Random &random)
{
    return arrayOf(layer, 1 + random.below(3), random);
}

constexpr std::array rootKeys{Key{"format", text}, Key{"version", integer}, Key{"layers", layers}};

/// A value such as the key usually has; of any type for a key that no document knows.
JsonTree valueFor(const QByteArray &spelledKey, Random &random)
{
    const QByteArray name = spelledKey.mid(1, spelledKey.size() - 2);
    JsonTree (*value)(Random &) = anything;
    const auto look = [&name, &value](const auto &keys) {
        for (const Key &key : keys)
            value = name == key.name ? key.value : value;
    };
    look(rootKeys);
    look(layerKeys);
    look(gaugeKeys);
    look(divisionKeys);
    look(arcKeys);
    look(tickKeys);
    look(fontKeys);
    return value(random);
}

using Nodes = std::vector<std::reference_wrapper<JsonTree>>;

void collect(JsonTree &tree, Nodes &nodes)
{
    nodes.emplace_back(tree);
    for (JsonTree &child : tree.children)
        collect(child, nodes);
}

/// Half of the time each node is as likely as any other; otherwise each level is, or the few containers near
/// the top would hardly ever be chosen among the many values in them.
JsonTree &anyNode(JsonTree &tree, Random &random)
{
    if (random.oneIn(2)) {
        JsonTree *node = &tree;
        while (!node->children.empty() && !random.oneIn(5))
            node = &node->children[random.below(node->children.size())];
        return *node;
    }
    Nodes nodes;
    collect(tree, nodes);
    return random.pick(nodes);
}

QByteArray renamed(QByteArray key, Random &random)
{
    switch (random.below(4)) {
    case 0:
        return key.toUpper();
    case 1:
        return "\"\"";
    case 2: // the same key, spelled with an escape
        return key.size() > 2 ? "\"\\u00" + QByteArray::number(static_cast<uchar>(key[1]), 16) + key.mid(2)
                              : key;
    default:
        return random.pick(tickKeys).name;
    }
}

/// Damages a container in its members.
void damageMembers(JsonTree &node, Random &random)
{
    const size_t index = random.below(node.children.size());
    const auto at = static_cast<std::ptrdiff_t>(index);
    const bool object = node.kind == JsonTree::Kind::Object;
    switch (random.below(5)) {
    case 0: // one value changed for another of its kind
        node.children[index] = object ? valueFor(node.keys[index], random) : layer(random);
        break;
    case 1: // one lost
        node.children.erase(node.children.begin() + at);
        if (object)
            node.keys.erase(node.keys.begin() + at);
        break;
    case 2: // one doubled, at the end, and there perhaps with another value
        node.children.emplace_back(random.oneIn(2) && object ? valueFor(node.keys[index], random)
                                                             : JsonTree(node.children[index]));
        if (object)
            node.keys.emplace_back(QByteArray(node.keys[index]));
        break;
    case 3: // two in each other's place
    {
        const size_t other = random.below(node.children.size());
        if (other != index) {
            std::swap(node.children[index], node.children[other]);
            if (object && random.oneIn(2))
                std::swap(node.keys[index], node.keys[other]);
        }
        break;
    }
    default:
        if (object)
            node.keys[index] = renamed(node.keys[index], random);
        else
            node.children.insert(node.children.begin() + at, anything(random));
    }
}

void nest(JsonTree &node, Random &random)
{
    const size_t levels = random.oneIn(20) ? 1 + random.below(1500) : 1;
    for (size_t level = 0; level < levels; ++level) {
        JsonTree outer = random.oneIn(2) ? JsonTree::array() : JsonTree::object();
        if (outer.kind == JsonTree::Kind::Object)
            outer.keys.emplace_back("\"layers\"");
        outer.children.push_back(std::exchange(node, {}));
        node = std::move(outer);
    }
}

void damage(JsonTree &tree, Random &random)
{
    JsonTree &node = anyNode(tree, random);
    switch (random.below(10)) {
    case 0:
        node = anything(random);
        break;
    case 1:
        nest(node, random);
        break;
    case 2: // a part of the document somewhere else as well
        node = JsonTree(anyNode(tree, random));
        break;
    case 3: // an array where an object belongs, and the other way round
        if (node.kind == JsonTree::Kind::Object) {
            node.kind = JsonTree::Kind::Array;
            node.keys.clear();
        } else if (node.kind == JsonTree::Kind::Array) {
            node.kind = JsonTree::Kind::Object;
            node.keys.assign(node.children.size(), "\"color\"");
        }
        break;
    default:
        if (!node.children.empty())
            damageMembers(node, random);
        break;
    }
}

JsonTree parsedOrNew(const QByteArray &document, Random &random)
{
    return JsonTree::parse(document).value_or(objectOf(rootKeys, random));
}

} // namespace

QByteArray someGaugeDocument(Random &random)
{
    return objectOf(rootKeys, random).toBytes();
}

QByteArray damagedGaugeDocument(const QByteArray &document, Random &random)
{
    JsonTree tree = parsedOrNew(document, random);
    for (size_t damages = 1 + random.below(4); damages > 0; --damages)
        damage(tree, random);
    return tree.toBytes();
}

QByteArray crossedGaugeDocuments(const QByteArray &first, const QByteArray &second, Random &random)
{
    JsonTree tree = parsedOrNew(first, random);
    JsonTree donor = parsedOrNew(second, random);
    anyNode(tree, random) = JsonTree(anyNode(donor, random));
    return tree.toBytes();
}
