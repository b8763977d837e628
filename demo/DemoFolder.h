#pragma once

#include <QString>

#include "platform/dao/Dao.h"

namespace demo {

/// The folder of the sample data: a program folder for VELDRAK (mapping, configuration, icons), the clients in PCK and
/// the contact manager's database in ACT.
///
/// Errors  RunTimeError, its text is for the user.
struct DemoFolder {
    QString path; ///< absolute

    explicit DemoFolder(const QString &folder);

    QString clients() const;
    QString contacts() const;
    /// Whether it holds sample data.
    bool exists() const;

    /// Makes everything; nothing is there before all of it is. A folder with anything in it is left alone, unless it
    /// holds sample data and nothing else and `replace` is set: then it is made anew.
    void create(dao::DBEngine &engine, bool replace) const;

private:
    void requireRoom(bool replace) const;
    void requireUsableName() const;
    void requireOnlyKnownFiles(const DemoFolder &fresh) const;
    void fill(dao::DBEngine &engine, const DemoFolder &final) const;
};

} // namespace demo
