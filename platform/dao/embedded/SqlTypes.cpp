// A recursive descent over a statement's tokens that knows what each expression gives.
#include "platform/dao/embedded/SqlTypes.h"

#include <algorithm>
#include <array>
#include <utility>

#include <QScopedValueRollback>

#include "platform/dao/embedded/DateText.h"
#include "platform/dao/embedded/Errors.h"
#include "platform/dao/embedded/SqlNames.h"

using namespace Qt::StringLiterals;

namespace dao {

namespace {

class Typing
{
public:
    Typing(const std::vector<Token> &tokens, const std::function<bool(const Token &)> &isKeyword, SqlNames &names)
        : m_tokens(tokens)
        , m_isKeyword(isKeyword)
        , m_names(names)
        , m_wording(tokens)
    { }

    std::vector<Wording> run()
    {
        if (now().isWord(u"INSERT"))
            insertion();
        if (now().isWord(u"UPDATE"))
            assignments();
        for (clauses(); now().kind != Token::End; clauses())
            ++m_at;
        return m_wording.take();
    }

private:
    int deeper() const
    {
        if (m_level == 400) // no sensible statement goes there
            throw daoError(DaoError::SyntaxInExpression, u"("_s);
        return m_level + 1;
    }

    const Token &at(std::size_t index) const { return m_tokens[std::min(index, m_tokens.size() - 1)]; }
    const Token &now() const { return at(m_at); }
    bool isName(const Token &token) const
    {
        return token.kind == Token::Name || (token.kind == Token::Word && !m_isKeyword(token));
    }
    bool accept(QStringView word)
    {
        const bool is = now().isWord(word) || now().isSymbol(word);
        m_at += is ? 1 : 0;
        return is;
    }

    // Statements

    /// Up to the values or the query.
    void insertion()
    {
        m_at += 2;
        const QString table = now().text;
        ++m_at;
        if (now().isSymbol(u"(") && !at(m_at + 1).isWord(u"SELECT")) {
            do {
                ++m_at;
                m_targets.push_back(m_names.kindOf(now().text, table));
                ++m_at;
            } while (now().isSymbol(u","));
            accept(u")");
        } else {
            m_targets = m_names.kindsOf(table);
        }
        m_fillsTargets = true;
    }

    /// What goes into the columns of the statement's table, or is shown.
    void passOn(const Operand &operand, std::size_t position, bool isStored)
    {
        m_wording.passOn(operand, isStored && position < m_targets.size() ? m_targets[position] : Kind::Unknown);
    }

    void assignments()
    {
        while (!now().isWord(u"SET") && now().kind != Token::End)
            ++m_at;
        do {
            while (!now().isSymbol(u"=") && now().kind != Token::End)
                ++m_at;
            const Kind target = m_names.kindOf(at(m_at - 1).text, {});
            ++m_at;
            m_wording.passOn(expression(), target);
        } while (now().isSymbol(u","));
    }

    /// Whatever follows, up to the parenthesis that closes or the end.
    void clauses()
    {
        const QScopedValueRollback level(m_level, deeper());
        while (now().kind != Token::End && !now().isSymbol(u")")) {
            if (now().isWord(u"WHERE") || now().isWord(u"HAVING") || now().isWord(u"ON")) {
                ++m_at;
                m_wording.asDouble(expression());
            } else if (now().isWord(u"SELECT")) {
                select();
            } else if (now().isSymbol(u"(") && beginsTables()) {
                ++m_at;
                clauses();
                accept(u")");
            } else if (now().isWord(u"VALUES") && at(m_at + 1).isSymbol(u"(")) {
                m_at += 2;
                std::size_t position = 0;
                do {
                    passOn(expression(), position++, true);
                } while (accept(u","));
                accept(u")");
            } else {
                const std::size_t before = m_at;
                expression();
                m_at += m_at == before ? 1 : 0;
            }
        }
    }

    bool beginsTables() const
    {
        const Token &before = at(m_at - 1);
        return before.isWord(u"FROM") || before.isWord(u"JOIN") || before.isSymbol(u"(");
    }

    /// Gives the first column.
    Operand select()
    {
        const bool isStored = std::exchange(m_fillsTargets, false);
        std::size_t position = 0;
        ++m_at;
        while (accept(u"ALL") || accept(u"DISTINCT") || accept(u"DISTINCTROW")) { }
        if (accept(u"TOP"))
            ++m_at;
        std::optional<Operand> result;
        do {
            accept(u"*");
            const Operand column = expression();
            passOn(column, position++, isStored);
            const bool isGiven = accept(u"AS");
            if (isName(now())) { // a name of its own, whatever columns there are
                m_wording.replace(m_at, (isGiven ? "[" : "AS [") + now().text.toUtf8() + ']');
                m_names.give(at(m_at++).text, column.kind);
            }
            result = result.value_or(column);
        } while (accept(u","));
        clauses();
        return *result;
    }

    // Expressions, from the weakest operator on

    Operand expression()
    {
        Operand left = conjunction();
        while (now().isWord(u"OR"))
            left = logical(left, &Typing::conjunction);
        return left;
    }

    Operand conjunction()
    {
        Operand left = negation();
        while (now().isWord(u"AND"))
            left = logical(left, &Typing::negation);
        return left;
    }

    Operand logical(const Operand &left, Operand (Typing::*next)())
    {
        m_wording.asDouble(left);
        ++m_at;
        m_wording.asDouble((this->*next)());
        return {left.first, m_at, Kind::Number};
    }

    Operand negation()
    {
        const QScopedValueRollback level(m_level, deeper());
        const std::size_t first = m_at;
        if (!accept(u"NOT"))
            return comparison();
        m_wording.asDouble(negation());
        return {first, m_at, Kind::Number};
    }

    Operand comparison()
    {
        Operand left = sum();
        for (;;) {
            const std::size_t before = m_at;
            accept(u"NOT");
            if (accept(u"LIKE")) {
                m_wording.asDouble(left);
                m_wording.asDouble(sum());
            } else if (accept(u"BETWEEN")) {
                const Operand lower = sum();
                accept(u"AND");
                m_wording.alike({left, lower, sum()});
            } else if (accept(u"IN")) {
                members(left);
            } else if (accept(u"IS")) {
                accept(u"NOT");
                accept(u"NULL");
            } else if (isComparison(now())) {
                ++m_at;
                m_wording.alike({left, sum()});
            } else {
                m_at = before;
                return left;
            }
            left = {left.first, m_at, Kind::Number};
        }
    }

    static bool isComparison(const Token &token)
    {
        constexpr std::array signs{u"=", u"<>", u"<", u"<=", u">", u">="};
        return std::ranges::any_of(signs, [&token](const char16_t *sign) { return token.isSymbol(sign); });
    }

    void members(const Operand &left)
    {
        std::vector<Operand> all{left};
        if (!accept(u"("))
            return;
        if (now().isWord(u"SELECT")) {
            all.push_back(select());
        } else {
            do {
                all.push_back(sum());
            } while (accept(u","));
        }
        accept(u")");
        m_wording.alike(all);
    }

    Operand sum()
    {
        Operand left = product();
        while (now().isSymbol(u"+") || now().isSymbol(u"-")) {
            const std::size_t sign = m_at++;
            const Operand right = product();
            const bool hasText = left.kind == Kind::Text || right.kind == Kind::Text;
            if (hasText || (!mayBeExact(left.kind) && !mayBeExact(right.kind))) {
                left = {left.first, m_at, Kind::Number};
                continue;
            }
            m_wording.asExact(left);
            m_wording.asExact(right);
            left = {left.first, m_at, Kind::Exact};
            m_wording.replace(sign, ",");
            m_wording.wrap(left, at(sign).isSymbol(u"+") ? "jet_add(" : "jet_subtract(");
        }
        return left;
    }

    Operand product()
    {
        Operand left = factor();
        while (now().isSymbol(u"*") || now().isSymbol(u"/")) {
            m_wording.asDouble(left);
            ++m_at;
            m_wording.asDouble(factor());
            left = {left.first, m_at, Kind::Number};
        }
        return left;
    }

    Operand factor()
    {
        const QScopedValueRollback level(m_level, deeper());
        const std::size_t first = m_at;
        if (!now().isSymbol(u"-") && !now().isSymbol(u"+"))
            return primary();
        ++m_at;
        const Operand operand = factor();
        if (!mayBeExact(operand.kind))
            return {first, m_at, Kind::Number, {}, operand.isLiteral};
        if (at(first).isSymbol(u"-")) {
            m_wording.replace(first, "");
            m_wording.wrap({first + 1, m_at}, "jet_subtract(0,");
        }
        return {first, m_at, Kind::Exact};
    }

    Operand primary()
    {
        const std::size_t first = m_at;
        const Token &token = now();
        if (token.kind == Token::Text)
            return {first, ++m_at, Kind::Text};
        if (token.kind == Token::Number)
            return {first, ++m_at, Kind::Number, {}, true};
        if (token.kind == Token::Date) // a wrong one is reported as such
            return {first, ++m_at, dateFromText(token.text, DateOrder::MonthDayYear) ? Kind::Date : Kind::Unknown};
        if (accept(u"(")) {
            const Operand inner = now().isWord(u"SELECT") ? select() : expression();
            accept(u")");
            return {first, m_at, inner.kind};
        }
        if (accept(u"NULL"))
            return {first, m_at};
        const bool mayCall
            = !m_isKeyword(token) || token.isWord(u"LEFT") || token.isWord(u"RIGHT") || token.isWord(u"EXISTS");
        if (token.kind == Token::Word && mayCall && at(m_at + 1).isSymbol(u"("))
            return function();
        return isName(token) ? name() : Operand{first, m_at};
    }

    Operand name()
    {
        const std::size_t first = m_at;
        Token column = at(m_at++);
        QString table;
        if (now().isSymbol(u".") || now().isSymbol(u"!")) {
            table = column.text;
            column = at(m_at + 1);
            m_at += 2;
        }
        return {first, m_at, m_names.kindOf(column.text, table), column.text};
    }

    Operand function()
    {
        const std::size_t first = m_at;
        const QString name = now().text.toUpper();
        m_at += 2;
        if (accept(u"SELECT")) { // EXISTS
            --m_at;
            select();
            accept(u")");
            return {first, m_at, Kind::Number};
        }
        std::vector<Operand> arguments;
        do {
            accept(u"*");
            arguments.push_back(expression());
        } while (accept(u","));
        accept(u")");
        return {first, m_at, resultOf(name, first, arguments)};
    }

    Kind resultOf(const QString &name, std::size_t at, const std::vector<Operand> &arguments)
    {
        if (name == u"COUNT")
            return Kind::Number;
        if ((name == u"MIN" || name == u"MAX") && arguments.size() == 1)
            return arguments.front().kind;
        if (name == u"SUM" && mayBeExact(arguments.front().kind)) {
            m_wording.replace(at, "jet_sum");
            return Kind::Exact;
        }
        if (name == u"IIF" && arguments.size() == 3) {
            m_wording.asDouble(arguments[0]);
            if (arguments[1].kind == arguments[2].kind)
                return arguments[1].kind;
        }
        for (const Operand &argument : arguments)
            m_wording.asDouble(argument);
        constexpr std::array texts{u"TRIM", u"LTRIM", u"RTRIM", u"UCASE", u"LCASE", u"LEFT", u"RIGHT", u"MID"};
        const bool isText = std::ranges::any_of(texts, [&name](const char16_t *text) { return name == text; });
        if (name == u"NOW" || name == u"DATE")
            return Kind::Date;
        return isText ? Kind::Text : name == u"IIF" ? Kind::Unknown : Kind::Number;
    }

    const std::vector<Token> &m_tokens;
    const std::function<bool(const Token &)> &m_isKeyword;
    SqlNames &m_names;
    SqlWording m_wording;
    std::vector<Kind> m_targets{}; // the columns that an INSERT fills
    bool m_fillsTargets = false; // the next query does
    int m_level = 0;
    std::size_t m_at = 0;
};

} // namespace

std::vector<Wording> typedWording(const std::vector<Token> &tokens, const std::vector<storage::TableSchema> &schemas,
                                  const std::function<bool(const Token &)> &isKeyword)
{
    // A query within FROM stands behind the columns that it gives: its names are known the second time.
    SqlNames names(tokens, schemas, isKeyword);
    Typing(tokens, isKeyword, names).run();
    return Typing(tokens, isKeyword, names).run();
}

} // namespace dao
