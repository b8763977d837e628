#pragma once

#include <optional>
#include <vector>

#include <QDate>
#include <QSize>
#include <QString>
#include <QStringList>

/// The desktop around the program, behind interfaces so that a test can answer a box, move the clock and read the
/// clipboard. Everything runs on the user-interface thread.
namespace desktop {

enum class Icon { None, Critical, Question, Exclamation, Information };
enum class Buttons { Ok, YesNo };
enum class Answer { Ok, Yes, No };

/// A modal message box. Lines of `text` are joined by CR LF or CR. An empty title stands for the application's name.
struct Box {
    QString text;
    Icon icon = Icon::None;
    Buttons buttons = Buttons::Ok;
    QString title{};
};

class MessageBoxes
{
public:
    virtual ~MessageBoxes() = default;
    /// Shows the box until it is answered. Closing a Yes/No box counts as No.
    virtual Answer show(const Box &box) = 0;
};

/// Per-user choices, kept between runs, by application, section and key.
class SettingsStore
{
public:
    virtual ~SettingsStore() = default;
    virtual QString get(const QString &application, const QString &section, const QString &key,
                        const QString &otherwise) const = 0;
    virtual void save(const QString &application, const QString &section, const QString &key, const QString &value) = 0;
};

class Clipboard
{
public:
    virtual ~Clipboard() = default;
    virtual void clear() = 0;
    virtual void setText(const QString &text) = 0;
};

struct Window {
    QString className;
    QString title;
};

class TopLevelWindows
{
public:
    virtual ~TopLevelWindows() = default;
    /// All top-level windows of the desktop; nothing where they cannot be listed.
    virtual std::optional<std::vector<Window>> list() const = 0;
    /// Where windows cannot be listed: whether a program runs that offers automation under this name, or will, or whose
    /// windows have such a class. Nothing if that cannot be told.
    virtual std::optional<bool> programSeen(const QString &progId, const QString &className) const = 0;
};

class Screen
{
public:
    virtual ~Screen() = default;
    virtual QSize sizeInPixels() const = 0;
};

class Clock
{
public:
    virtual ~Clock() = default;
    /// Seconds since midnight, with fractions; jumps back to 0 at midnight.
    virtual double Timer() const = 0;
    virtual QDate Date() const = 0;
};

class MessageLoop
{
public:
    virtual ~MessageLoop() = default;
    /// Handles what has piled up: input, painting, timers.
    virtual void yield() = 0;
    /// The same, and rests a few milliseconds, for loops that only wait.
    virtual void yieldAndRest() = 0;
    /// Makes the outermost event loop return.
    virtual void quit() = 0;
};

class Files
{
public:
    virtual ~Files() = default;

    // Both throw RunTimeError 75 if one may not look there and 57 if the drive fails. A folder is no file.

    virtual bool exists(const QString &path) const = 0;
    /// The names (without folder) of the files that match a path with wildcards in its last part, case-insensitively,
    /// in the order of the folder's listing: sorted by name. Empty if there are none or the folder does not exist.
    virtual QStringList list(const QString &pattern) const = 0;
    /// The 8.3 form of a path where the file system has one, else the path itself.
    virtual QString shortPath(const QString &path) const = 0;
};

} // namespace desktop
