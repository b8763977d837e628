// What the types of a statement's expressions mean for the text that SQLite reads.
#include "platform/dao/embedded/SqlWording.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "platform/dao/embedded/DecimalText.h"
#include "platform/dao/embedded/Errors.h"
#include "platform/dao/embedded/ExactNumber.h"

using namespace Qt::StringLiterals;

namespace dao {

SqlWording::SqlWording(const std::vector<Token> &tokens)
    : m_tokens(tokens)
    , m_words(tokens.size())
{ }

void SqlWording::wrap(const Operand &operand, const QByteArray &function)
{
    m_words[operand.first].before.prepend(function);
    m_words[operand.end - 1].after += ") ";
}

void SqlWording::asDouble(const Operand &operand)
{
    if (mayBeExact(operand.kind))
        wrap(operand, "jet_double(");
}

void SqlWording::asExact(const Operand &operand)
{
    if (operand.isLiteral)
        writeExact(operand);
    else if (operand.kind != Kind::Exact && operand.kind != Kind::Text && operand.end > operand.first)
        wrap(operand, "jet_exact(");
}

/// The literal without a way through a double.
void SqlWording::writeExact(const Operand &literal)
{
    const QString digits = m_tokens[literal.end - 1].text;
    QString plain = digits;
    if (digits.contains(u'e', Qt::CaseInsensitive)) {
        if (!std::isfinite(digits.toDouble()))
            throw daoError(DaoError::SyntaxInExpression, digits);
        plain = decimalFromDouble(digits.toDouble());
    }
    for (std::size_t i = literal.first; i + 1 < literal.end; ++i) {
        plain = m_tokens[i].isSymbol(u"-") ? negatedDecimal(plain) : plain;
        m_words[i].instead = "";
    }
    m_words[literal.end - 1].instead = "x'" + exactBytes(plain).toHex() + '\'';
}

void SqlWording::passOn(const Operand &operand, Kind target)
{
    if (target == Kind::Text && operand.kind == Kind::Date)
        wrap(operand, "jet_datetext(");
    if (!operand.isLiteral)
        return;
    const QString text = m_tokens[operand.end - 1].text;
    const bool isWhole = !text.contains(u'.'); // a double has fewer digits than whole numbers
    if (!text.contains(u'e', Qt::CaseInsensitive) && text.size() > (isWhole ? 18 : 16))
        writeExact(operand);
}

void SqlWording::alike(const std::vector<Operand> &operands)
{
    const Operand &left = operands.front();
    for (const Operand &right : operands) {
        const bool areKnown = std::ranges::none_of(
            std::array{left.kind, right.kind}, [](Kind kind) { return kind == Kind::Unknown || kind == Kind::Mixed; });
        const bool differ = areKnown && (left.kind == Kind::Text) != (right.kind == Kind::Text);
        if (differ && !(left.column.isEmpty() && right.column.isEmpty()))
            throw daoError(number::CriterionType, left.column.isEmpty() ? right.column : left.column);
    }
    if (std::ranges::none_of(operands, mayBeExact, &Operand::kind))
        return;
    for (const Operand &operand : operands)
        asExact(operand);
}

} // namespace dao
