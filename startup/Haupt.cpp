// The program's course: both ways out, errors that reach the event loop, and what all forms share.
#include "startup/Haupt.h"

#include <QWidget>

using namespace Qt::StringLiterals;

Haupt::Haupt(const Umgebung &umgebung)
    : SyncFelder(umgebung.dbEngine)
    , ActDB(*this, konfiguration, SyncFelder, umgebung.dbEngine, umgebung.dateien, umgebung.zwischenablage)
    , m_umgebung(umgebung)
    , m_ini(umgebung.dateien)
{ }

Haupt::~Haupt() = default;

const KontaktPtr &Haupt::Mitglied(int i) const
{
    if (i < 1 || i > AnzahlMitglieder())
        throw RunTimeError(RunTimeError::SubscriptOutOfRange);
    return Mitglieder[static_cast<std::size_t>(i - 1)];
}

void Haupt::regulaeresEnde()
{
    pruefeBeendet();
    m_beendet = true; // from here on nothing else may start
    versuche([this] { stelleActWiederHer(); }); // an ACT! that is gone must not keep the program alive
    ActKontaktfenster.reset();
    ActViews.reset();
    ActApp.reset();
    schliesseDatenbanken();
    entlade();
    if (m_fehler) {
        m_umgebung.boxen.show({u"Fehler: "_s + QString::number(m_fehler->Number()) + u":"_s + m_fehler->Description(),
                               desktop::Icon::Critical});
    }
    m_umgebung.schleife.quit();
}

void Haupt::sofortigesEnde()
{
    m_beendet = true;
    m_umgebung.schleife.quit();
}

// On the way out everything has its turn; of what fails, the first is shown.
void Haupt::versuche(const std::function<void()> &code)
{
    try {
        code();
    } catch (const RunTimeError &fehler) {
        if (!m_fehler)
            m_fehler = fehler;
    }
}

void Haupt::schliesseDatenbanken()
{
    versuche([this] { ActDB.schliessen(); });
    versuche([this] {
        if (SyncFelder.istOffen())
            SyncFelder.Kill();
    });
    if (schliesseMandant)
        versuche(schliesseMandant);
}

void Haupt::stelleActWiederHer()
{
    if (!ActApp)
        return;
    if (ActFensterMaximiert)
        ActApp->call(u"maximize"_s);
    else
        ActApp->call(u"Resize"_s, {Argument::byReference(ActFensterBreite), Argument::byReference(ActFensterHoehe)});
}

// A form may be on the stack right now: hidden here, destroyed with this object.
void Haupt::entlade()
{
    for (const auto &form : m_formulare)
        form->hide();
    if (m_frmInfoStart)
        m_frmInfoStart->hide();
    if (m_frmStatus) {
        m_frmStatus->Timer1_Interval(0);
        m_frmStatus->hide();
    }
}

void Haupt::entlade(const QWidget &form)
{
    std::erase_if(m_formulare, [&form](const auto &geladen) { return geladen.get() == &form; });
}

void Haupt::ausgefuehrt(const std::function<void()> &code)
{
    if (m_beendet)
        return;
    try {
        try {
            code();
        } catch (const RunTimeError &fehler) {
            m_fehler = fehler;
            ProgrammEnde();
        }
    } catch (const ProgrammBeendet &) { // unwound to here; the event loop has been told
    }
}

void Haupt::pruefeBeendet() const
{
    if (m_beendet)
        throw ProgrammBeendet();
}

void Haupt::DoEvents()
{
    m_umgebung.schleife.yield();
    pruefeBeendet();
}

void Haupt::DoEventsUndWarten()
{
    m_umgebung.schleife.yieldAndRest();
    pruefeBeendet();
}

desktop::Answer Haupt::MsgBox(const desktop::Box &box)
{
    const desktop::Answer antwort = m_umgebung.boxen.show(box);
    pruefeBeendet();
    return antwort;
}

frmStatus &Haupt::Status()
{
    if (!m_frmStatus)
        m_frmStatus = std::make_unique<frmStatus>();
    return *m_frmStatus;
}

frmInfoStart &Haupt::InfoStart()
{
    if (!m_frmInfoStart)
        m_frmInfoStart = std::make_unique<frmInfoStart>(m_umgebung.programmordner);
    return *m_frmInfoStart;
}

void Haupt::zeigeStatus(const QString &text)
{
    Status().setze_lbStatus(text);
    Status().raise(); // a box that was answered has brought its own window in front
    DoEvents();
}

void Haupt::PCKDatenLoeschen(const clKontakt &kontakt)
{
    Status().show();
    MsgBox({u"Die Firma bzw. der Ansprechpartner bleiben im PC-Kaufmann erhalten !"_s});
    DoEvents();
    zeigeStatus(u"PCK-Daten werden in ACT! gelöscht ..."_s);
    ActKontaktfenster->call(u"LookupALL"_s);
    ActKontaktfenster->call(u"createLookup"_s, {kontakt.UniqueID});
    for (qint16 *feld : {&konfiguration.IdNummer, &konfiguration.IdMandant, &konfiguration.IdTyp})
        ActKontaktfenster->call(u"SetField"_s, {Argument::byReference(*feld), u""_s});
    Status().hide();
}
