// The transfer dialog's input: the number, the checks while typing, and the two ways out.
#include "transfer/frmUebertragung.h"

#include <algorithm>

#include <QKeyEvent>
#include <QScopeGuard>

#include "ui_frmUebertragung.h"
#include "util/Zahlen.h"
#include "util/Zeichenketten.h"

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype meisteZiffern = 6;

bool istZiffernfolge(const QString &text)
{
    return std::all_of(text.begin(), text.end(), [](QChar zeichen) { return zeichen >= u'0' && zeichen <= u'9'; });
}

// The number in front of a row such as "2 - Händler"; 0 for a row without one.
double nummerVon(const QString &zeile)
{
    return Val(zeile.section(u'-', 0, 0));
}

bool istLaendercode(double zahl)
{
    return zahl >= 1 && zahl <= 999;
}

} // namespace

void frmÜbertragung::cmdNummer_Click()
{
    if (m_ui->lbNummer->text() == clPCK::keinZugriff)
        return;
    if (m_ui->txbNummer->isHidden())
        beginneNummerneingabe();
    else
        uebernimmNummer();
}

void frmÜbertragung::beginneNummerneingabe()
{
    m_nummerVorher = m_ui->lbNummer->text();
    m_ui->lbNummer->setText(typBuchstabe());
    zeigeNummerneingabe(true);
    m_ui->txbNummer->setFocus();
}

void frmÜbertragung::uebernimmNummer()
{
    const QString text = Trim(m_ui->txbNummer->text());
    if (text.size() > meisteZiffern || !istZiffernfolge(text)) {
        m_haupt.MsgBox({u"Bitte geben Sie maximal 6 Zahlen ein !"_s});
        m_ui->txbNummer->clear();
        m_ui->txbNummer->setFocus();
        return;
    }
    if (istMandantGewaehlt())
        zeigeNeueNummer(CLng(Val(text)));
    zeigeNummerneingabe(false);
}

// A number that another client or type has brought meanwhile stays.
void frmÜbertragung::verwirfNummer()
{
    if (m_ui->txbNummer->isHidden())
        return;
    if (m_ui->lbNummer->text().size() == 1)
        m_ui->lbNummer->setText(m_nummerVorher);
    zeigeNummerneingabe(false);
}

void frmÜbertragung::zeigeNummerneingabe(bool sichtbar)
{
    m_ui->txbNummer->clear();
    m_ui->txbNummer->setVisible(sichtbar);
    m_ui->cmdEintragen->setEnabled(!sichtbar);
    m_ui->cmdNummer->setText(sichtbar ? u"Übernehmen"_s : u"Ändern"_s);
    m_ui->lbLfZahlenkreis->setBuddy(sichtbar ? static_cast<QWidget *>(m_ui->txbNummer) : m_ui->cmdNummer);
}

void frmÜbertragung::richteMausradEin()
{
    for (QComboBox *liste : findChildren<QComboBox *>()) {
        liste->setFocusPolicy(Qt::StrongFocus); // by default the wheel gives them the focus
        liste->installEventFilter(this);
    }
}

bool frmÜbertragung::eventFilter(QObject *objekt, QEvent *ereignis)
{
    if (objekt != m_ui->txbNummer) {
        const bool rad = ereignis->type() == QEvent::Wheel && !static_cast<QWidget *>(objekt)->hasFocus();
        if (rad)
            ereignis->ignore(); // may scroll what is around
        return rad;
    }
    if (ereignis->type() == QEvent::KeyPress) {
        const int taste = static_cast<QKeyEvent *>(ereignis)->key();
        if (taste == Qt::Key_Return || taste == Qt::Key_Enter) {
            txbNummer_Enter();
            return true; // the button that has the focus now must not take it, too
        }
    }
    const bool verlaesst = QDialog::eventFilter(objekt, ereignis);
    if (ereignis->type() == QEvent::FocusOut) {
        const Qt::FocusReason grund = static_cast<QFocusEvent *>(ereignis)->reason();
        if (grund != Qt::ActiveWindowFocusReason && grund != Qt::PopupFocusReason)
            txbNummer_LostFocus();
    }
    return verlaesst;
}

void frmÜbertragung::txbNummer_Enter()
{
    m_ui->cmdNummer->setFocus();
    m_ui->cmdNummer->click();
}

void frmÜbertragung::txbNummer_LostFocus()
{
    m_ui->cmdNummer->setFocus();
}

void frmÜbertragung::txbRabatt_Change()
{
    const std::optional<double> rabatt = Zahlenwert(m_ui->txbRabatt->text());
    if (rabatt && *rabatt >= 0 && *rabatt <= 100)
        return;
    m_haupt.MsgBox({u"Bitte geben Sie eine Zahl zwischen 0,00 und 100,00 ein."_s});
    m_ui->txbRabatt->setText(u"0,00"_s);
}

void frmÜbertragung::txbLaendercode_Change()
{
    const QString text = m_ui->txbLaendercode->text();
    if (text.isEmpty() || (IsNumeric(text) && istLaendercode(Val(text))))
        return;
    m_haupt.MsgBox({u"Bitte geben Sie eine Ländervorwahl zwischen 1 und 999 ein."_s});
    m_ui->txbLaendercode->setText(u"49"_s);
}

void frmÜbertragung::cmdEintragen_Click()
{
    if (m_ui->lbNummer->text() == clPCK::keinZugriff || !istMandantBereit())
        return meldeKeinenZugriff();
    if (!istLaendercode(Val(m_ui->txbLaendercode->text())))
        m_ui->txbLaendercode->setText(u"49"_s);
    const QString typ = QString::number(m_ui->cbxTyp->currentIndex());
    const QString mandant = QString::number(m_ui->cbxMandant->currentIndex());
    merke({{u"Typ"_s, typ}, {u"Mandant"_s, mandant}, {u"Laendercode"_s, m_ui->txbLaendercode->text()}});

    Eintragung eintragung(m_haupt, *objPCK, *objHauptkontakt, angaben());
    sperre(true);
    const auto danach = qScopeGuard([this] { sperre(false); });
    if (!eintragung.fuehreAus())
        return;
    objPCK->close_Mandant();
    m_haupt.Status().hide();
    merke({{u"Typ"_s, typ}, {u"Mandant"_s, mandant}});
    m_haupt.ProgrammEnde();
}

void frmÜbertragung::meldeKeinenZugriff()
{
    const QStringList meldung = {
        u"Bitte Wählen Sie einen Mandanten aus der Mandantenliste aus."_s,
        u"Falls dort keine Mandanten angezeit werden kontrollieren Sie in der"_s,
        u"Konfiguration von VELDRAK den Pfad zu Ihren PCK-Daten."_s,
        u"Aktueller Pfad: "_s + m_haupt.konfiguration.PckPfad,
    };
    m_haupt.MsgBox({meldung.join(u"\r\n"_s), desktop::Icon::Critical});
}

// A new account's number is asked for once more, which opens the client. A group that has its account already needs it
// open all the same, and the lists of a dialog just loaded have closed it.
bool frmÜbertragung::istMandantBereit()
{
    const bool hatKonto = !objHauptkontakt->Mandant.isEmpty() && !objHauptkontakt->Nummer.isEmpty();
    return !hatKonto || objPCK->istOffen() || oeffneMandant();
}

// What is being transferred cannot be changed meanwhile.
void frmÜbertragung::sperre(bool gesperrt)
{
    for (QWidget *teil : std::initializer_list<QWidget *>{m_ui->Frame1, m_ui->Frame2, m_ui->Frame3, m_ui->cmdEintragen,
                                                          m_ui->cmdAbbruch})
        teil->setEnabled(!gesperrt);
    m_ui->cmdEintragen->setFocus();
}

Eintragung::Angaben frmÜbertragung::angaben() const
{
    Eintragung::Angaben angaben;
    angaben.mandant = CInt(m_ui->cbxMandant->currentIndex() - 1);
    angaben.mandantName = m_ui->cbxMandant->currentText();
    angaben.typ = typBuchstabe();
    angaben.nummer = m_ui->lbNummer->text();
    if (m_ui->txbRabatt->isEnabled())
        angaben.rabatt = Zahlenwert(m_ui->txbRabatt->text()).value_or(0);
    angaben.laendercode = Val(m_ui->txbLaendercode->text());
    if (m_ui->cbxPreisliste->isEnabled())
        angaben.preisgruppe = nummerVon(m_ui->cbxPreisliste->currentText());
    if (m_ui->cbxWaehrung->isEnabled())
        angaben.waehrung = nummerVon(m_ui->cbxWaehrung->currentText());
    return angaben;
}

void frmÜbertragung::cmdAbbruch_Click()
{
    objPCK->close_Mandant();
    hide();
    m_haupt.ProgrammEnde();
}

void frmÜbertragung::reject()
{
    m_haupt.ausgefuehrt([this] { behandle(&frmÜbertragung::cmdAbbruch_Click, false); });
}

// Enter works on buttons only: no number is entered into PC-Kaufmann by a key that was meant for a list.
void frmÜbertragung::keyPressEvent(QKeyEvent *ereignis)
{
    const bool eingabe = ereignis->key() == Qt::Key_Return || ereignis->key() == Qt::Key_Enter;
    if (ereignis->matches(QKeySequence::Cancel)) {
        m_haupt.ausgefuehrt([this] { behandle(&frmÜbertragung::verwirfNummer, false); });
    } else if (eingabe) {
        if (auto *knopf = qobject_cast<QPushButton *>(focusWidget()))
            knopf->click();
    } else {
        QDialog::keyPressEvent(ereignis);
    }
}
