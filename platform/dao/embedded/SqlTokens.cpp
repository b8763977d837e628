// Cuts a statement into tokens, by Jet's rules for quotes, brackets and number signs.
#include "platform/dao/embedded/SqlTokens.h"

#include "platform/dao/embedded/Errors.h"

using namespace Qt::StringLiterals;

namespace dao {

namespace {

bool startsWord(QChar c)
{
    return c.isLetter() || c == u'_' || c.isSurrogate();
}

bool continuesWord(QChar c)
{
    return startsWord(c) || c.isDigit() || c.isMark() || c == u'$';
}

class Scanner
{
public:
    explicit Scanner(const QString &sql)
        : m_sql(sql)
    { }

    Token next()
    {
        while (m_at < m_sql.size() && m_sql[m_at].isSpace())
            ++m_at;
        const qsizetype start = m_at;
        Token token = m_at < m_sql.size() ? scan(m_sql[m_at]) : Token{};
        token.position = start;
        return token;
    }

private:
    QChar peek(qsizetype ahead) const { return m_at + ahead < m_sql.size() ? m_sql[m_at + ahead] : QChar(); }

    Token scan(QChar c)
    {
        if (c == u'\'' || c == u'"')
            return text(c);
        if (c == u'[')
            return bracketed();
        if (c == u'#')
            return date();
        if (c.isDigit() || (c == u'.' && peek(1).isDigit()))
            return number();
        if (startsWord(c))
            return {Token::Word, takeWhile(continuesWord)};
        return symbol(c);
    }

    template <typename Test> QString takeWhile(Test test)
    {
        const qsizetype start = m_at;
        while (m_at < m_sql.size() && test(m_sql[m_at]))
            ++m_at;
        return m_sql.mid(start, m_at - start);
    }

    Token text(QChar quote)
    {
        const qsizetype start = m_at;
        QString content;
        for (++m_at; m_at < m_sql.size(); ++m_at) {
            if (m_sql[m_at] != quote) {
                content += m_sql[m_at];
            } else if (peek(1) == quote) {
                content += quote;
                ++m_at;
            } else {
                ++m_at;
                return {Token::Text, content};
            }
        }
        throw daoError(DaoError::SyntaxInExpression, m_sql.mid(start));
    }

    Token bracketed()
    {
        const qsizetype end = m_sql.indexOf(u']', m_at);
        const QString name = m_sql.mid(m_at + 1, end < 0 ? -1 : end - m_at - 1);
        if (end < 0 || name.isEmpty() || name.contains(u'['))
            throw daoError(number::BadBrackets, name);
        m_at = end + 1;
        return {Token::Name, name};
    }

    Token date()
    {
        const qsizetype end = m_sql.indexOf(u'#', m_at + 1);
        if (end < 0)
            throw daoError(DaoError::SyntaxInExpression, m_sql.mid(m_at));
        const QString content = m_sql.mid(m_at + 1, end - m_at - 1);
        m_at = end + 1;
        return {Token::Date, content};
    }

    Token number()
    {
        const auto isDigit = [](QChar c) { return c >= u'0' && c <= u'9'; };
        QString digits = takeWhile(isDigit);
        if (peek(0) == u'.') {
            ++m_at;
            digits += u'.' + takeWhile(isDigit);
        }
        const bool hasSign = peek(1) == u'+' || peek(1) == u'-';
        if (peek(0).toLower() == u'e' && isDigit(peek(hasSign ? 2 : 1))) {
            digits += m_sql.mid(m_at, hasSign ? 2 : 1);
            m_at += hasSign ? 2 : 1;
            digits += takeWhile(isDigit);
        }
        if (m_at < m_sql.size() && continuesWord(m_sql[m_at]))
            throw daoError(DaoError::SyntaxInExpression, digits + takeWhile(continuesWord));
        return {Token::Number, digits};
    }

    Token symbol(QChar c)
    {
        const QString two = m_sql.mid(m_at, 2);
        if (two == u"<>" || two == u"<=" || two == u">=") {
            m_at += 2;
            return {Token::Symbol, two};
        }
        if (!u"=<>+-*/(),.;!&^\\"_s.contains(c))
            throw daoError(DaoError::SyntaxInExpression, m_sql.mid(m_at));
        ++m_at;
        return {Token::Symbol, c};
    }

    const QString &m_sql;
    qsizetype m_at = 0;
};

} // namespace

std::vector<Token> tokensOf(const QString &sql)
{
    Scanner scanner(sql);
    std::vector<Token> tokens;
    do {
        tokens.push_back(scanner.next());
    } while (tokens.back().kind != Token::End && !tokens.back().isSymbol(u";"));
    if (tokens.back().kind != Token::End) {
        const Token behind = scanner.next();
        if (behind.kind != Token::End)
            throw daoError(number::AfterEnd, sql.mid(behind.position));
        tokens.back() = behind;
    }
    return tokens;
}

} // namespace dao
