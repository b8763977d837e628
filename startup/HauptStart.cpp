// Start-up, step by step, from "is ACT! running" to the main window.
#include "startup/Haupt.h"

#include <algorithm>

#include <QWidget>

#include "startup/API.h"
#include "startup/Hersteller.h"
#include "util/Zahlen.h"
#include "util/Zeichenketten.h"
#include "util/coding.h"

using namespace Qt::StringLiterals;

namespace {

const QString actProgId = u"ACTOLE.APPOBJECT"_s;
const QString mappingDatei = u"/veldrak.piz"_s;
const QString konfigurationFehlt = u"Bitte führen Sie zuerst die VELDRAK-Konfiguration aus."_s;

/// The same error, told with the file, and the place in it, that it comes from.
RunTimeError mitHerkunft(const RunTimeError &fehler, const QString &woher)
{
    const bool gesagt = fehler.Description().contains(woher);
    return {fehler.Number(), gesagt ? fehler.Description() : u"%1: %2"_s.arg(woher, fehler.Description())};
}

bool istRelativ(const QString &pfad)
{
    const bool hatLaufwerk = pfad.size() > 1 && pfad[1] == u':';
    return !hatLaufwerk && !pfad.startsWith(u'/') && !pfad.startsWith(u'\\');
}

} // namespace

void Haupt::Main(const std::function<std::unique_ptr<QWidget>(Haupt &)> &hauptfenster)
{
    try {
        pruefeActGestartet();
        Status().show();
        zeigeStatus(u"PCK-Link wird initialisiert ..."_s);
        richteDatenbankmaschineEin();
        pruefeMappingDatei();
        verbindeMitAct();
        erzeugeKontaktfenster();
        frischeActAuf();
        merkeUndMinimiereAct();
        leseKonfiguration();
        frageMapping();
    } catch (const RunTimeError &fehler) { // no form is there yet that could be ended regularly
        meldeUndBeende({u"Fehler: "_s + QString::number(fehler.Number()) + u":"_s + fehler.Description(),
                        desktop::Icon::Critical});
    }
    ausgefuehrt([this, &hauptfenster] {
        QWidget &fenster = lade(hauptfenster(*this));
        fenster.show();
        fenster.activateWindow();
        Status().hide();
    });
}

void Haupt::pruefeActGestartet()
{
    if (API(u"act"_s, u"ACT!"_s).FensterVorhanden(m_umgebung.fenster, actProgId))
        return;
    InfoStart().exec();
    SofortEnde();
}

void Haupt::richteDatenbankmaschineEin()
{
    m_umgebung.dbEngine.SystemDB = m_umgebung.programmordner + u'/' + coding::workgroupDatei();
    m_umgebung.dbEngine.DefaultUser = coding::benutzer();
    m_umgebung.dbEngine.DefaultPassword = coding::kennwort();
}

void Haupt::pruefeMappingDatei()
{
    if (m_umgebung.dateien.exists(m_umgebung.programmordner + mappingDatei))
        return;
    meldeUndBeende({u"Es fehlt die Datei VELDRAK.PIZ. Bitte Installieren Sie VELDRAK neu,"_s + u"\r\n"_s
                        + u"und kopieren Sie danach die vom VELDRAK-Projekt (%1)"_s.arg(Hersteller::internet())
                        + u"\r\n"_s + u"erhaltene VELDRAK.PIZ-Datei in das Installationsverzeichnis von VELDRAK."_s,
                    desktop::Icon::Information});
}

void Haupt::verbindeMitAct()
{
    wiederhole(u"OLE-Verbindung zu ACT! ist nicht möglich.("_s, [this] {
        zeigeStatus(u"ACT! OLE-Verbindung wird initialisiert ."_s);
        ActApp.reset();
        ActApp = m_umgebung.automation.CreateObject(actProgId);
    });
    ActViews = objectOf(ActApp->get(u"Views"_s));
    if (!ActViews)
        throw AutomationError(RunTimeError::ObjectNotSet);
}

void Haupt::erzeugeKontaktfenster()
{
    wiederhole(u"OLE-Verbindung zum ACT! Kontaktfenster ist nicht möglich.("_s, [this] {
        ActKontaktfenster.reset();
        try {
            ActKontaktfenster = objectOf(ActViews->call(u"Create"_s, {QVariant::fromValue<qint16>(1), u"abc"_s}));
        } catch (const AutomationError &) { // whatever it was: there is no window, and the refresh will tell
        }
    });
}

// Tries until ACT! is there, waiting a second longer each time. Both users look at ActApp, the contact window's too: it
// is there by then, so that loop ends after its first try.
void Haupt::wiederhole(const QString &frage, const std::function<void()> &versuch)
{
    for (qint16 n = 2;; n = CInt(n + 1)) {
        versuch();
        if (ActApp)
            return;
        warteSekunden(n);
        const desktop::Box box{frage + QString::number(n) + u")"_s + u"\r\n"_s
                                   + u"Soll es noch einmal versucht werden ?"_s,
                               desktop::Icon::None, desktop::Buttons::YesNo};
        if (MsgBox(box) == desktop::Answer::No)
            SofortEnde();
    }
}

void Haupt::frischeActAuf()
{
    zeigeStatus(u"ACT!-Refresh ..."_s);
    int nummer = 0;
    try {
        if (!ActKontaktfenster)
            throw AutomationError(RunTimeError::ObjectNotSet);
        ActKontaktfenster->call(u"LookupALL"_s);
    } catch (const AutomationError &fehler) { // any other error than the notice window's does not count here
        nummer = fehler.Number();
    }
    if (nummer != RunTimeError::ObjectNotSet)
        return;
    MsgBox({u"Bevor sie VELDRAK starten schließen sie bitte alle Hinweisfenster von ACT!"_s});
    ActKontaktfenster.reset();
    ActApp.reset();
    SofortEnde();
}

void Haupt::merkeUndMinimiereAct()
{
    const QSize pixel = m_umgebung.bildschirm.sizeInPixels();
    const double breite = 0.9 * CInt(pixel.width());
    const double hoehe = 0.9 * CInt(pixel.height());
    ActApp->call(u"getsize"_s, {Argument::byReference(ActFensterBreite), Argument::byReference(ActFensterHoehe)});
    ActFensterMaximiert = !(breite >= ActFensterBreite || hoehe >= ActFensterHoehe);
    ActApp->call(u"Minimize"_s);
}

void Haupt::leseKonfiguration()
{
    zeigeStatus(u"VELDRAK Ini-Datei einlesen ..."_s);
    ladeIni();
    konfiguration = {};
    leseKennung(u"ID_Nummer"_s, konfiguration.IdNummer, konfiguration.IdNummerName);
    leseKennung(u"ID_Mandant"_s, konfiguration.IdMandant, konfiguration.IdMandantName);
    leseKennung(u"ID_Typ"_s, konfiguration.IdTyp, konfiguration.IdTypName);
    konfiguration.PckPfad = iniWert(u"PCKpfad"_s);
    if (konfiguration.PckPfad.isEmpty())
        meldeFalschenParameter();
    if (istRelativ(konfiguration.PckPfad)) // wherever the program was started
        konfiguration.PckPfad.prepend(m_umgebung.programmordner + u'/');

    zeigeStatus(u"Trovanix 'Pirolfinder' initialisieren ..."_s);
    ladeIni();
    leseKennung(u"ID_SuchFeld1"_s, konfiguration.IdSuchFeld1, konfiguration.IdSuchFeld1Name);
    leseKennung(u"ID_SuchFeld2"_s, konfiguration.IdSuchFeld2, konfiguration.IdSuchFeld2Name);
    konfiguration.DatevNr = Val(iniWert(u"DATEVNr"_s)) == 1;
    konfiguration.AutoSuche = Val(iniWert(u"AutoSuche"_s)) == 1;
}

void Haupt::ladeIni()
{
    if (m_ini.IniLaden(iniDateiname()))
        return;
    meldeUndBeende({u"Es fehlt die VELDRAK.ini Datei."_s + u"\r\n"_s + konfigurationFehlt, desktop::Icon::Information});
}

QString Haupt::iniDateiname() const
{
    return m_umgebung.programmordner + u"/VELDRAK.ini"_s;
}

QString Haupt::iniWert(const QString &name) const
{
    QString sektion = u"VELDRAK"_s;
    QString schluessel = name;
    return m_ini.IniLesen(sektion, schluessel);
}

void Haupt::leseKennung(const QString &name, qint16 &id, QString &spalte)
{
    const QString wert = iniWert(name);
    try {
        id = CInt(Val(Token(wert, 1)));
    } catch (const RunTimeError &fehler) {
        throw mitHerkunft(fehler, u"%1, %2=%3"_s.arg(iniDateiname(), name, wert));
    }
    spalte = Token(wert, 2);
    if (id == 0)
        meldeFalschenParameter();
}

void Haupt::meldeFalschenParameter()
{
    meldeUndBeende({u"Ein Parameter in der VELDRAK.ini ist Falsch."_s + u"\r\n"_s + konfigurationFehlt,
                    desktop::Icon::Information});
}

void Haupt::frageMapping()
{
    const QString datei = m_umgebung.programmordner + mappingDatei;
    try {
        SyncFelder.init(datei, coding::mappingZugriff());
        leseAktuellenKontakt();
    } catch (const AutomationError &) { // of ACT!, whose current contact is read meanwhile
        throw;
    } catch (const RunTimeError &fehler) {
        throw mitHerkunft(fehler, datei);
    }
}

void Haupt::leseAktuellenKontakt()
{
    Kontakt = std::make_shared<clKontakt>(konfiguration, *this);
    Kontakt->init(SyncFelder);
    Kontakt->lese_OLE_Werte(*ActKontaktfenster);
    if (!Kontakt->Daten(u"Firma"_s).isEmpty())
        return;
    Kontakt->Setze_Daten(u"Firma"_s, Kontakt->Daten(u"Name"_s));
    if (Kontakt->Typ.isEmpty())
        Kontakt->Typ = u"H"_s;
}

// The status window's bar moves on its own timer meanwhile.
void Haupt::warteSekunden(int n)
{
    constexpr double tag = 24 * 60 * 60;
    double beginn = m_umgebung.uhr.Timer();
    Status().Timer1_Interval(60);
    for (;;) {
        DoEventsUndWarten();
        const double jetzt = m_umgebung.uhr.Timer();
        if (jetzt < beginn) // past midnight the time of day begins anew
            beginn -= tag;
        if (jetzt - beginn >= n)
            break;
    }
    Status().Timer1_Interval(0);
    Status().setze_ProgressBar1(0);
    Status().setze_lbStatus(Status().lbStatus() + u'.');
    DoEvents();
}

void Haupt::meldeUndBeende(const desktop::Box &box)
{
    MsgBox(box);
    SofortEnde();
}
