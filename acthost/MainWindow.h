#pragma once

#include <QMainWindow>

#include "acthost/ContactBook.h"
#include "acthost/ContactListModel.h"
#include "acthost/HostWindow.h"

class QAction;
class QDialog;
class QLabel;
class QLineEdit;
class QTreeView;

namespace acthost {

class ContactCard;

/// The program's window: the list of contacts, the card of the current one, and the menu with the states into which
/// the program can be put. The book must outlive it.
class MainWindow : public QMainWindow, public HostWindow
{
public:
    explicit MainWindow(ContactBook &book);

    /// Checked while automation is not offered, while a notice is open, while calls stay unanswered.
    QAction *withoutAutomationAction() const { return m_withoutAutomation; }
    QAction *noticeAction() const { return m_noticeOpen; }
    QAction *hangingAction() const { return m_hanging; }
    /// One line about the automation interface, in the status bar.
    void setServiceText(const QString &text, bool ready);

    QSize sizeInPixels() const override;
    void resizeTo(const QSize &pixels) override;
    void minimize() override;
    void maximize() override;
    bool noticeOpen() const override;
    std::optional<storage::RowId> contactOnScreen() const override { return m_row; }
    void showContact(std::optional<storage::RowId> row) override;

private:
    void buildMenus();
    void buildContactMenu();
    QWidget *buildList();
    void buildNotice();
    QAction *addCheckable(QMenu *menu, const QString &text);
    void step(int distance);
    void select(int position);
    void search(const QString &text);
    void display(std::optional<storage::RowId> row);

    ContactBook &m_book;
    ContactListModel m_model;
    std::optional<storage::RowId> m_row;
    ContactCard *m_card; // these are owned by the window
    QTreeView *m_list = nullptr;
    QLineEdit *m_search = nullptr;
    QLabel *m_position;
    QLabel *m_service;
    QDialog *m_notice;
    QAction *m_withoutAutomation = nullptr;
    QAction *m_noticeOpen = nullptr;
    QAction *m_hanging = nullptr;
};

} // namespace acthost
