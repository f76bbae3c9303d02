#include "jsontree.h"

#include <utility>

namespace {

constexpr int deepest = 200;

bool isSpace(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

class Parser
{
public:
    explicit Parser(QByteArrayView text)
        : m_text(text)
    {
    }

    std::optional<JsonTree> value(int depth = 0);

    bool atEnd()
    {
        skipSpace();
        return m_at == m_text.size();
    }

private:
    char peek()
    {
        skipSpace();
        return m_at < m_text.size() ? m_text[m_at] : '\0';
    }

    bool take(char expected)
    {
        const bool found = peek() == expected;
        m_at += found ? 1 : 0;
        return found;
    }

    void skipSpace()
    {
        while (m_at < m_text.size() && isSpace(m_text[m_at]))
            ++m_at;
    }

    QByteArray quoted();
    QByteArray bare();

    QByteArrayView m_text;
    qsizetype m_at = 0;
};

QByteArray Parser::quoted()
{
    const qsizetype start = m_at++;
    while (m_at < m_text.size() && m_text[m_at] != '"')
        m_at += m_text[m_at] == '\\' ? 2 : 1;
    m_at = std::min(m_at + 1, m_text.size());
    return m_text.sliced(start, m_at - start).toByteArray();
}

QByteArray Parser::bare()
{
    constexpr QByteArrayView ends(",:[]{}\"");
    const qsizetype start = m_at;
    while (m_at < m_text.size() && !isSpace(m_text[m_at]) && !ends.contains(m_text[m_at]))
        ++m_at;
    return m_text.sliced(start, m_at - start).toByteArray();
}

std::optional<JsonTree> Parser::value(int depth)
{
    if (depth > deepest)
        return std::nullopt;
    if (peek() == '"')
        return JsonTree::raw(quoted());
    const bool object = take('{');
    if (!object && !take('[')) {
        const QByteArray spelling = bare();
        return spelling.isEmpty() ? std::nullopt : std::optional(JsonTree::raw(spelling));
    }

    JsonTree container = object ? JsonTree::object() : JsonTree::array();
    const char end = object ? '}' : ']';
    if (take(end))
        return container;
    do {
        if (object) {
            container.keys.push_back(peek() == '"' ? quoted() : bare());
            if (!take(':'))
                return std::nullopt;
        }
        std::optional<JsonTree> child = value(depth + 1);
        if (!child)
            return std::nullopt;
        container.children.push_back(std::move(*child));
    } while (take(','));
    return take(end) ? std::optional(std::move(container)) : std::nullopt;
}

void write(const JsonTree &tree, QByteArray &bytes)
{
    if (tree.kind == JsonTree::Kind::Scalar) {
        bytes += tree.scalar;
        return;
    }
    const bool object = tree.kind == JsonTree::Kind::Object;
    bytes += object ? '{' : '[';
    for (size_t i = 0; i < tree.children.size(); ++i) {
        if (i > 0)
            bytes += ',';
        if (object)
            bytes += tree.keys[i] + ':';
        write(tree.children[i], bytes);
    }
    bytes += object ? '}' : ']';
}

} // namespace

JsonTree JsonTree::text(const QByteArray &unescaped)
{
    QByteArray spelling = "\"";
    for (const char c : unescaped) {
        if (c == '"' || c == '\\')
            spelling += '\\';
        if (c >= 0 && c < ' ')
            spelling += "\\u00" + QByteArray::number(static_cast<int>(c), 16).rightJustified(2, '0');
        else
            spelling += c;
    }
    return raw(spelling + '"');
}

void JsonTree::add(const char *key, JsonTree value)
{
    keys.push_back('"' + QByteArray(key) + '"');
    children.push_back(std::move(value));
}

std::optional<JsonTree> JsonTree::parse(QByteArrayView text)
{
    Parser parser(text);
    std::optional<JsonTree> tree = parser.value();
    return parser.atEnd() ? tree : std::nullopt;
}

QByteArray JsonTree::toBytes() const
{
    QByteArray bytes;
    write(*this, bytes);
    return bytes;
}
