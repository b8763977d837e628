#pragma once

#include <map>
#include <optional>

#include <QFrame>
#include <QTimer>

#include "acthost/ContactBook.h"

class QFormLayout;
class QGridLayout;
class QLabel;

namespace acthost {

/// One contact as people want to see it. The book must outlive the card.
class ContactCard : public QFrame
{
public:
    explicit ContactCard(const ContactBook &book, QWidget *parent = nullptr);

    /// Nothing shows an empty card. A value that differs from what was shown of the same contact before stands out for
    /// a moment. Throws RunTimeError when the table cannot be read.
    void display(std::optional<storage::RowId> row);

private:
    void buildHead(QGridLayout *layout);
    QWidget *buildSection(const QString &title, const std::vector<int> &numbers);
    QWidget *buildRest();
    QLabel *valueLabel(int number);
    void emphasize(QLabel *label);
    void calm();

    const ContactBook &m_book;
    std::map<int, QLabel *> m_values; // by field number; owned by the card
    std::optional<storage::RowId> m_row;
    QTimer m_calm;
};

} // namespace acthost
