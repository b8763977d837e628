// The list of contacts beside the card.
#include "acthost/ContactListModel.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace acthost {

namespace {

// As people type it: capitals and ß do not matter.
QString folded(const QString &text)
{
    return text.toCaseFolded().replace(u'ß', u"ss"_s);
}

} // namespace

ContactListModel::ContactListModel(const ContactBook &book, QObject *parent)
    : QAbstractTableModel(parent)
    , m_book(book)
{
    refresh();
}

void ContactListModel::refresh()
{
    beginResetModel();
    m_shown.clear();
    for (const Contact &contact : m_book.contacts()) {
        if (folded(contact.company).contains(m_searchText) || folded(contact.name).contains(m_searchText))
            m_shown.push_back(contact);
    }
    endResetModel();
}

void ContactListModel::setSearchText(const QString &text)
{
    m_searchText = folded(text.trimmed());
    refresh();
}

storage::RowId ContactListModel::contactAt(int position) const
{
    return m_shown[static_cast<std::size_t>(position)].row;
}

std::optional<int> ContactListModel::positionOf(storage::RowId row) const
{
    const auto found
        = std::find_if(m_shown.begin(), m_shown.end(), [row](const Contact &contact) { return contact.row == row; });
    if (found == m_shown.end())
        return std::nullopt;
    return static_cast<int>(found - m_shown.begin());
}

int ContactListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_shown.size());
}

int ContactListModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : 2;
}

QVariant ContactListModel::data(const QModelIndex &index, int role) const
{
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole)
        return {};
    const Contact &contact = m_shown[static_cast<std::size_t>(index.row())];
    return index.column() == 0 ? contact.company : contact.name;
}

QVariant ContactListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole || orientation != Qt::Horizontal)
        return {};
    return section == 0 ? u"Firma"_s : u"Kontakt"_s;
}

} // namespace acthost
