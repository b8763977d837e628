#pragma once

#include <chrono>
#include <memory>
#include <optional>

#include "platform/automation/Automation.h"

class Bus;

struct DBusSettings {
    std::chrono::milliseconds timeout = std::chrono::seconds(15); ///< how long one call may take, repeats included
    QString busAddress{}; ///< empty: the user's session bus
};

/// Objects of programs on the message bus. A ProgID is the bus name that the other program owns.
///
/// By-reference arguments are in-arguments whose new values come back first among the out-arguments, in order and with
/// the same types; a method without such out-arguments leaves the variables as they are. A failure named
/// ACTOLE.Error.N91 becomes an AutomationError with number 91. A program that cannot take a call at the moment answers
/// ACTOLE.Error.Busy, having done nothing, and is asked again.
class DBusAutomation : public Automation
{
public:
    explicit DBusAutomation(DBusSettings settings = {});
    ~DBusAutomation() override;

    /// Objects already handed out stay valid when this one goes. Looks for the bus anew if there was none before.
    AutomationObjectPtr CreateObject(const QString &progId) override;

    /// Whether a running program owns this name, or the bus would start one for it. Nothing if the bus does not say.
    std::optional<bool> nameKnown(const QString &progId);

private:
    const std::shared_ptr<Bus> &bus();

    DBusSettings m_settings;
    std::shared_ptr<Bus> m_bus;
};
