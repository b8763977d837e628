// Translates Jet's SQL for SQLite, token by token; what SQLite would read differently is refused.
#include "platform/dao/embedded/SqlText.h"

#include <algorithm>
#include <array>

#include <QSet>

#include "platform/dao/embedded/Convert.h"
#include "platform/dao/embedded/DateText.h"
#include "platform/dao/embedded/Errors.h"
#include "platform/dao/embedded/RowOrder.h"
#include "platform/dao/embedded/SqlTypes.h"

using namespace Qt::StringLiterals;

namespace dao {

namespace {

// The words that mean the same in both languages. Every other word is a name.
constexpr std::array keywords = {
    u"SELECT", u"DISTINCT", u"ALL",    u"FROM",   u"WHERE",  u"AND",    u"OR",     u"NOT",   u"LIKE",
    u"IN",     u"BETWEEN",  u"IS",     u"NULL",   u"AS",     u"ORDER",  u"BY",     u"GROUP", u"ASC",
    u"DESC",   u"ON",       u"SET",    u"HAVING", u"UNION",  u"INNER",  u"LEFT",   u"RIGHT", u"OUTER",
    u"JOIN",   u"INTO",     u"VALUES", u"INSERT", u"UPDATE", u"DELETE", u"EXISTS",
};

struct FunctionName {
    const char16_t *name;
    const char *registered;
    bool givesText; // compared in the database's text order
};

constexpr FunctionName functions[] = {
    {u"COUNT", "count", false},    {u"SUM", "sum", false},       {u"AVG", "avg", false},
    {u"MIN", "min", true},         {u"MAX", "max", true},        {u"IIF", "iif", true},
    {u"ABS", "abs", false},        {u"LEN", "length", false},    {u"TRIM", "trim", true},
    {u"LTRIM", "ltrim", true},     {u"RTRIM", "rtrim", true},    {u"UCASE", "jet_ucase", true},
    {u"LCASE", "jet_lcase", true}, {u"LEFT", "jet_left", true},  {u"RIGHT", "jet_right", true},
    {u"MID", "jet_mid", true},     {u"DATE", "jet_date", false}, {u"NOW", "jet_now", false},
};

template <typename Words> bool isOneOf(const Token &token, const Words &words)
{
    return std::ranges::any_of(words, [&](const char16_t *word) { return token.isWord(word); });
}

[[noreturn]] void refuse(const QString &why)
{
    const DaoError plain = daoError(number::NotSupported);
    throw DaoError(plain.Number(), plain.Description() + u' ' + why);
}

QByteArray textLiteral(QString text)
{
    if (text.contains(QChar(u'\0')))
        throw daoError(DaoError::SyntaxInExpression, text);
    return "'" + text.replace(u"'"_s, u"''"_s).toUtf8() + "'";
}

QByteArray dateLiteral(const QString &text)
{
    const auto moment = dateFromText(text, DateOrder::MonthDayYear);
    if (!moment)
        throw daoError(DaoError::SyntaxInExpression, u'#' + text + u'#');
    return '(' + QByteArray::number(moment->days, 'g', 17) + ')';
}

class Translator
{
public:
    Translator(const std::vector<Token> &tokens, const SchemaLookup &schemaOf)
        : m_tokens(tokens)
    {
        m_text.kind = kindOf(tokens);
        findTables(schemaOf);
        findOnlyTable();
        if (m_text.kind == StatementKind::Insert)
            findInsertColumns(schemaOf);
        m_wording = typedWording(tokens, m_schemas, [](const Token &token) { return isOneOf(token, keywords); });
    }

    SqlText run()
    {
        for (m_at = 0; m_tokens[m_at].kind != Token::End; ++m_at) {
            m_text.sql += m_wording[m_at].before;
            translate(m_tokens[m_at]);
            m_text.sql += m_wording[m_at].after;
        }
        if (!m_limit.isEmpty())
            m_text.sql += "LIMIT " + m_limit;
        if (!m_text.onlyTable.isEmpty())
            addAddresses();
        return m_text;
    }

private:
    const Token &at(std::size_t index) const { return m_tokens[std::min(index, m_tokens.size() - 1)]; }
    const Token &before() const { return m_at > 0 ? m_tokens[m_at - 1] : m_tokens.back(); }
    const Token &behind() const { return at(m_at + 1); }

    void findTables(const SchemaLookup &schemaOf)
    {
        QSet<QString> seen;
        for (const Token &token : m_tokens) {
            if (!token.isName() || (token.kind == Token::Word && isOneOf(token, keywords)))
                continue;
            if (seen.contains(token.text.toCaseFolded()))
                continue;
            seen.insert(token.text.toCaseFolded());
            if (const storage::TableSchema *schema = schemaOf(token.text)) {
                m_schemas.push_back(*schema);
                m_text.tables.append(schema->name);
            }
        }
    }

    /// Recognises SELECT ... FROM table [[AS] alias] [WHERE ...] [ORDER BY ...].
    void findOnlyTable()
    {
        if (m_text.kind != StatementKind::Select)
            return;
        int depth = 0;
        std::size_t from = 0;
        for (std::size_t i = 0; i < m_tokens.size(); ++i) {
            depth += m_tokens[i].isSymbol(u"(") ? 1 : m_tokens[i].isSymbol(u")") ? -1 : 0;
            if (depth == 0 && from == 0 && m_tokens[i].isWord(u"FROM"))
                from = i;
            if (depth == 0 && isOneOf(m_tokens[i], std::array{u"DISTINCT", u"GROUP", u"HAVING", u"UNION"}))
                return;
        }
        std::size_t next = from + 2;
        if (from == 0 || !at(from + 1).isName())
            return;
        if (at(next).isWord(u"AS"))
            ++next;
        m_alias = at(from + 1).text;
        if (at(next).isName() && !isOneOf(at(next), keywords))
            m_alias = at(next++).text;
        if (at(next).kind != Token::End && !isOneOf(at(next), std::array{u"WHERE", u"ORDER"}))
            return;
        m_text.onlyTable = canonical(at(from + 1).text);
    }

    void findInsertColumns(const SchemaLookup &schemaOf)
    {
        const storage::TableSchema *schema = schemaOf(at(2).text);
        if (schema == nullptr)
            return; // SQLite will say so
        if (!at(3).isSymbol(u"(") || at(4).isWord(u"SELECT")) {
            for (std::size_t i = 0; i < schema->columns.size(); ++i)
                m_text.insertColumns.push_back(static_cast<int>(i));
            return;
        }
        std::size_t next = 3; // the parenthesis, then each comma
        do {
            const auto column = schema->find(at(next + 1).text);
            if (!column)
                throw daoError(number::UnknownInsertColumn, at(next + 1).text);
            m_text.insertColumns.push_back(*column);
            next += 2;
        } while (at(next).isSymbol(u","));
    }

    void translate(const Token &token)
    {
        const auto &instead = m_wording[m_at].instead;
        if (instead && !behind().isSymbol(u"("))
            return put(*instead);
        switch (token.kind) {
        case Token::Text:
            return put(textLiteral(token.text));
        case Token::Number:
            return put(token.text.toLatin1());
        case Token::Date:
            return put(dateLiteral(token.text));
        case Token::Name:
            return name(token.text);
        case Token::Word:
            return word(token);
        default:
            return symbol(token.text);
        }
    }

    void put(const QByteArray &text) { m_text.sql += text + ' '; }

    void word(const Token &token)
    {
        const bool qualified = before().isSymbol(u".") || before().isSymbol(u"!");
        const bool qualifies = behind().isSymbol(u".") || behind().isSymbol(u"!");
        const bool isTarget = isOneOf(before(), std::array{u"INTO", u"FROM", u"JOIN", u"UPDATE"});
        if (qualified || qualifies || (isTarget && !isOneOf(token, keywords)))
            return name(token.text);
        if (behind().isSymbol(u"(") && function(token))
            return;
        if (isOneOf(token, keywords))
            return keyword(token);
        if (token.isWord(u"DISTINCTROW"))
            return;
        if (token.isWord(u"TOP") && m_at == 1 && behind().kind == Token::Number)
            return takeLimit();
        if (isOneOf(token, std::array{u"TRUE", u"YES"}) && !isColumn(token.text))
            return put("(-1)");
        if (isOneOf(token, std::array{u"FALSE", u"NO"}) && !isColumn(token.text))
            return put("0");
        name(token.text);
    }

    void takeLimit()
    {
        ++m_at;
        m_limit = m_tokens[m_at].text.toLatin1();
    }

    void keyword(const Token &token)
    {
        if (token.isWord(u"WHERE") && m_text.whereAt < 0)
            m_text.whereAt = m_text.sql.size();
        if (token.isWord(u"FROM") && m_parentheses.empty() && m_fromAt < 0)
            m_fromAt = m_text.sql.size();
        put(token.text.toLatin1());
        if (token.isWord(u"SET"))
            m_isSetList = true;
        if (token.isWord(u"WHERE"))
            m_isSetList = false;
        if (m_text.kind == StatementKind::Delete && m_at == 0) {
            while (!behind().isWord(u"FROM") && behind().kind != Token::End) // DELETE * FROM, DELETE t.* FROM
                ++m_at;
        }
    }

    bool function(const Token &token)
    {
        const auto *known
            = std::ranges::find_if(functions, [&](const FunctionName &f) { return token.isWord(f.name); });
        if (known == std::end(functions)) {
            if (isOneOf(token, keywords))
                return false;
            throw daoError(number::UnknownFunction, token.text);
        }
        const QByteArray registered = m_wording[m_at++].instead.value_or(known->registered);
        m_parentheses.push_back(known->givesText);
        put(registered + '(');
        return true;
    }

    void symbol(const QString &text)
    {
        if (text == u"(")
            m_parentheses.push_back(false);
        if (text == u"!")
            return put(".");
        if (text == u"/")
            return put("* 1.0 /"); // 1 / 2 is a half
        if (text == u"&" || text == u"^" || text == u"\\")
            refuse(u"Operator: %1"_s.arg(text));
        if (text == u"+" && (isTextual(before()) || isTextual(behind())))
            refuse(u"Texte können nicht mit + verbunden werden."_s);
        put(text.toLatin1());
        if (text == u")" && !m_parentheses.empty()) {
            if (m_parentheses.back())
                put("COLLATE TEXTS");
            m_parentheses.pop_back();
        }
    }

    void name(const QString &given)
    {
        const bool isSetTarget = m_isSetList && m_parentheses.empty() && behind().isSymbol(u".")
            && (before().isWord(u"SET") || before().isSymbol(u","));
        if (isSetTarget) { // SET table.column = ...
            ++m_at;
            return;
        }
        if (isAddressName(given) && !isColumn(given))
            throw daoError(DaoError::TooFewParameters, given);
        put(bracketed(canonical(given)));
    }

    static bool isAddressName(const QString &name)
    {
        return QStringList{u"rowid"_s, u"oid"_s, u"_rowid_"_s}.contains(name, Qt::CaseInsensitive);
    }

    bool isColumn(const QString &name) const
    {
        return std::ranges::any_of(m_schemas, [&](const auto &schema) { return schema.find(name).has_value(); });
    }

    bool isTextual(const Token &token) const
    {
        return token.kind == Token::Text
            || (token.isName() && std::ranges::any_of(m_schemas, [&](const storage::TableSchema &schema) {
                    const auto column = schema.find(token.text);
                    return column && isText(schema.columns[static_cast<std::size_t>(*column)].type);
                }));
    }

    /// The name as the database spells it: SQLite ignores the case of plain Latin letters only.
    QString canonical(const QString &given) const
    {
        for (const storage::TableSchema &schema : m_schemas) {
            if (schema.name.compare(given, Qt::CaseInsensitive) == 0)
                return schema.name;
        }
        for (const storage::TableSchema &schema : m_schemas) {
            if (const auto column = schema.find(given))
                return schema.columns[static_cast<std::size_t>(*column)].name;
        }
        return given;
    }

    void addAddresses()
    {
        QString address = u"rowid"_s;
        for (const QString &other : {u"oid"_s, u"_rowid_"_s})
            address = isColumn(address) ? other : address;
        m_text.addresses = m_text.sql;
        m_text.addresses.insert(m_fromAt,
                                ", " + bracketed(canonical(m_alias)) + '.' + address.toLatin1() + " AS [:row] ");
        m_text.addresses = "SELECT [:row] FROM (" + m_text.addresses + ')';
    }

    const std::vector<Token> &m_tokens;
    std::size_t m_at = 0;
    std::vector<storage::TableSchema> m_schemas;
    std::vector<Wording> m_wording;
    SqlText m_text;
    std::vector<bool> m_parentheses; // open ones: whether a text function's
    bool m_isSetList = false;
    qsizetype m_fromAt = -1;
    QString m_alias; // of the only table
    QByteArray m_limit;
};

} // namespace

StatementKind kindOf(const std::vector<Token> &tokens)
{
    const Token &first = tokens.front();
    if (first.isWord(u"SELECT"))
        return StatementKind::Select;
    if (first.isWord(u"INSERT"))
        return StatementKind::Insert;
    if (first.isWord(u"UPDATE"))
        return StatementKind::Update;
    if (first.isWord(u"DELETE"))
        return StatementKind::Delete;
    if (first.isWord(u"CREATE") || first.isWord(u"DROP"))
        return StatementKind::Definition;
    if (first.isWord(u"ALTER"))
        throw daoError(number::SyntaxInAlterTable);
    throw daoError(number::NotSql, first.text);
}

SqlText sqlText(const std::vector<Token> &tokens, const SchemaLookup &schemaOf)
{
    SqlText text = Translator(tokens, schemaOf).run();
    const storage::TableSchema *only = text.onlyTable.isEmpty() ? nullptr : schemaOf(text.onlyTable);
    if (const auto reversed = only == nullptr ? std::nullopt : reversedQuery(tokens, *only))
        text.reversed = Translator(*reversed, schemaOf).run().addresses;
    return text;
}

QByteArray bracketed(const QString &name)
{
    return '[' + name.toUtf8() + ']';
}

} // namespace dao
