#pragma once

#include <QString>

/// Asks the user for the password of a client. Whoever shows it tests the password, and asks again.
class Kennwortabfrage
{
public:
    virtual ~Kennwortabfrage() = default;

    /// Whether the user gave up at the last showing.
    bool flagKennwortAbbruch = false;

    /// Shows the question for a client, with an empty password, until the user has answered or given up.
    virtual void zeige(const QString &Mandant) = 0;
    /// What was typed at the last showing; not empty unless the user gave up.
    virtual QString Kennwort() const = 0;
};
