#pragma once

#include <functional>
#include <memory>

#include <QDialog>
#include <QTimer>

#include "groupeditor/KontaktListe.h"

namespace Ui {
class frmFehlerHptkt;
}

/// Tells that a group has several main contacts, and turns them into secondary ones.
///
/// That happens once, when the dialog is made; "OK" only hides it, and a later showing brings it back as it was. It is
/// not modal, but keeps itself in front of the main window, behind any modal box.
class frmFehlerHptkt : public QDialog
{
public:
    /// `beiOK` shows the main window again.
    frmFehlerHptkt(KontaktListe &lvMitglieder, QWidget &hauptfenster, std::function<void()> beiOK);
    ~frmFehlerHptkt() override;

protected:
    void showEvent(QShowEvent *ereignis) override;
    void hideEvent(QHideEvent *ereignis) override;
    void reject() override { cmdOK_Click(); } // Esc and the window's own button

private:
    void bleibeVor(QWidget &hauptfenster);
    void Form_Load(KontaktListe &lvMitglieder);
    void Timer1_Timer();
    void cmdOK_Click();

    const QWidget &m_hauptfenster;
    std::unique_ptr<Ui::frmFehlerHptkt> m_ui;
    std::function<void()> m_beiOK;
    QTimer m_Timer1;
    bool m_neuGezeigt = false;
};
