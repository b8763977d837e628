// Words and constants of expressions, and defaults.
#include "platform/jet/Expression.h"

#include <cmath>

#include <QDateTime>
#include <QRandomGenerator>
#include <QUuid>

#include "platform/jet/Clock.h"
#include "platform/storage/StorageError.h"

using namespace Qt::StringLiterals;
using storage::StorageError;
using storage::Value;

namespace jet {

namespace {

bool isWordPart(QChar c)
{
    return c.isLetterOrNumber() || c == u'_';
}

/// The content of a quoted stretch whose opening character stands at `at`; a doubled closing one stands for itself.
std::optional<QString> quoted(QStringView text, qsizetype &at, QChar close)
{
    QString content;
    for (++at; at < text.size(); ++at) {
        if (text[at] != close)
            content += text[at];
        else if (close != u']' && at + 1 < text.size() && text[at + 1] == close)
            content += text[at++];
        else
            return ++at, content;
    }
    return std::nullopt;
}

QString numberAt(QStringView text, qsizetype &at)
{
    const qsizetype start = at;
    while (at < text.size()) {
        const bool exponentSign
            = (text[at] == u'-' || text[at] == u'+') && at > start && text[at - 1].toLower() == u'e';
        if (!text[at].isDigit() && text[at] != u'.' && text[at].toLower() != u'e' && !exponentSign)
            break;
        ++at;
    }
    return text.sliced(start, at - start).toString();
}

QString signAt(QStringView text, qsizetype &at)
{
    for (const QStringView sign : {u"<=", u">=", u"<>"}) {
        if (text.sliced(at).startsWith(sign)) {
            at += sign.size();
            return sign.toString();
        }
    }
    return QString(text[at++]);
}

std::optional<Token> tokenAt(QStringView text, qsizetype &at)
{
    const QChar first = text[at];
    const auto closed = [&](Token::Kind kind, QChar close) -> std::optional<Token> {
        auto content = quoted(text, at, close);
        return content ? std::optional(Token{kind, *content}) : std::nullopt;
    };
    if (first == u'"' || first == u'\'')
        return closed(Token::Text, first);
    if (first == u'#')
        return closed(Token::Date, u'#');
    if (first == u'[')
        return closed(Token::Name, u']');
    if (first.isDigit() || (first == u'.' && at + 1 < text.size() && text[at + 1].isDigit()))
        return Token{Token::Number, numberAt(text, at)};
    if (!isWordPart(first))
        return Token{Token::Sign, signAt(text, at)};
    const qsizetype start = at;
    while (at < text.size() && isWordPart(text[at]))
        ++at;
    return Token{Token::Word, text.sliced(start, at - start).toString()};
}

std::optional<Value> numberValue(const QString &text)
{
    bool ok = false;
    if (const qint64 whole = text.toLongLong(&ok); ok)
        return Value(std::int64_t{whole});
    const double real = text.toDouble(&ok);
    return ok ? std::optional(Value(real)) : std::nullopt;
}

/// Dates in expressions are American, or start with the year.
std::optional<Value> dateValue(const QString &text)
{
    for (const QString &date : {u"M/d/yyyy"_s, u"yyyy-MM-dd"_s, u"yyyy/M/d"_s}) {
        for (const QString &time : {u""_s, u" H:mm:ss"_s, u" H:mm"_s, u" h:mm:ss AP"_s}) {
            const QDateTime moment = QDateTime::fromString(text, date + time);
            if (moment.isValid()) {
                const auto days = static_cast<double>(QDate(1899, 12, 30).daysTo(moment.date()));
                const double part = moment.time().msecsSinceStartOfDay() / 86400000.0;
                return Value(storage::DateTime{days < 0 ? days - part : days + part});
            }
        }
    }
    return std::nullopt;
}

std::optional<Value> wordValue(const QString &word)
{
    const QString lower = word.toLower();
    if (lower == u"null"_s)
        return Value();
    if (lower == u"true"_s || lower == u"yes"_s || lower == u"on"_s)
        return Value(true);
    if (lower == u"false"_s || lower == u"no"_s || lower == u"off"_s)
        return Value(false);
    return std::nullopt;
}

std::optional<Value> callValue(const QString &function)
{
    const QString lower = function.toLower();
    const double moment = now().days;
    if (lower == u"now"_s)
        return Value(storage::DateTime{moment});
    if (lower == u"date"_s)
        return Value(storage::DateTime{std::floor(moment)});
    if (lower == u"time"_s)
        return Value(storage::DateTime{moment - std::floor(moment)});
    if (lower == u"genguid"_s)
        return Value(QUuid::createUuid().toString());
    if (lower == u"genuniqueid"_s)
        return Value(std::int64_t{static_cast<std::int32_t>(QRandomGenerator::global()->bounded(1U, 0xFFFFFFFFU))});
    return std::nullopt;
}

} // namespace

std::optional<std::vector<Token>> tokenize(QStringView expression)
{
    std::vector<Token> tokens;
    for (qsizetype at = 0; at < expression.size();) {
        if (expression[at].isSpace()) {
            ++at;
            continue;
        }
        auto token = tokenAt(expression, at);
        if (!token)
            return std::nullopt;
        tokens.push_back(std::move(*token));
    }
    tokens.push_back({});
    return tokens;
}

std::optional<Value> readConstant(const std::vector<Token> &tokens, std::size_t &at)
{
    const auto isSign = [&](std::size_t place, const char16_t *sign) {
        return place < tokens.size() && tokens[place].kind == Token::Sign && tokens[place].text == QStringView(sign);
    };
    const bool negative = isSign(at, u"-");
    if (negative || isSign(at, u"+"))
        ++at;
    const Token token = tokens[at];
    if (negative)
        return token.kind == Token::Number ? (++at, numberValue(u'-' + token.text)) : std::nullopt;
    switch (token.kind) {
    case Token::Number:
        return ++at, numberValue(token.text);
    case Token::Text:
        return ++at, Value(token.text);
    case Token::Date:
        return ++at, dateValue(token.text);
    case Token::Word:
        if (isSign(at + 1, u"(") && isSign(at + 2, u")"))
            return at += 3, callValue(token.text);
        return ++at, wordValue(token.text);
    case Token::Name:
    case Token::Sign:
    case Token::End:
        break;
    }
    return std::nullopt;
}

Value evaluateDefault(const ColumnDef &column, const QString &expression)
{
    QStringView text(expression);
    text = text.trimmed();
    if (text.startsWith(u'='))
        text = text.sliced(1);
    const auto tokens = tokenize(text);
    std::size_t at = 0;
    std::optional<Value> value = tokens ? readConstant(*tokens, at) : std::nullopt;
    if (!value || (*tokens)[at].kind != Token::End) {
        throw StorageError(StorageError::Unsupported,
                           u"%1: Der Standardwert %2 kann nicht berechnet werden."_s.arg(column.name, expression),
                           column.name);
    }
    // A number may stand for a text and a text for a number.
    if (column.isText() && (*tokens)[0].kind == Token::Number)
        return (*tokens)[0].text;
    const auto *written = std::get_if<QString>(&*value);
    if (written && !column.isText() && column.type != ColumnType::Guid) {
        if (const auto number = numberValue(*written))
            return *number;
    }
    return *value;
}

} // namespace jet
