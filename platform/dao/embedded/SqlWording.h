#pragma once

#include <optional>
#include <vector>

#include <QByteArray>

#include "platform/dao/embedded/SqlTokens.h"

namespace dao {

/// What is written around a token, or instead of it.
struct Wording {
    QByteArray before{};
    QByteArray after{};
    std::optional<QByteArray> instead{};
};

/// What an expression gives. Exact: an amount or decimal (ExactNumber.h); Number: anything else that computes; Mixed:
/// perhaps Exact, which shows when it runs.
enum class Kind { Unknown, Number, Date, Exact, Mixed, Text };

inline bool mayBeExact(Kind kind)
{
    return kind == Kind::Exact || kind == Kind::Mixed;
}

/// An expression: the tokens from `first` up to `end`.
struct Operand {
    std::size_t first = 0;
    std::size_t end = 0;
    Kind kind = Kind::Unknown;
    QString column{}; ///< if it is nothing but that
    bool isLiteral = false; ///< a number, perhaps with a sign
};

/// Collects the wording of a statement's tokens while its expressions are followed, the inner ones first.
class SqlWording
{
public:
    explicit SqlWording(const std::vector<Token> &tokens);

    void replace(std::size_t token, const QByteArray &text) { m_words[token].instead = text; }
    /// Makes the operand a function's last argument.
    void wrap(const Operand &operand, const QByteArray &function);
    void asDouble(const Operand &operand);
    void asExact(const Operand &operand);
    /// For a result or a column of the kind `target`: numbers keep their digits, and dates become texts.
    void passOn(const Operand &operand, Kind target = Kind::Unknown);
    /// Makes operands comparable. Throws DaoError 3464 where only one of two is a text, and one a column.
    void alike(const std::vector<Operand> &operands);

    std::vector<Wording> take() { return std::move(m_words); }

private:
    void writeExact(const Operand &literal);

    const std::vector<Token> &m_tokens;
    std::vector<Wording> m_words;
};

} // namespace dao
