// Message boxes as the system's users know them: German buttons, Esc means no.
#include "platform/desktop/qt/QtMessageBoxes.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QWindow>

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

    placeAbove(shown, QApplication::activeWindow());
    shown.exec();
    if (!asks)
        return Answer::Ok;
    return shown.clickedButton() == first ? Answer::Yes : Answer::No;
}

} // namespace desktop
