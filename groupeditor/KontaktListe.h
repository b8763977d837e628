#pragma once

#include <array>

#include <QIcon>
#include <QStringList>
#include <QTreeWidget>

#include "contacts/clKontakt.h"

/// A list of contacts in report view: the company, the mapped fields, then account number, client and unique id.
/// Items are counted from 1; an item's role is the index of its icon.
class KontaktListe : public QTreeWidget
{
public:
    enum Icon { Unbekannt = 1, Neben = 2, Haupt = 3 };
    using Icons = std::array<QIcon, 3>;

    explicit KontaktListe(QWidget *parent = nullptr);

    /// Columns and icons; `felder` are the neutral names of the mapped fields in their order.
    void richteEin(const QStringList &felder, const Icons &icons);

    int Anzahl() const { return topLevelItemCount(); }
    QTreeWidgetItem &Item(int i) const { return *topLevelItem(i - 1); }
    bool istGewaehlt(int i) const { return Item(i).isSelected(); }
    void entferne(int i);

    /// Appends a contact.
    void haengeAn(const clKontakt &kontakt);
    /// Appends a copy of an item of either list, with an icon of its own.
    QTreeWidgetItem &haengeAn(const QTreeWidgetItem &item, int icon);

    static int icon(const QTreeWidgetItem &item);
    void setzeIcon(QTreeWidgetItem &item, int icon) const;

    QString firma(const QTreeWidgetItem &item) const { return item.text(0); }
    /// Sets the item's text and, if a mapped field is called so, its "Firma" column.
    void setzeFirma(QTreeWidgetItem &item, const QString &firma) const;
    QString feld(const QTreeWidgetItem &item, int nummer) const { return item.text(nummer); } ///< mapped field, from 1
    QString nummer(const QTreeWidgetItem &item) const { return item.text(spalteNummer()); }
    QString mandant(const QTreeWidgetItem &item) const { return item.text(spalteNummer() + 1); }
    QString uniqueID(const QTreeWidgetItem &item) const { return item.text(spalteNummer() + 2); }
    void setzeKonto(QTreeWidgetItem &item, const QString &nummer, const QString &mandant) const;
    /// Whether the item belongs to this account of this client.
    bool hatKonto(const QTreeWidgetItem &item, const QString &nummer, const QString &mandant) const;

    /// While a command looks at the selection, nothing is selected by itself. Afterwards a list with the keyboard has a
    /// current item that is selected, and so has one that gets the keyboard by a key.
    void halteAuswahl(bool gehalten);

    /// Fills a contact with what the item shows; its role follows the icon.
    void fuelle(clKontakt &kontakt, const QTreeWidgetItem &item) const;

protected:
    void showEvent(QShowEvent *ereignis) override;
    bool event(QEvent *ereignis) override;
    void focusInEvent(QFocusEvent *ereignis) override;
    void keyPressEvent(QKeyEvent *ereignis) override; // Enter counts as a double click
    void drawRow(QPainter *maler, const QStyleOptionViewItem &option, const QModelIndex &index) const override;

private:
    int spalteNummer() const { return m_felder + 1; }
    void verteileBreiten();
    void waehleAktuellen();
    void maleRahmen();
    void beschrifte(QTreeWidgetItem &item) const;

    Icons m_icons;
    int m_felder = 0; // number of mapped fields
    bool m_breitenVerteilt = false;
    bool m_auswahlGehalten = false;
    int m_spalteFirma = 0; // of the mapped field called "Firma"; 0: there is none
};
