#pragma once

#include <memory>
#include <optional>
#include <vector>

#include <QString>

#include "platform/jet/Expression.h"
#include "platform/storage/Value.h"

namespace jet {

/// A column's validation rule: comparisons of the column with constants, Between, In, Like, Is Null, joined by And, Or,
/// Not and brackets.
class Rule
{
public:
    /// Nothing for a rule of another kind.
    static std::optional<Rule> parse(const QString &text, const QString &column, bool jet4);

    /// Whether a value keeps to the rule. As with the engine, a rule whose outcome is unknown is not kept: Null passes
    /// only if the rule speaks of Null.
    bool holds(const storage::Value &value) const;

private:
    friend class RuleParser;
    struct Node {
        enum Kind { And, Or, Not, Equal, NotEqual, Less, LessEqual, Greater, GreaterEqual, Like, IsNull };
        Kind kind;
        std::vector<Node> children{};
        storage::Value constant{};
    };
    std::optional<bool> evaluate(const Node &node, const storage::Value &value) const;
    std::optional<bool> compare(const Node &node, const storage::Value &value) const;

    Node m_root{Node::IsNull};
    bool m_jet4 = true;
};

} // namespace jet
