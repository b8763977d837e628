// List, card and menus of the contact program.
#include "acthost/MainWindow.h"

#include <algorithm>
#include <limits>

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QScrollArea>
#include <QSplitter>
#include <QStatusBar>
#include <QTreeView>
#include <QVBoxLayout>

#include "acthost/ContactCard.h"
#include "platform/errors/RunTimeError.h"

using namespace Qt::StringLiterals;

namespace acthost {

MainWindow::MainWindow(ContactBook &book)
    : m_book(book)
    , m_model(book)
    , m_card(new ContactCard(book))
    , m_position(new QLabel(this))
    , m_service(new QLabel(this))
    , m_notice(new QDialog(this))
{
    setWindowTitle(u"ACT! - Kontakte - [%1]"_s.arg(QFileInfo(book.path()).completeBaseName()));
    auto *scroll = new QScrollArea;
    scroll->setWidget(m_card);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    auto *splitter = new QSplitter;
    splitter->addWidget(buildList());
    splitter->addWidget(scroll);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({340, 700});
    setCentralWidget(splitter);

    buildMenus();
    buildNotice();
    m_position->setContentsMargins(8, 0, 0, 0);
    m_service->setContentsMargins(0, 0, 8, 0);
    statusBar()->addWidget(m_position);
    statusBar()->addPermanentWidget(m_service);
    resize(1080, 720);
    if (m_model.rowCount() > 0)
        select(0);
    else
        display(std::nullopt);
    m_list->setFocus();
}

void MainWindow::setServiceText(const QString &text, bool ready)
{
    m_service->setText(text);
    m_service->setStyleSheet(ready ? u"color: #2e7d32"_s : u"color: #c0392b"_s);
}

QSize MainWindow::sizeInPixels() const
{
    return (QSizeF(frameGeometry().size()) * devicePixelRatioF()).toSize();
}

void MainWindow::resizeTo(const QSize &pixels)
{
    showNormal();
    const QSize frame = frameGeometry().size() - size();
    resize((QSizeF(pixels) / devicePixelRatioF()).toSize() - frame);
}

void MainWindow::minimize()
{
    showMinimized();
}

void MainWindow::maximize()
{
    showMaximized();
}

bool MainWindow::noticeOpen() const
{
    return m_noticeOpen->isChecked();
}

void MainWindow::showContact(std::optional<storage::RowId> row)
{
    m_model.refresh();
    if (row && !m_model.positionOf(*row))
        m_search->clear(); // the search text hides the contact
    display(row);
}

void MainWindow::buildMenus()
{
    QMenu *file = menuBar()->addMenu(u"&Datei"_s);
    QAction *quit = file->addAction(u"&Beenden"_s, QKeySequence(u"Ctrl+Q"_s));
    connect(quit, &QAction::triggered, this, [this] { close(); });

    buildContactMenu();

    QMenu *state = menuBar()->addMenu(u"&Zustand"_s);
    m_withoutAutomation = addCheckable(state, u"&Automatisierung noch nicht bereit"_s);
    m_noticeOpen = addCheckable(state, u"&Hinweisfenster offen"_s);
    m_hanging = addCheckable(state, u"Anrufe hängen &lassen"_s);
}

void MainWindow::buildContactMenu()
{
    QMenu *menu = menuBar()->addMenu(u"&Kontakt"_s);
    struct Step {
        QString text;
        QString keys;
        int distance;
    };
    const int farAway = std::numeric_limits<int>::max() / 2;
    for (const Step &entry : {Step{u"&Erster"_s, u"Ctrl+Home"_s, -farAway}, Step{u"&Voriger"_s, u"PgUp"_s, -1},
                              Step{u"&Nächster"_s, u"PgDown"_s, 1}, Step{u"&Letzter"_s, u"Ctrl+End"_s, farAway}}) {
        QAction *action = menu->addAction(entry.text, QKeySequence(entry.keys));
        connect(action, &QAction::triggered, this, [this, distance = entry.distance] { step(distance); });
    }
    menu->addSeparator();
    QAction *search = menu->addAction(u"&Suchen"_s, QKeySequence(u"Ctrl+F"_s));
    connect(search, &QAction::triggered, this, [this] {
        m_search->setFocus();
        m_search->selectAll();
    });
}

QAction *MainWindow::addCheckable(QMenu *menu, const QString &text)
{
    QAction *action = menu->addAction(text);
    action->setCheckable(true);
    return action;
}

QWidget *MainWindow::buildList()
{
    auto *side = new QWidget;
    m_search = new QLineEdit(side);
    m_search->setPlaceholderText(u"Firma oder Name suchen"_s);
    m_search->setClearButtonEnabled(true);
    m_list = new QTreeView(side);
    m_list->setModel(&m_model);
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setAlternatingRowColors(true);
    m_list->setStyleSheet(u"QTreeView::item { padding: 2px 0; }"_s);
    m_list->header()->resizeSection(0, 200);
    auto *layout = new QVBoxLayout(side);
    layout->setContentsMargins(8, 8, 0, 8);
    layout->addWidget(m_search);
    layout->addWidget(m_list);

    connect(m_search, &QLineEdit::textChanged, this, [this](const QString &text) { search(text); });
    connect(m_search, &QLineEdit::returnPressed, this, [this] { m_list->setFocus(); });
    connect(m_list->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex &current) {
                if (current.isValid() && m_row != m_model.contactAt(current.row()))
                    display(m_model.contactAt(current.row()));
            });
    return side;
}

void MainWindow::buildNotice()
{
    m_notice->setWindowTitle(u"Hinweis"_s);
    auto *layout = new QVBoxLayout(m_notice);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    layout->addWidget(new QLabel(u"Heute sind zwei Aktivitäten fällig:\n\n"
                                 "    09:30  Rückruf beim Steuerbüro\n"
                                 "    14:00  Besprechung im Haus"_s));
    auto *buttons = new QDialogButtonBox(m_notice);
    connect(buttons->addButton(u"OK"_s, QDialogButtonBox::AcceptRole), &QPushButton::clicked, m_notice,
            &QDialog::accept);
    layout->addWidget(buttons);
    connect(m_noticeOpen, &QAction::toggled, m_notice, &QDialog::setVisible);
    connect(m_notice, &QDialog::finished, this, [this] { m_noticeOpen->setChecked(false); });
}

void MainWindow::step(int distance)
{
    if (m_model.rowCount() == 0)
        return;
    const int position = m_row ? m_model.positionOf(*m_row).value_or(0) : 0;
    select(std::clamp(position + distance, 0, m_model.rowCount() - 1));
}

void MainWindow::select(int position)
{
    m_list->setCurrentIndex(m_model.index(position, 0));
}

void MainWindow::search(const QString &text)
{
    m_model.setSearchText(text);
    if (m_row && m_model.positionOf(*m_row))
        display(m_row);
    else if (m_model.rowCount() > 0)
        select(0);
    else
        m_position->setText(u"keine Treffer"_s);
}

void MainWindow::display(std::optional<storage::RowId> row)
{
    m_row = row;
    const std::optional<int> position = row ? m_model.positionOf(*row) : std::nullopt;
    if (position)
        m_list->setCurrentIndex(m_model.index(*position, 0));
    else
        m_list->clearSelection();
    m_position->setText(position ? u"%1 von %2"_s.arg(*position + 1).arg(m_model.rowCount())
                                 : u"kein Kontakt ausgewählt"_s);
    try {
        m_card->display(row);
    } catch (const RunTimeError &error) {
        m_row.reset();
        m_card->display(std::nullopt);
        m_position->setText(error.Description());
    }
}

} // namespace acthost
