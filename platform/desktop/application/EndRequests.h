#pragma once

#include <functional>

#include <QObject>
#include <QSocketNotifier>

namespace desktop {

/// Requests from outside to end the program: SIGTERM, SIGINT, SIGHUP, and the end of the session. A second signal of
/// the same kind ends the program at once, should it not listen.
///
/// One object a program, made after the application object; handles requests in the event loop.
class EndRequests : public QObject
{
public:
    explicit EndRequests(std::function<void()> end);
    ~EndRequests() override;

protected:
    bool eventFilter(QObject *object, QEvent *event) override; // of the application

private:
    std::function<void()> m_end;
    QSocketNotifier m_notifier;
};

} // namespace desktop
