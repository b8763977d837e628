// Finds the index that answers a query's conditions and its order. A wrong range would lose rows, so every doubt
// widens it: SQLite checks all conditions again.
#include "platform/dao/embedded/IndexPlan.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <span>
#include <vector>

#include "platform/dao/embedded/Convert.h"
#include "platform/dao/embedded/DecimalText.h"
#include "platform/dao/embedded/ExactNumber.h"
#include "platform/dao/embedded/SqliteValues.h"

using storage::Column;
using storage::Index;
using storage::Type;
using storage::Value;

namespace dao {

namespace {

const Column &columnAt(const storage::TableSchema &schema, int column)
{
    return schema.columns[static_cast<std::size_t>(column)];
}

/// The letter of a comparison; 0 for a condition that no index helps.
char letterOf(unsigned char op)
{
    switch (op) {
    case SQLITE_INDEX_CONSTRAINT_EQ:
        return '=';
    case SQLITE_INDEX_CONSTRAINT_GT:
        return '>';
    case SQLITE_INDEX_CONSTRAINT_GE:
        return 'G';
    case SQLITE_INDEX_CONSTRAINT_LT:
        return '<';
    case SQLITE_INDEX_CONSTRAINT_LE:
        return 'L';
    default:
        return 0;
    }
}

bool isLower(char letter)
{
    return letter == '>' || letter == 'G';
}

bool canBeKey(Type type)
{
    return type != Type::Memo && type != Type::Binary && type != Type::LongBinary && type != Type::Guid;
}

class Planner
{
public:
    Planner(sqlite3_index_info *info, const storage::TableSchema &schema, std::int64_t rows)
        : m_info(info)
        , m_schema(schema)
        , m_rows(static_cast<double>(std::max<std::int64_t>(rows, 1)))
    { }

    IndexPlan choose()
    {
        Candidate best;
        best.rows = m_rows;
        best.cost = m_rows;
        for (int i = 0; i < m_info->nConstraint; ++i) {
            const auto &constraint = m_info->aConstraint[i];
            if (constraint.iColumn < 0 && constraint.usable && constraint.op == SQLITE_INDEX_CONSTRAINT_EQ)
                best = {{IndexPlan::ByAddress, "="}, {i}, 1, 1, false};
        }
        for (std::size_t i = 0; i < m_schema.indexes.size(); ++i) {
            const Candidate candidate = use(static_cast<int>(i));
            if (candidate.plan.index != IndexPlan::Scan && candidate.cost < best.cost)
                best = candidate;
        }
        return tell(best);
    }

private:
    struct Candidate {
        IndexPlan plan{};
        std::vector<int> constraints{}; // by position, in the order of the plan's letters
        double rows = 0;
        double cost = 0;
        bool ordered = false;
    };

    /// The usable condition on a column whose letter is one of `letters`, or -1.
    int find(int column, std::string_view letters) const
    {
        for (int i = 0; i < m_info->nConstraint; ++i) {
            const auto &constraint = m_info->aConstraint[i];
            if (!constraint.usable || constraint.iColumn != column || letterOf(constraint.op) == 0)
                continue;
            const bool inOrder
                = !isText(columnAt(m_schema, column).type) || qstricmp(sqlite3_vtab_collation(m_info, i), "TEXTS") == 0;
            if (inOrder && letters.find(letterOf(constraint.op)) != std::string_view::npos)
                return i;
        }
        return -1;
    }

    Candidate use(int position) const
    {
        const Index &index = m_schema.indexes[static_cast<std::size_t>(position)];
        Candidate candidate;
        if (!index.usable || !std::ranges::all_of(index.columns, [this](const storage::IndexColumn &column) {
                return canBeKey(columnAt(m_schema, column.column).type);
            }))
            return candidate;
        candidate.rows = m_rows;
        std::size_t equal = 0;
        for (; equal < index.columns.size(); ++equal) {
            const int constraint = find(index.columns[equal].column, "=");
            if (constraint < 0)
                break;
            take(candidate, constraint, 0.05);
        }
        if (equal < index.columns.size()) {
            for (const std::string_view letters : {">G", "<L"}) {
                if (const int constraint = find(index.columns[equal].column, letters); constraint >= 0)
                    take(candidate, constraint, 0.3);
            }
        }
        const auto direction = order(index, equal);
        candidate.ordered = direction.has_value();
        if (direction == true)
            candidate.plan.steps += 'b';
        const bool complete = !index.ignoreNulls || !candidate.constraints.empty();
        if (!complete || (candidate.constraints.empty() && !candidate.ordered))
            return candidate; // nothing gained, or rows missing
        candidate.plan.index = position;
        if (index.unique && equal == index.columns.size())
            candidate.rows = 1;
        candidate.cost = candidate.rows * 1.2 + (candidate.constraints.empty() ? m_rows : 0);
        return candidate;
    }

    void take(Candidate &candidate, int constraint, double share) const
    {
        candidate.constraints.push_back(constraint);
        candidate.plan.steps += letterOf(m_info->aConstraint[constraint].op);
        candidate.rows = std::max(1.0, candidate.rows * share);
    }

    /// Whether the index, its first `equal` columns being fixed, gives the wanted order: forwards (false), backwards
    /// (true), or not at all.
    std::optional<bool> order(const Index &index, std::size_t equal) const
    {
        std::optional<bool> backwards;
        std::size_t next = equal;
        for (int i = 0; i < m_info->nOrderBy; ++i) {
            const auto &term = m_info->aOrderBy[i];
            const auto fixed = std::span(index.columns).first(equal);
            if (std::ranges::find(fixed, term.iColumn, &storage::IndexColumn::column) != fixed.end())
                continue;
            if (next == index.columns.size() || index.columns[next].column != term.iColumn)
                return std::nullopt;
            const bool against = (term.desc != 0) != index.columns[next].descending;
            if (backwards.value_or(against) != against)
                return std::nullopt;
            backwards = against;
            ++next;
        }
        return m_info->nOrderBy > 0 ? std::optional(backwards.value_or(false)) : std::nullopt;
    }

    IndexPlan tell(const Candidate &best) const
    {
        int argument = 0;
        for (const int constraint : best.constraints)
            m_info->aConstraintUsage[constraint].argvIndex = ++argument;
        m_info->estimatedCost = best.cost;
        m_info->estimatedRows = static_cast<sqlite3_int64>(best.rows);
        m_info->orderByConsumed = best.ordered ? 1 : 0;
        return best.plan;
    }

    sqlite3_index_info *m_info;
    const storage::TableSchema &m_schema;
    double m_rows;
};

std::optional<double> numberOf(const Value &value)
{
    if (const auto *whole = std::get_if<std::int64_t>(&value)) {
        constexpr std::int64_t exact = std::int64_t{1} << 53;
        return std::abs(*whole) <= exact ? std::optional(static_cast<double>(*whole)) : std::nullopt;
    }
    const auto *real = std::get_if<double>(&value);
    return real != nullptr && std::isfinite(*real) ? std::optional(*real) : std::nullopt;
}

std::optional<Value> exactKeyOf(const storage::Decimal &decimal, const Column &column)
{
    Value key = coerced(decimal, column);
    const auto *amount = std::get_if<storage::Currency>(&key);
    const QString rounded = amount ? decimalFromCurrency(*amount) : std::get<storage::Decimal>(key).text;
    return exactBytes(rounded) == exactBytes(decimal.text) ? std::optional(std::move(key)) : std::nullopt;
}

/// The key of a column that compares exactly as the value does in SQL; nothing if there is none.
std::optional<Value> keyOf(const Value &value, const Column &column)
{
    if (isText(column.type))
        return std::holds_alternative<QString>(value) ? std::optional(value) : std::nullopt;
    const bool isExact = column.type == Type::Currency || column.type == Type::Numeric;
    const auto number = numberOf(value);
    if (isExact ? !std::holds_alternative<storage::Decimal>(value) : !number)
        return std::nullopt;
    try {
        if (isExact)
            return exactKeyOf(std::get<storage::Decimal>(value), column);
        const Value key = coerced(*number, column);
        if (column.type == Type::Boolean)
            return *number == 0 || *number == -1 ? std::optional(key) : std::nullopt;
        if (column.type == Type::Single && static_cast<double>(static_cast<float>(*number)) != *number)
            return std::nullopt;
        if (const auto *whole = std::get_if<std::int64_t>(&key); whole && static_cast<double>(*whole) != *number)
            return std::nullopt;
        return key;
    } catch (const storage::StorageError &) {
        return std::nullopt; // outside the column's range: still a fair condition, only no key
    }
}

} // namespace

IndexPlan planWalk(sqlite3_index_info *info, const storage::TableSchema &schema, std::int64_t rows)
{
    return Planner(info, schema, rows).choose();
}

std::optional<storage::KeyRange> rangeOf(const IndexPlan &plan, const storage::TableSchema &schema,
                                         sqlite3_value **values)
{
    const Index &index = schema.indexes[static_cast<std::size_t>(plan.index)];
    storage::KeyRange range{plan.index};
    range.backwards = plan.steps.endsWith('b');
    std::vector<Value> fixed;
    bool exact = true; // every '=' so far became part of the key
    storage::Bound lower;
    storage::Bound upper;
    for (qsizetype i = 0; i < plan.steps.size() - (range.backwards ? 1 : 0); ++i) {
        const char letter = plan.steps[i];
        const Value value = valueOf(values[i]);
        if (storage::isNull(value))
            return std::nullopt;
        const storage::IndexColumn &part = index.columns[fixed.size()];
        const auto key = exact ? keyOf(value, columnAt(schema, part.column)) : std::nullopt;
        if (letter == '=' && key)
            fixed.push_back(*key);
        else if (letter == '=')
            exact = false;
        else if (key && isLower(letter) != part.descending)
            lower = {{*key}, letter == 'G' || letter == 'L'};
        else if (key)
            upper = {{*key}, letter == 'G' || letter == 'L'};
    }
    for (auto [bound, end] : {std::pair(&lower, &range.lower), std::pair(&upper, &range.upper)}) {
        bound->key.insert(bound->key.begin(), fixed.begin(), fixed.end());
        if (!bound->key.empty())
            *end = *bound;
    }
    return range;
}

} // namespace dao
