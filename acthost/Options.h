#pragma once

#include <QString>
#include <QStringList>

namespace acthost {

/// What the command line asks for.
struct Options {
    QString database{};
    QString fieldList{}; ///< the database's own name with the ending .felder unless given
    QString uniqueId{}; ///< the contact to begin with; empty: the first
    QString busName = QStringLiteral("ACTOLE.APPOBJECT");
    bool withoutAutomation = false;
    bool noticeOpen = false;
    bool hanging = false;

    /// `arguments` without the program's own name. Throws RunTimeError (5) with a text for the user.
    static Options parse(const QStringList &arguments);
    static QString helpText();
};

} // namespace acthost
