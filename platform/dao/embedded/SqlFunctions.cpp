// What Jet's SQL has and SQLite's has not, or has differently: text order, Like, and a handful of functions.
#include "platform/dao/embedded/SqlFunctions.h"

#include <cmath>
#include <iterator>
#include <utility>

#include "platform/dao/Dao.h"
#include "platform/dao/embedded/Connection.h"
#include "platform/dao/embedded/DateText.h"
#include "platform/dao/embedded/DecimalText.h"
#include "platform/dao/embedded/Errors.h"
#include "platform/dao/embedded/ExactNumber.h"
#include "platform/dao/embedded/SqliteValues.h"
#include "platform/storage/LikePattern.h"

using namespace Qt::StringLiterals;

namespace dao {

namespace {

using Arguments = sqlite3_value **;

Connection &connectionOf(sqlite3_context *context)
{
    return *static_cast<Connection *>(sqlite3_user_data(context));
}

/// Runs a function's body; a fault makes the statement fail.
template <typename Body> void answer(sqlite3_context *context, Body body) noexcept
{
    if (guarded(connectionOf(context), body) != SQLITE_OK)
        sqlite3_result_error_code(context, SQLITE_ERROR);
}

int compareTexts(void *connection, int leftBytes, const void *left, int rightBytes, const void *right) noexcept
{
    auto &owner = *static_cast<Connection *>(connection);
    int order = 0;
    guarded(owner, [&] {
        order = owner.database().compareTexts(QStringView(static_cast<const QChar *>(left), leftBytes / 2),
                                              QStringView(static_cast<const QChar *>(right), rightBytes / 2));
    });
    return order;
}

void like(sqlite3_context *context, int, Arguments arguments) noexcept
{
    answer(context, [&] {
        if (sqlite3_value_type(arguments[0]) == SQLITE_NULL || sqlite3_value_type(arguments[1]) == SQLITE_NULL)
            return;
        const auto *pattern = static_cast<const storage::LikePattern *>(sqlite3_get_auxdata(context, 0));
        std::unique_ptr<storage::LikePattern> compiled;
        if (pattern == nullptr) {
            storage::Database &database = connectionOf(context).database();
            auto fresh = storage::LikePattern::compile(
                viewOf(arguments[0]), database.caseSensitive(),
                [&database](QStringView left, QStringView right) { return database.compareTexts(left, right); });
            if (!fresh)
                throw daoError(number::BadPattern, viewOf(arguments[0]).toString());
            compiled = std::make_unique<storage::LikePattern>(*std::move(fresh));
            pattern = compiled.get();
        }
        sqlite3_result_int(context, pattern->matches(viewOf(arguments[1])) ? -1 : 0);
        if (compiled) { // SQLite keeps it while the pattern stays the same
            sqlite3_set_auxdata(context, 0, compiled.release(),
                                [](void *old) { delete static_cast<storage::LikePattern *>(old); });
        }
    });
}

/// A function of one text that gives a text; Null stays Null.
template <auto Transform> void ofText(sqlite3_context *context, int count, Arguments arguments) noexcept
{
    answer(context, [&] {
        if (sqlite3_value_type(arguments[0]) != SQLITE_NULL)
            giveResult(context, Transform(viewOf(arguments[0]).toString(), count, arguments));
    });
}

int countArgument(sqlite3_value *value)
{
    const int number = sqlite3_value_int(value);
    if (number < 0)
        throw daoError(DaoError::SyntaxInExpression, QString::number(number));
    return number;
}

QString upperCase(const QString &text, int, Arguments)
{
    return text.toUpper();
}

QString lowerCase(const QString &text, int, Arguments)
{
    return text.toLower();
}

QString left(const QString &text, int, Arguments arguments)
{
    return text.left(countArgument(arguments[1]));
}

QString right(const QString &text, int, Arguments arguments)
{
    return text.right(countArgument(arguments[1]));
}

QString middle(const QString &text, int count, Arguments arguments)
{
    const int start = countArgument(arguments[1]) - 1; // counted from 1
    if (start < 0)
        throw daoError(DaoError::SyntaxInExpression, u"0"_s);
    return text.mid(start, count > 2 ? countArgument(arguments[2]) : -1);
}

void now(sqlite3_context *context, int, Arguments) noexcept
{
    giveResult(context, momentOf(QDateTime::currentDateTime()));
}

void today(sqlite3_context *context, int, Arguments) noexcept
{
    giveResult(context, momentOf(QDateTime(QDate::currentDate(), QTime(0, 0))));
}

// Exact numbers

/// Nothing for what is neither a number nor an exact one.
std::optional<QString> decimalOf(sqlite3_value *value)
{
    const storage::Value number = valueOf(value);
    if (const auto *decimal = std::get_if<storage::Decimal>(&number))
        return decimal->text;
    if (const auto *whole = std::get_if<std::int64_t>(&number))
        return QString::number(*whole);
    const auto *real = std::get_if<double>(&number);
    return real != nullptr && std::isfinite(*real) ? std::optional(decimalFromDouble(*real)) : std::nullopt;
}

void exact(sqlite3_context *context, int, Arguments arguments) noexcept
{
    answer(context, [&] {
        if (const auto decimal = decimalOf(arguments[0]))
            giveResult(context, storage::Decimal{*decimal});
        else
            sqlite3_result_value(context, arguments[0]);
    });
}

void inDouble(sqlite3_context *context, int, Arguments arguments) noexcept
{
    answer(context, [&] {
        const storage::Value value = valueOf(arguments[0]);
        if (const auto *decimal = std::get_if<storage::Decimal>(&value))
            giveResult(context, decimal->text.toDouble());
        else
            sqlite3_result_value(context, arguments[0]);
    });
}

/// A date as it is written into a text.
void dateText(sqlite3_context *context, int, Arguments arguments) noexcept
{
    answer(context, [&] {
        if (sqlite3_value_type(arguments[0]) == SQLITE_NULL)
            return;
        giveResult(context, textOf(calendarOf(storage::DateTime{sqlite3_value_double(arguments[0])})));
    });
}

/// Null where one of the two is no number.
template <bool Subtracts> void add(sqlite3_context *context, int, Arguments arguments) noexcept
{
    answer(context, [&] {
        const auto left = decimalOf(arguments[0]);
        const auto right = decimalOf(arguments[1]);
        if (left && right)
            giveResult(context, storage::Decimal{addedDecimals(*left, Subtracts ? negatedDecimal(*right) : *right)});
    });
}

/// The sum so far is owned by SQLite's context until the end.
QString **sumOf(sqlite3_context *context)
{
    return static_cast<QString **>(sqlite3_aggregate_context(context, sizeof(QString *)));
}

void addToSum(sqlite3_context *context, int, Arguments arguments) noexcept
{
    answer(context, [&] {
        const auto decimal = decimalOf(arguments[0]);
        QString **sum = sumOf(context);
        if (!decimal || sum == nullptr)
            return;
        if (*sum == nullptr)
            *sum = std::make_unique<QString>(*decimal).release();
        else
            **sum = addedDecimals(**sum, *decimal);
    });
}

void giveSum(sqlite3_context *context) noexcept
{
    answer(context, [&] {
        QString **sum = sumOf(context);
        const std::unique_ptr<QString> owned(sum == nullptr ? nullptr : std::exchange(*sum, nullptr));
        if (owned)
            giveResult(context, storage::Decimal{*owned});
    });
}

struct Function {
    const char *name;
    int arguments;
    void (*body)(sqlite3_context *, int, Arguments);
    int flags;
};

constexpr Function jetFunctions[] = {
    {"like", 2, like, SQLITE_DETERMINISTIC},
    {"jet_ucase", 1, ofText<upperCase>, SQLITE_DETERMINISTIC},
    {"jet_lcase", 1, ofText<lowerCase>, SQLITE_DETERMINISTIC},
    {"jet_left", 2, ofText<left>, SQLITE_DETERMINISTIC},
    {"jet_right", 2, ofText<right>, SQLITE_DETERMINISTIC},
    {"jet_mid", 2, ofText<middle>, SQLITE_DETERMINISTIC},
    {"jet_mid", 3, ofText<middle>, SQLITE_DETERMINISTIC},
    {"jet_exact", 1, exact, SQLITE_DETERMINISTIC},
    {"jet_double", 1, inDouble, SQLITE_DETERMINISTIC},
    {"jet_datetext", 1, dateText, SQLITE_DETERMINISTIC},
    {"jet_add", 2, add<false>, SQLITE_DETERMINISTIC},
    {"jet_subtract", 2, add<true>, SQLITE_DETERMINISTIC},
    {"jet_now", 0, now, 0},
    {"jet_date", 0, today, 0},
};

} // namespace

void registerFunctions(Connection &connection, sqlite3 *sqlite)
{
    int result = sqlite3_create_collation(sqlite, "TEXTS", SQLITE_UTF16_ALIGNED, &connection, compareTexts);
    for (const Function &function : jetFunctions) {
        if (result == SQLITE_OK) {
            result = sqlite3_create_function(sqlite, function.name, function.arguments, SQLITE_UTF16 | function.flags,
                                             &connection, function.body, nullptr, nullptr);
        }
    }
    if (result == SQLITE_OK) {
        result = sqlite3_create_function(sqlite, "jet_sum", 1, SQLITE_UTF16 | SQLITE_DETERMINISTIC, &connection,
                                         nullptr, addToSum, giveSum);
    }
    if (result != SQLITE_OK)
        throw daoError(number::Unmapped, QString::fromUtf8(sqlite3_errstr(result)));
}

} // namespace dao
