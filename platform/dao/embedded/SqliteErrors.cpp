// SQLite's complaints in Jet's numbers.
#include "platform/dao/embedded/SqliteErrors.h"

#include <QRegularExpression>

#include "platform/dao/embedded/Errors.h"

using namespace Qt::StringLiterals;

namespace dao {

namespace {

struct Known {
    const char16_t *form; // its first capture names the thing concerned
    int number; // 0: a syntax error, numbered by statement
};

constexpr Known knownMessages[] = {
    {u"^no such table: (.*)$", DaoError::UnknownTable},
    {u"^no such column: (.*)$", DaoError::TooFewParameters},
    {u"^ambiguous column name: (.*)$", number::AmbiguousColumn},
    {u"^table .* has no column named (.*)$", number::UnknownInsertColumn},
    {u"^table (.*) has \\d+ columns but \\d+ values were supplied$", number::ValueCount},
    {u"^(\\d+) values for \\d+ columns$", number::ValueCount},
    {u"^wrong number of arguments to function (.*)$", DaoError::SyntaxInExpression},
    {u"^misuse of (.*)$", DaoError::SyntaxInExpression},
    {u"^near \"(.*)\": syntax error$", 0},
    {u"^unrecognized token: (.*)$", 0},
    {u"^(incomplete input)$", 0},
};

int syntaxNumber(const SqlText &text, int offset)
{
    if (text.whereAt >= 0 && (offset < 0 || offset > text.whereAt))
        return DaoError::SyntaxInExpression;
    switch (text.kind) {
    case StatementKind::Insert:
        return DaoError::SyntaxInInsert;
    case StatementKind::Update:
        return DaoError::SyntaxInUpdate;
    case StatementKind::Delete:
        return number::SyntaxInFrom;
    default:
        return number::SyntaxInSelect;
    }
}

} // namespace

DaoError sqliteError(const QString &message, int offset, const SqlText *text)
{
    for (const Known &known : knownMessages) {
        const auto match = QRegularExpression(QString::fromUtf16(known.form)).match(message);
        if (!match.hasMatch())
            continue;
        if (known.number != 0)
            return daoError(known.number, match.captured(1));
        const QString place = match.captured(1) == u"incomplete input" ? u"Ende"_s : match.captured(1);
        if (text != nullptr)
            return daoError(syntaxNumber(*text, offset), place);
    }
    return daoError(number::Unmapped, message);
}

} // namespace dao
