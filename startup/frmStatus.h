#pragma once

#include <memory>

#include <QTimer>
#include <QWidget>

namespace Ui {
class frmStatus;
}

/// The small window that says what the program is doing. It cannot be closed by the user.
class frmStatus : public QWidget
{
public:
    frmStatus();
    ~frmStatus() override;

    QString lbStatus() const;
    void setze_lbStatus(const QString &text);

    int ProgressBar1() const;
    void setze_ProgressBar1(int wert); ///< 0 to 100

    /// Interval of the timer that moves the bar as a sign of life; 0 stops it.
    void Timer1_Interval(int millisekunden);

protected:
    void closeEvent(QCloseEvent *ereignis) override;

private:
    void Timer1_Timer();

    std::unique_ptr<Ui::frmStatus> m_ui;
    QTimer m_Timer1;
};
