#pragma once

#include <memory>

#include <QString>
#include <QStringList>
#include <QVariant>

#include "mapping/clSyncFelder.h"
#include "platform/automation/Automation.h"
#include "platform/dao/Dao.h"
#include "util/Konfiguration.h"
#include "util/Programmlauf.h"

/// One ACT! contact as the transfer needs it: four key values and one text per mapped field, normalised on reading.
///
/// A mapped field is addressed by its number (from 1) or its neutral name; a number below 1, which is also what an
/// unknown name gives, reads "" and takes nothing; one above the mapping's count is RunTimeError 9.
class clKontakt
{
public:
    /// Both must outlive the contact. ACT! gets the field numbers of the configuration by reference and may change
    /// them.
    clKontakt(Konfiguration &konfiguration, Programmlauf &programm);

    QString UniqueID;
    QString Mandant; ///< PC-Kaufmann client; empty if never transferred
    QString Nummer; ///< PC-Kaufmann account number; empty if never transferred
    QString Typ; ///< role letter: "H" main contact, "N" secondary contact, "" neither

    /// Sets the mapping, which must outlive the contact, and empties all values.
    void init(const clSyncFelder &SyncFelder);

    /// The role as list icon: 1 unknown, 2 secondary, 3 main contact.
    qint16 IconNr() const;

    void Setze_Daten(const QVariant &schluessel, const QString &wert);
    QString Daten(const QVariant &schluessel) const;

    /// Fills the contact from the current contact of ACT!'s contact window.
    void lese_OLE_Werte(AutomationObject &fenster);
    /// Normalises one value of ACT!'s automation; the variable becomes the text it is.
    QString OLE_Lese_Filter(QVariant &wert, const QString &feldname);
    /// "[49] 40 123" becomes "+49  40 123"; a number without country code gets "+49 ".
    QString OLETelefonFilter(const QString &telefon) const;

    /// Fills the contact from the current row of ACT!'s contact table.
    void setzeDatenVonDBF(dao::Recordset &zeile);
    /// Normalises one value of the contact table; the variable becomes the text it is.
    QString DBF_Lese_Filter(QVariant &wert, const QString &feldname);
    /// "49|40|@@@@AD5551234" (country, area, mask of separator places and digits) becomes "+49 40 555 1234".
    QString DBF_Telefon_Filter(const QString &telefon) const;

    /// A phone number in at most 20 characters, if need be without its separators.
    QString TelefonTrim(const QString &telefon) const;

    /// Text of a number or text, trimmed; "" for Null. Any other type, Empty included, is reported in a box with its
    /// number and gives "Falscher Wert !".
    QString XString(const QVariant &wert);

private:
    using TelefonFilter = QString (clKontakt::*)(const QString &) const;

    QString gefiltert(QVariant &wert, const QString &feldname, TelefonFilter telefonFilter);
    qint16 feldnummer(const QVariant &schluessel) const;
    qsizetype stelle(qint16 nummer) const;

    Konfiguration &m_konfiguration;
    Programmlauf &m_programm;
    const clSyncFelder *m_SyncFelder = nullptr;
    QStringList m_Werte;
};

using KontaktPtr = std::shared_ptr<clKontakt>;
