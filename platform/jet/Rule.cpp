// Validation rules: parsing and checking them.
#include "platform/jet/Rule.h"

#include <utility>

#include "platform/jet/TextKey.h"
#include "platform/storage/LikePattern.h"

using namespace Qt::StringLiterals;
using storage::Value;

namespace jet {

namespace {

std::optional<storage::LikePattern> likePattern(const Value &pattern, bool jet4)
{
    const auto *text = std::get_if<QString>(&pattern);
    if (!text)
        return std::nullopt;
    return storage::LikePattern::compile(
        *text, false, [jet4](QStringView left, QStringView right) { return compareTexts(jet4, left, right); });
}

} // namespace

/// Descends through the grammar: or, and, not, predicate. Any step may fail, which is remembered.
class RuleParser
{
public:
    RuleParser(std::vector<Token> tokens, const QString &column, bool jet4)
        : m_tokens(std::move(tokens))
        , m_column(column)
        , m_jet4(jet4)
    { }

    std::optional<Rule::Node> parse()
    {
        Rule::Node node = parseOr();
        if (m_failed || m_tokens[m_at].kind != Token::End)
            return std::nullopt;
        return node;
    }

private:
    using Node = Rule::Node;

    bool takeWord(QStringView word)
    {
        const Token &token = m_tokens[m_at];
        const bool found = token.kind == Token::Word && token.text.compare(word, Qt::CaseInsensitive) == 0;
        m_at += found ? 1 : 0;
        return found;
    }
    bool takeSign(QStringView sign)
    {
        const bool found = m_tokens[m_at].kind == Token::Sign && m_tokens[m_at].text == sign;
        m_at += found ? 1 : 0;
        return found;
    }
    Node fail()
    {
        m_failed = true;
        return {Node::IsNull};
    }

    Node parseOr()
    {
        Node node = parseAnd();
        while (!m_failed && takeWord(u"Or"))
            node = {Node::Or, {std::move(node), parseAnd()}};
        return node;
    }

    Node parseAnd()
    {
        Node node = parseNot();
        while (!m_failed && takeWord(u"And"))
            node = {Node::And, {std::move(node), parseNot()}};
        return node;
    }

    Node parseNot()
    {
        if (++m_depth > deepest)
            return fail();
        if (takeWord(u"Not"))
            return negated(parseNot());
        return parsePredicate();
    }

    static Node negated(Node node) { return {Node::Not, {std::move(node)}}; }

    Node parsePredicate()
    {
        if (takeSign(u"(")) {
            Node node = parseOr();
            return takeSign(u")") ? node : fail();
        }
        takeColumn();
        if (takeWord(u"Is")) {
            const bool isNot = takeWord(u"Not");
            if (!takeWord(u"Null"))
                return fail();
            return isNot ? negated({Node::IsNull}) : Node{Node::IsNull};
        }
        const bool isNot = takeWord(u"Not");
        Node node = parseOperation();
        return isNot ? negated(std::move(node)) : node;
    }

    /// The column may be named, but needs not.
    void takeColumn()
    {
        const Token &token = m_tokens[m_at];
        const bool isColumn = (token.kind == Token::Name || token.kind == Token::Word)
            && token.text.compare(m_column, Qt::CaseInsensitive) == 0;
        m_at += isColumn ? 1 : 0;
    }

    Node parseOperation()
    {
        if (takeWord(u"Between")) {
            Node least = comparison(Node::GreaterEqual);
            if (!takeWord(u"And"))
                return fail();
            return {Node::And, {std::move(least), comparison(Node::LessEqual)}};
        }
        if (takeWord(u"In"))
            return parseList();
        if (takeWord(u"Like"))
            return comparison(Node::Like);
        const std::pair<QStringView, Node::Kind> signs[]
            = {{u"=", Node::Equal},      {u"<>", Node::NotEqual}, {u"<", Node::Less},
               {u"<=", Node::LessEqual}, {u">", Node::Greater},   {u">=", Node::GreaterEqual}};
        for (const auto &[sign, kind] : signs) {
            if (takeSign(sign))
                return comparison(kind);
        }
        return comparison(Node::Equal);
    }

    Node parseList()
    {
        if (!takeSign(u"("))
            return fail();
        Node node = comparison(Node::Equal);
        while (!m_failed && (takeSign(u",") || takeSign(u";")))
            node = {Node::Or, {std::move(node), comparison(Node::Equal)}};
        return takeSign(u")") ? node : fail();
    }

    Node comparison(Node::Kind kind)
    {
        auto constant = readConstant(m_tokens, m_at);
        if (!constant || (kind == Node::Like && !likePattern(*constant, m_jet4)))
            return fail();
        return {kind, {}, std::move(*constant)};
    }

    static constexpr int deepest = 200; // steps in a rule, against endless nesting
    std::vector<Token> m_tokens;
    QString m_column;
    bool m_jet4;
    std::size_t m_at = 0;
    int m_depth = 0;
    bool m_failed = false;
};

namespace {

std::optional<double> numberOf(const Value &value)
{
    if (const auto *truth = std::get_if<bool>(&value))
        return *truth ? -1 : 0;
    if (const auto *whole = std::get_if<std::int64_t>(&value))
        return static_cast<double>(*whole);
    if (const auto *real = std::get_if<double>(&value))
        return *real;
    if (const auto *money = std::get_if<storage::Currency>(&value))
        return static_cast<double>(money->tenThousandths) / 10000;
    if (const auto *date = std::get_if<storage::DateTime>(&value))
        return date->days;
    if (const auto *decimal = std::get_if<storage::Decimal>(&value))
        return decimal->text.toDouble();
    return std::nullopt;
}

/// Below, equal to or above 0; nothing for values that cannot be compared.
std::optional<int> order(const Value &left, const Value &right, bool jet4)
{
    const auto *leftText = std::get_if<QString>(&left);
    const auto *rightText = std::get_if<QString>(&right);
    if (leftText && rightText)
        return compareTexts(jet4, *leftText, *rightText);
    const auto leftNumber = numberOf(left);
    const auto rightNumber = numberOf(right);
    if (!leftNumber || !rightNumber)
        return std::nullopt;
    return *leftNumber < *rightNumber ? -1 : *leftNumber > *rightNumber ? 1 : 0;
}

} // namespace

std::optional<Rule> Rule::parse(const QString &text, const QString &column, bool jet4)
{
    auto tokens = tokenize(text);
    auto root = tokens ? RuleParser(std::move(*tokens), column, jet4).parse() : std::nullopt;
    if (!root)
        return std::nullopt;
    Rule rule;
    rule.m_root = std::move(*root);
    rule.m_jet4 = jet4;
    return rule;
}

bool Rule::holds(const Value &value) const
{
    return evaluate(m_root, value).value_or(false);
}

std::optional<bool> Rule::evaluate(const Node &node, const Value &value) const
{
    if (node.kind == Node::IsNull)
        return storage::isNull(value);
    if (node.kind == Node::Not) {
        const auto inner = evaluate(node.children[0], value);
        return inner ? std::optional(!*inner) : std::nullopt;
    }
    if (node.kind != Node::And && node.kind != Node::Or)
        return compare(node, value);
    const bool decisive = node.kind == Node::Or;
    const auto left = evaluate(node.children[0], value);
    const auto right = evaluate(node.children[1], value);
    if (left == decisive || right == decisive)
        return decisive;
    return left && right ? std::optional(!decisive) : std::nullopt;
}

std::optional<bool> Rule::compare(const Node &node, const Value &value) const
{
    if (node.kind == Node::Like) {
        const auto *text = std::get_if<QString>(&value);
        return text ? std::optional(likePattern(node.constant, m_jet4)->matches(*text)) : std::nullopt;
    }
    const auto found = order(value, node.constant, m_jet4);
    if (!found)
        return std::nullopt;
    switch (node.kind) {
    case Node::Equal:
        return *found == 0;
    case Node::NotEqual:
        return *found != 0;
    case Node::Less:
        return *found < 0;
    case Node::LessEqual:
        return *found <= 0;
    case Node::Greater:
        return *found > 0;
    default:
        return *found >= 0;
    }
}

} // namespace jet
