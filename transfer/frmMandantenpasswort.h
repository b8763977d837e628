#pragma once

#include <memory>

#include <QDialog>

#include "pck/Kennwortabfrage.h"
#include "startup/Haupt.h"

namespace Ui {
class frmMandantenpasswort;
}

/// Asks for the password of a client. It only collects it; an empty one is rejected here, a wrong one by the caller.
class frmMandantenpasswort : public QDialog, public Kennwortabfrage
{
public:
    frmMandantenpasswort(Haupt &haupt, QWidget *parent);
    ~frmMandantenpasswort() override;

    void zeige(const QString &Mandant) override;
    QString Kennwort() const override;

protected:
    void showEvent(QShowEvent *ereignis) override;
    void reject() override; // Esc and the window's own button count as "Abbruch"

private:
    void cmdOK_Click();
    void cmdAbbruch_Click();

    Haupt &m_haupt;
    std::unique_ptr<Ui::frmMandantenpasswort> m_ui;
};
