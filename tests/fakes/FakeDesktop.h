#pragma once

#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <ostream>
#include <vector>

#include <QStringList>

#include "platform/desktop/Desktop.h"

/// How the tests print texts.
inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}

/// A desktop without a screen: boxes are recorded and answered at once, the clock moves by itself while the program
/// waits, and files are those of the machine.
class FakeDesktop : public desktop::MessageBoxes,
                    public desktop::SettingsStore,
                    public desktop::Clipboard,
                    public desktop::TopLevelWindows,
                    public desktop::Screen,
                    public desktop::Clock,
                    public desktop::MessageLoop,
                    public desktop::Files
{
public:
    std::vector<desktop::Box> boxes; ///< all that were shown
    std::deque<desktop::Answer> answers; ///< to Yes/No boxes, in order; then always No
    std::function<void(const desktop::Box &)> onBox; ///< while a box is open
    QStringList boxTexts() const;

    std::map<QString, QString> settings; ///< by "application/section/key"
    bool settingsReadOnly = false; ///< then saving is error 75
    QString clipboard; ///< a text is added to what is there unless it was cleared
    QStringList clipboardHistory;
    std::optional<std::vector<desktop::Window>> windows{
        {{QStringLiteral("acthost"), QStringLiteral("ACT! - Kontakte")}}};
    std::optional<bool> actSeen = false;
    double seconds = 0; ///< each rest moves it a quarter on
    std::function<void()> onYield;
    int yields = 0;
    std::map<QString, QString> shortPaths; ///< of those paths that have another one
    bool quitCalled = false;

    desktop::Answer show(const desktop::Box &box) override;
    QString get(const QString &application, const QString &section, const QString &key,
                const QString &otherwise) const override;
    void save(const QString &application, const QString &section, const QString &key, const QString &value) override;
    void clear() override { clipboard.clear(); }
    void setText(const QString &text) override;
    std::optional<std::vector<desktop::Window>> list() const override { return windows; }
    std::optional<bool> programSeen(const QString &progId, const QString &className) const override
    {
        return progId == QLatin1String("ACTOLE.APPOBJECT") && className == QLatin1String("act") ? actSeen
                                                                                                : std::nullopt;
    }
    QSize sizeInPixels() const override { return {1000, 800}; }
    double Timer() const override { return seconds; }
    QDate Date() const override { return {2026, 11, 21}; }
    void yield() override;
    void yieldAndRest() override;
    void quit() override { quitCalled = true; }
    bool exists(const QString &path) const override;
    QStringList list(const QString &pattern) const override;
    QString shortPath(const QString &path) const override;
};
