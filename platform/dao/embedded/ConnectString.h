#pragma once

#include <QString>

namespace dao {

/// A DAO connect string: a kind of database, then "KEY=value" parts, each ended by a semicolon.
struct ConnectString {
    QString kind{}; ///< empty for Jet
    QString database{};
    QString password{};
    bool isJet = false;
    bool isDBase = false; ///< one of the dBASE and FoxPro kinds
};

ConnectString connectStringOf(const QString &text);

} // namespace dao
