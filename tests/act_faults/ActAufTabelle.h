#pragma once

#include <functional>
#include <memory>

#include <QStringList>

#include "acthost/ContactBook.h"
#include "acthost/Lookup.h"
#include "platform/automation/Automation.h"
#include "platform/dbf/DbfDriver.h"

/// An ACT! within the test's process, on a contact table of its own, that fails at one of its calls.
///
/// It counts and answers the calls as the stand-in program does, without a bus and without waiting.
class ActAufTabelle : public Automation
{
public:
    enum class Fehler {
        Keiner,
        Stirbt, ///< before it does what it is asked; everything after that is 462
        Haengt, ///< does what it is asked, without an answer to that or any later call: 440
        HaengtEinmal, ///< the same, but answers later calls
    };

    /// `tabelle` with its field list beside it; `kontakt` is on the screen.
    ActAufTabelle(const QString &tabelle, const QString &kontakt, Fehler fehler = Fehler::Keiner, int beiAufruf = 0);

    AutomationObjectPtr CreateObject(const QString &progId) override;

    QStringList aufrufe; ///< names of the members called, in order; call k is element k - 1
    bool minimiert = false;

private:
    using Mitglied = std::function<QVariant(const QString &name, const Arguments &argumente)>;
    class Objekt;

    AutomationObjectPtr objekt(Mitglied mitglied);
    QVariant rufe(const Mitglied &mitglied, const QString &name, const Arguments &argumente);
    QVariant anwendung(const QString &name, const Arguments &argumente);
    QVariant fenster(const QString &name, const Arguments &argumente);

    dbf::DbfDriver m_treiber;
    acthost::ContactBook m_buch;
    acthost::Lookup m_auswahl;
    Fehler m_fehler;
    int m_beiAufruf;
};
