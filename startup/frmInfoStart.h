#pragma once

#include <memory>

#include <QDialog>

namespace Ui {
class frmInfoStart;
}

/// The window about the program. Loaded on first showing and only hidden by its button.
class frmInfoStart : public QDialog
{
public:
    /// `programmordner` holds the logo in bilder/icons.
    explicit frmInfoStart(const QString &programmordner);
    ~frmInfoStart() override;

    QString txbInfo() const;
    void setze_txbInfo(const QString &text);

private:
    std::unique_ptr<Ui::frmInfoStart> m_ui;
};
