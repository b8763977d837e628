#pragma once

#include <optional>
#include <vector>

#include <QAbstractTableModel>

#include "acthost/ContactBook.h"

namespace acthost {

/// The book's contacts, as far as company or name contain the search text, in two columns. The book must outlive it.
class ContactListModel : public QAbstractTableModel
{
public:
    explicit ContactListModel(const ContactBook &book, QObject *parent = nullptr);

    /// Takes over what the book holds now.
    void refresh();
    void setSearchText(const QString &text);

    storage::RowId contactAt(int position) const;
    std::optional<int> positionOf(storage::RowId row) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    const ContactBook &m_book;
    QString m_searchText; // folded
    std::vector<Contact> m_shown;
};

} // namespace acthost
