// Windows that fit the screen, whatever its size, scaling and font.
#include "platform/desktop/application/OnScreen.h"

#include <algorithm>

#include <QApplication>
#include <QBoxLayout>
#include <QEvent>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QStyle>
#include <QWindow>

namespace {

bool holdsButtons(QLayoutItem &item)
{
    if (qobject_cast<QPushButton *>(item.widget()))
        return true;
    const QLayout *layout = item.layout();
    for (int i = 0; layout && i < layout->count(); ++i) {
        if (holdsButtons(*layout->itemAt(i)))
            return true;
    }
    return false;
}

// The row of buttons at the foot stays outside if there is room for it.
void makeScrollable(QWidget &window, QBoxLayout &content, const QSize &room)
{
    QWidget *focus = window.focusWidget();
    auto *scroll = new QScrollArea(&window);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    scroll->setFocusPolicy(Qt::NoFocus);

    QLayoutItem *last = content.itemAt(content.count() - 1);
    const bool hasFoot = holdsButtons(*last) && last->minimumSize().width() + 24 <= room.width();
    QLayoutItem *foot = hasFoot ? content.takeAt(content.count() - 1) : nullptr;
    auto *inside = new QWidget;
    scroll->setWidget(inside); // first, so that all stays in one window
    inside->setLayout(&content);
    auto *outside = new QVBoxLayout(&window);
    outside->setContentsMargins(0, 0, 0, 0);
    outside->addWidget(scroll, 1);
    if (foot) {
        auto *row = new QVBoxLayout;
        row->setContentsMargins(content.contentsMargins());
        outside->addLayout(row);
        if (foot->layout()) {
            foot->layout()->setParent(nullptr);
            row->addLayout(foot->layout());
        } else {
            row->addItem(foot);
        }
    }
    for (QWidget *child : inside->findChildren<QWidget *>(Qt::FindDirectChildrenOnly)) {
        if (!child->testAttribute(Qt::WA_WState_ExplicitShowHide))
            child->show();
    }
    inside->show();
    scroll->show();
    if (focus)
        focus->setFocus();
}

void fit(QWidget &window)
{
    const QSize room = desktop::roomFor(window);
    if (!window.testAttribute(Qt::WA_Resized))
        window.adjustSize();
    QSize wanted = window.size();
    if (auto *content = qobject_cast<QBoxLayout *>(window.layout())) {
        const QSize least = content->totalMinimumSize();
        wanted = wanted.expandedTo(least); // a window with a minimum of its own may be smaller than its content
        if (least.boundedTo(room) != least)
            makeScrollable(window, *content, room);
    }
    window.setMinimumSize(window.minimumSize().boundedTo(room));
    if (wanted.boundedTo(room) != window.size())
        window.resize(wanted.boundedTo(room));
}

QWidget *visibleWindowBeside(const QWidget &window)
{
    const QWidgetList all = QApplication::topLevelWidgets();
    const auto found = std::find_if(all.begin(), all.end(), [&window](const QWidget *other) {
        return other != &window && other->isVisible() && !other->isMinimized() && other->windowHandle();
    });
    return found == all.end() ? nullptr : *found;
}

// Beside a parent that is hidden it would stand in a corner.
void place(QWidget &dialog)
{
    const QWidget *parent = dialog.parentWidget();
    if (!parent || parent->window()->isVisible())
        return;
    const QWidget *other = visibleWindowBeside(dialog);
    if (dialog.windowHandle())
        dialog.windowHandle()->setTransientParent(other ? other->windowHandle() : nullptr);
    const QRect available = (other ? other : &dialog)->screen()->availableGeometry();
    dialog.move(available.center() - dialog.rect().center());
}

} // namespace

namespace desktop {

QSize roomFor(const QWidget &window)
{
    const int title = window.style()->pixelMetric(QStyle::PM_TitleBarHeight) + window.fontMetrics().height();
    return window.screen()->availableSize() - QSize(12, title);
}

OnScreen::OnScreen()
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool OnScreen::eventFilter(QObject *object, QEvent *event)
{
    auto *window = event->type() == QEvent::Show && object->isWidgetType() ? static_cast<QWidget *>(object) : nullptr;
    const bool framed = window && (window->windowType() == Qt::Window || window->windowType() == Qt::Dialog);
    if (framed && window->isWindow() && !event->spontaneous()) {
        fit(*window);
        place(*window);
    }
    return QObject::eventFilter(object, event);
}

} // namespace desktop
