#pragma once

#include <span>

#include <QString>

namespace demo {

/// A column of the account table sPersKto.
struct AccountColumn {
    QStringView name;
    QStringView type; ///< as CREATE TABLE takes it
    QStringView rules{}; ///< NOT NULL and DEFAULT: only in the clients
    QStringView preset{}; ///< SQL literal in the template row for new accounts; empty: Null
};

/// The columns that clients and template have in common, in table order, behind counter, number and type.
std::span<const AccountColumn> accountColumns();

/// Every column with its type, and with its rules for a client's table, as CREATE TABLE lists them.
QString accountColumnList(bool withRules);

} // namespace demo
