#pragma once

#include <QString>
#include <QStringList>

namespace acthost {

/// At which of the calls that it takes the program misbehaves, counted from 1; 0: at none. Questions for descriptions
/// are no calls.
struct Faults {
    int diesAt = 0; ///< before it does what is asked
    int hangsAt = 0; ///< does what is asked, but never answers again
    int busyAt = 0; ///< refuses the call as long as it is busy
    int busySeconds = 0; ///< from when it refused first; 0: for good
};

/// What the command line asks for.
struct Options {
    QString database{};
    QString fieldList{}; ///< the database's own name with the ending .felder unless given
    QString uniqueId{}; ///< the contact to begin with; empty: the first
    QString busName = QStringLiteral("ACTOLE.APPOBJECT");
    bool withoutAutomation = false;
    bool noticeOpen = false;
    bool hanging = false;
    Faults faults{};

    /// `arguments` without the program's own name. Throws RunTimeError (5) with a text for the user.
    static Options parse(const QStringList &arguments);
    static QString helpText();
};

} // namespace acthost
