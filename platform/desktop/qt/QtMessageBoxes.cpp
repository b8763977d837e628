// Message boxes as the system's users know them: German buttons, Esc means no.
#include "platform/desktop/qt/QtMessageBoxes.h"

#include <algorithm>

#include <QApplication>
#include <QGridLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollArea>
#include <QWindow>

#include "platform/desktop/application/OnScreen.h"

using namespace Qt::StringLiterals;

namespace {

QMessageBox::Icon iconOf(desktop::Icon icon)
{
    switch (icon) {
    case desktop::Icon::Critical:
        return QMessageBox::Critical;
    case desktop::Icon::Question:
        return QMessageBox::Question;
    case desktop::Icon::Exclamation:
        return QMessageBox::Warning;
    case desktop::Icon::Information:
        return QMessageBox::Information;
    case desktop::Icon::None:
        break;
    }
    return QMessageBox::NoIcon;
}

QString withLineBreaks(QString text)
{
    return text.replace(u"\r\n"_s, u"\n"_s).replace(u'\r', u'\n');
}

// In front of the active window without belonging to it: that window may be closed while the box is open.
void placeAbove(QMessageBox &box, const QWidget *window)
{
    box.winId(); // makes the native window that the next line needs
    if (window && window->windowHandle())
        box.windowHandle()->setTransientParent(window->windowHandle());
}

// A text that is too long for the screen scrolls, so that the buttons stay there.
void letTextScroll(QMessageBox &box)
{
    auto *label = box.findChild<QLabel *>(u"qt_msgbox_label"_s);
    auto *grid = qobject_cast<QGridLayout *>(box.layout());
    if (!label || !grid)
        return;
    const QSize room = desktop::roomFor(box);
    const int line = box.fontMetrics().lineSpacing();
    const int width = std::min(room.width() - 12 * line, 40 * line);
    const int height = room.height() - 7 * line; // for the buttons and what is around
    label->setWordWrap(true);
    const bool fits = label->heightForWidth(std::min(width, room.width() / 2)) <= height;
    if (fits && label->minimumSizeHint().width() <= width) // the longest word's
        return;
    auto *scroll = new QScrollArea(&box);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    scroll->setMinimumSize(width, std::min(height, label->heightForWidth(width) + line));
    delete grid->replaceWidget(label, scroll);
    scroll->setWidget(label);
}

} // namespace

namespace desktop {

Answer QtMessageBoxes::show(const Box &box)
{
    QMessageBox shown;
    shown.setWindowTitle(box.title.isEmpty() ? u"VELDRAK"_s : box.title);
    shown.setTextFormat(Qt::PlainText);
    shown.setText(withLineBreaks(box.text));
    shown.setIcon(iconOf(box.icon));
    shown.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);

    const bool asks = box.buttons == Buttons::YesNo;
    QPushButton *first
        = shown.addButton(asks ? u"&Ja"_s : u"OK"_s, asks ? QMessageBox::YesRole : QMessageBox::AcceptRole);
    QPushButton *last = asks ? shown.addButton(u"&Nein"_s, QMessageBox::NoRole) : first;
    shown.setDefaultButton(first);
    shown.setEscapeButton(last);

    letTextScroll(shown);
    placeAbove(shown, QApplication::activeWindow());
    shown.exec();
    if (!asks)
        return Answer::Ok;
    return shown.clickedButton() == first ? Answer::Yes : Answer::No;
}

} // namespace desktop
