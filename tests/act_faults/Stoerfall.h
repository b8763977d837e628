#pragma once

#include "tests/act_faults/Zehnergruppe.h"

/// What a transfer of the group left behind, in the words of docs/act-faults.md.
struct Ausgang {
    QString mandant; ///< what is in the client
    QString act; ///< which members carry client, number and role
    QString gesehen; ///< what the user was shown beyond what a good transfer shows
    QString weiter; ///< what a user achieves by starting the program again beside a healthy ACT!
};

enum class Fehler {
    Keiner,
    Stirbt, ///< before it does what it is asked; everything after that is 462
    Haengt, ///< does what it is asked, without an answer to that or any later call: 440
    HaengtEinmal, ///< the same, but answers later calls
};

/// Transfers of the group beside an ACT! that fails at call k, and the judgement of what they leave.
class Stoerfall
{
public:
    /// Does the transfer once without a fault.
    Stoerfall();

    const QStringList &aufrufe() const { return m_aufrufe; } ///< of the good transfer; call k is element k - 1
    Zehnergruppe &gruppe() { return m_gruppe; }
    const QString &nummer() const { return m_nummer; } ///< of the account that the transfer makes

    /// `handgriff` is what the user does between the failure and the next start.
    Ausgang beiAufruf(
        int k, Fehler fehler, const std::function<void()> &handgriff = [] {});
    /// The same beside any other ACT!, which has to be gone when the program starts again.
    Ausgang neben(
        int k, const std::function<Ablauf()> &uebertragung, const std::function<void()> &handgriff = [] {});

private:
    void pruefeKontakte(bool mandantVollstaendig) const;
    QString mandant(const QMap<QString, Konto> &konten) const;
    QString act(int k) const;
    QString gesehen(const Ablauf &ablauf) const;
    QString weiter();
    QStringList verknuepft() const;
    int mitgliedBei(int k) const;

    Zehnergruppe m_gruppe;
    QMap<QString, Konto> m_kontenVorher;
    QMap<QString, FakeAct::Contact> m_kontakteVorher;
    QMap<QString, FakeAct::Contact> m_kontakteNachher;
    QString m_nummer;
    Konto m_konto;
    QStringList m_boxen;
    QStringList m_aufrufe;
};
