#pragma once

#include <optional>

#include <QString>
#include <QVariant>

#include "pck/clPCK.h"
#include "startup/Haupt.h"

/// One transfer: the group becomes an account of a client, and the account is written back into ACT!.
///
/// Errors: a statement that fails in setzeWert is shown and the transfer goes on; everything else (ACT! gone, a failed
/// communication entry) reaches the caller, and what was written until then stays.
class Eintragung
{
public:
    /// What stood in the dialog when the transfer began; a missing value is one that the account type does not have.
    struct Angaben {
        qint16 mandant = -1; ///< index of the client
        QString mandantName{};
        QString typ{}; ///< type letter
        QString nummer{}; ///< the number that was proposed
        std::optional<double> rabatt{}; ///< percent
        double laendercode = 0;
        std::optional<double> preisgruppe{};
        std::optional<double> waehrung{};
    };

    /// `hauptkontakt` is the group's main contact as it was when the dialog was loaded; ordinarily the member at
    /// HauptIndex.
    Eintragung(Haupt &haupt, clPCK &objPCK, clKontakt &hauptkontakt, const Angaben &angaben);

    /// Transfers the group and writes it back. False, after a box, if the number was taken meanwhile; then nothing was
    /// written, but the main contact keeps client and number. The program may end within.
    bool fuehreAus();

    /// The value as ACT! wants it: "+49 40 123456" of a phone field becomes "[49]40 123456". Changed in place, too.
    static QString OLE_Schreib_Filter(QString &wert, const QString &feldname);
    /// An empty text for Null, the value itself otherwise.
    static QVariant getvalue(const QVariant &wert);

private:
    bool legeKontoAn();
    void uebertrageMitglieder();
    void schreibeNachAct();
    void schreibeNachAct(const clKontakt &kontakt);

    void neueAdresse(const clKontakt &kontakt);
    void neueAdressdaten(const clKontakt &kontakt);
    void setzeZusammengesetzte(const clKontakt &kontakt);
    void setzeAngaben(const QString &nummer);
    void neuerAnsprechpartner(const clKontakt &kontakt);

    void waehleInAct(const clKontakt &kontakt);
    void setzeFeld(qint16 &id, const QString &wert);

    Haupt &m_haupt;
    clPCK &m_objPCK;
    clKontakt &m_hauptkontakt;
    Angaben m_angaben;
};
