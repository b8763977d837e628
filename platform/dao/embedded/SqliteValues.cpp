// Values across the border between the stored tables and SQLite.
#include "platform/dao/embedded/SqliteValues.h"

#include "platform/dao/embedded/DecimalText.h"
#include "platform/dao/embedded/ExactNumber.h"

namespace dao {

using storage::Value;

namespace {

Value bytesOf(sqlite3_value *value)
{
    const QByteArray bytes(static_cast<const char *>(sqlite3_value_blob(value)), sqlite3_value_bytes(value));
    const auto decimal = exactDecimal(bytes);
    return decimal ? Value(storage::Decimal{*decimal}) : Value(bytes);
}

struct Result {
    sqlite3_context *context;

    void operator()(std::monostate) const { sqlite3_result_null(context); }
    void operator()(bool yes) const { sqlite3_result_int(context, yes ? -1 : 0); }
    void operator()(std::int64_t number) const { sqlite3_result_int64(context, number); }
    void operator()(double number) const { sqlite3_result_double(context, number); }
    void operator()(storage::Currency amount) const { (*this)(exactBytes(decimalFromCurrency(amount))); }
    void operator()(storage::DateTime moment) const { sqlite3_result_double(context, moment.days); }
    void operator()(const storage::Decimal &decimal) const { (*this)(exactBytes(decimal.text)); }
    void operator()(const QString &text) const { giveText(context, text); }
    void operator()(const QByteArray &bytes) const
    {
        sqlite3_result_blob64(context, bytes.constData(), static_cast<sqlite3_uint64>(bytes.size()), SQLITE_TRANSIENT);
    }
};

} // namespace

Value valueOf(sqlite3_value *value)
{
    switch (sqlite3_value_type(value)) {
    case SQLITE_INTEGER:
        return std::int64_t{sqlite3_value_int64(value)};
    case SQLITE_FLOAT:
        return sqlite3_value_double(value);
    case SQLITE_TEXT:
        return viewOf(value).toString();
    case SQLITE_BLOB:
        return bytesOf(value);
    default:
        return {};
    }
}

void giveResult(sqlite3_context *context, const Value &value)
{
    std::visit(Result{context}, value);
}

void giveText(sqlite3_context *context, const QString &text)
{
    sqlite3_result_text64(context, reinterpret_cast<const char *>(text.utf16()),
                          static_cast<sqlite3_uint64>(text.size()) * 2, SQLITE_TRANSIENT, SQLITE_UTF16);
}

QStringView viewOf(sqlite3_value *value)
{
    // As it stands: asked for as text, it would get a terminating zero first, in a place of its own.
    if (sqlite3_value_type(value) == SQLITE_TEXT && sqlite3_value_encoding(value) == SQLITE_UTF16LE) {
        const auto *units = static_cast<const QChar *>(sqlite3_value_blob(value)); // null if there are none
        return units == nullptr ? QStringView(u"") : QStringView(units, sqlite3_value_bytes16(value) / 2);
    }
    const auto *text = static_cast<const QChar *>(sqlite3_value_text16(value));
    return QStringView(text, sqlite3_value_bytes16(value) / 2);
}

} // namespace dao
