// The two lists of the main window: what an item shows, and how it is read back.
#include "groupeditor/KontaktListe.h"

#include <algorithm>

#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>
#include <QShowEvent>
#include <QTextDocument>

using namespace Qt::StringLiterals;

namespace {

constexpr int iconRolle = Qt::UserRole;

QString rolleInWorten(int icon)
{
    switch (icon) {
    case KontaktListe::Haupt:
        return u"Hauptkontakt"_s;
    case KontaktListe::Neben:
        return u"Nebenkontakt"_s;
    default:
        return u"noch keiner Firmengruppe zugeordnet"_s;
    }
}

} // namespace

KontaktListe::KontaktListe(QWidget *parent)
    : QTreeWidget(parent)
{
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setSelectionMode(ExtendedSelection);
    setTabKeyNavigation(false);
    setAlternatingRowColors(true);
    header()->setStretchLastSection(false);
    header()->setSectionsMovable(false);
    setFrameStyle(QFrame::Box | QFrame::Plain); // makes the room; painted over below
    setLineWidth(2);
    const int zeile = std::max(16, fontMetrics().height());
    setIconSize(QSize(zeile, zeile));
    setMinimumHeight(7 * zeile); // the header, some contacts and the scroll bar, also on a small screen
}

void KontaktListe::richteEin(const QStringList &felder, const Icons &icons)
{
    m_icons = icons;
    m_felder = static_cast<int>(felder.size());
    m_spalteFirma = static_cast<int>(felder.indexOf(u"Firma"_s)) + 1;
    setHeaderLabels(QStringList{u"Firma"_s} + felder + QStringList{u"Nummer"_s, u"Mandant"_s, u"UniqueID"_s});
}

void KontaktListe::verteileBreiten()
{
    for (int spalte = 0; spalte < columnCount(); ++spalte) {
        const int teil = spalte == 0 ? 4 : spalte <= m_felder ? 5 : 7;
        setColumnWidth(spalte, width() / teil);
    }
}

// Only now the list has its size; from then on the widths are the user's.
void KontaktListe::showEvent(QShowEvent *ereignis)
{
    QTreeWidget::showEvent(ereignis);
    if (!m_breitenVerteilt)
        verteileBreiten();
    m_breitenVerteilt = true;
}

bool KontaktListe::event(QEvent *ereignis)
{
    const bool behandelt = QTreeWidget::event(ereignis);
    if (ereignis->type() == QEvent::Paint)
        maleRahmen();
    else if (ereignis->type() == QEvent::FocusIn || ereignis->type() == QEvent::FocusOut)
        update();
    return behandelt;
}

void KontaktListe::focusInEvent(QFocusEvent *ereignis)
{
    QTreeWidget::focusInEvent(ereignis);
    const Qt::FocusReason grund = ereignis->reason();
    if (grund == Qt::TabFocusReason || grund == Qt::BacktabFocusReason || grund == Qt::ShortcutFocusReason)
        waehleAktuellen();
}

// The toolkit's activation would be a single click on some desktops. A key that is held down is one command only.
void KontaktListe::keyPressEvent(QKeyEvent *ereignis)
{
    const bool eingabe = ereignis->key() == Qt::Key_Return || ereignis->key() == Qt::Key_Enter;
    if (!eingabe)
        QTreeWidget::keyPressEvent(ereignis);
    else if (currentItem() && !ereignis->isAutoRepeat())
        Q_EMIT itemDoubleClicked(currentItem(), currentColumn());
}

void KontaktListe::halteAuswahl(bool gehalten)
{
    m_auswahlGehalten = gehalten;
    if (!gehalten && window()->focusWidget() == this) // the window itself may have to wait for the keyboard
        waehleAktuellen();
}

// What the dashed frame shows must be what the commands take.
void KontaktListe::waehleAktuellen()
{
    if (!m_auswahlGehalten && Anzahl() > 0 && selectedItems().isEmpty())
        setCurrentItem(currentItem() ? currentItem() : &Item(1));
}

// In the colour of the selection around the list that has the keyboard, even if it is empty.
void KontaktListe::maleRahmen()
{
    const QColor grund = palette().color(QPalette::Window);
    const QColor schrift = palette().color(QPalette::WindowText);
    const QColor zart((3 * grund.red() + schrift.red()) / 4, (3 * grund.green() + schrift.green()) / 4,
                      (3 * grund.blue() + schrift.blue()) / 4);
    const int breite = frameWidth();
    QPainter maler(this);
    maler.setPen(QPen(hasFocus() ? palette().color(QPalette::Highlight) : zart, breite, Qt::SolidLine, Qt::SquareCap,
                      Qt::MiterJoin));
    maler.drawRect(rect().adjusted(breite / 2, breite / 2, -breite / 2, -breite / 2));
}

// The current item, too: some styles do not mark it among selected ones.
void KontaktListe::drawRow(QPainter *maler, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    QTreeWidget::drawRow(maler, option, index);
    if (!hasFocus() || index.row() != currentIndex().row())
        return;
    const bool gewaehlt = selectionModel()->isSelected(index);
    maler->setPen(QPen(palette().color(gewaehlt ? QPalette::HighlightedText : QPalette::Text), 1, Qt::DashLine));
    maler->setBrush(Qt::NoBrush);
    maler->drawRect(option.rect.adjusted(0, 0, -1, -1));
}

void KontaktListe::entferne(int i)
{
    const bool aktuell = currentItem() == &Item(i);
    delete takeTopLevelItem(i - 1);
    if (aktuell && Anzahl() > 0) // the toolkit would go up
        setCurrentItem(&Item(std::min(i, Anzahl())), 0, QItemSelectionModel::NoUpdate);
}

void KontaktListe::haengeAn(const clKontakt &kontakt)
{
    QStringList texte{kontakt.Daten(u"Firma"_s)};
    for (int feld = 1; feld <= m_felder; ++feld)
        texte += kontakt.Daten(feld);
    texte += {kontakt.Nummer, kontakt.Mandant, kontakt.UniqueID};
    auto *item = new QTreeWidgetItem(this, texte);
    setzeIcon(*item, kontakt.IconNr());
}

QTreeWidgetItem &KontaktListe::haengeAn(const QTreeWidgetItem &item, int icon)
{
    auto *kopie = new QTreeWidgetItem(this);
    for (int spalte = 0; spalte < columnCount(); ++spalte)
        kopie->setText(spalte, item.text(spalte));
    setzeIcon(*kopie, icon);
    return *kopie;
}

int KontaktListe::icon(const QTreeWidgetItem &item)
{
    return item.data(0, iconRolle).toInt();
}

void KontaktListe::setzeIcon(QTreeWidgetItem &item, int icon) const
{
    item.setData(0, iconRolle, icon);
    item.setIcon(0, icon >= Unbekannt && icon <= Haupt ? m_icons[static_cast<std::size_t>(icon - 1)] : QIcon());
    beschrifte(item);
}

// The role in words, for those who cannot see or tell the icon; and all of a text that its column cuts.
void KontaktListe::beschrifte(QTreeWidgetItem &item) const
{
    const QString rolle = rolleInWorten(icon(item));
    item.setData(0, Qt::AccessibleTextRole, item.text(0) + u", "_s + rolle);
    const QSize eineZeile(0, std::max(iconSize().height(), fontMetrics().height()) + 2); // of notes the first line
    for (int spalte = 0; spalte < columnCount(); ++spalte) {
        item.setToolTip(spalte, Qt::convertFromPlainText(rolle + u'\n' + item.text(spalte)));
        item.setSizeHint(spalte, eineZeile);
    }
}

void KontaktListe::setzeFirma(QTreeWidgetItem &item, const QString &firma) const
{
    item.setText(0, firma);
    if (m_spalteFirma > 0)
        item.setText(m_spalteFirma, firma);
    beschrifte(item);
}

void KontaktListe::setzeKonto(QTreeWidgetItem &item, const QString &nummer, const QString &mandant) const
{
    item.setText(spalteNummer(), nummer);
    item.setText(spalteNummer() + 1, mandant);
    beschrifte(item);
}

bool KontaktListe::hatKonto(const QTreeWidgetItem &item, const QString &nummer, const QString &mandant) const
{
    return this->nummer(item) == nummer && this->mandant(item) == mandant;
}

void KontaktListe::fuelle(clKontakt &kontakt, const QTreeWidgetItem &item) const
{
    kontakt.Nummer = nummer(item);
    kontakt.Mandant = mandant(item);
    kontakt.UniqueID = uniqueID(item);
    for (int nr = 1; nr <= m_felder; ++nr)
        kontakt.Setze_Daten(nr, feld(item, nr));
    const int rolle = icon(item);
    kontakt.Typ = rolle == Haupt ? u"H"_s : rolle == Neben ? u"N"_s : QString();
}
