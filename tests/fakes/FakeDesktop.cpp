// The desktop of the tests.
#include "tests/fakes/FakeDesktop.h"

#include <QDir>
#include <QFileInfo>

#include "platform/errors/RunTimeError.h"
#include "platform/storage/LocalPath.h"

using namespace Qt::StringLiterals;

namespace {

QString settingName(const QString &application, const QString &section, const QString &key)
{
    return application + u'/' + section + u'/' + key;
}

} // namespace

QStringList FakeDesktop::boxTexts() const
{
    QStringList texts;
    for (const desktop::Box &box : boxes)
        texts += box.text;
    return texts;
}

desktop::Answer FakeDesktop::show(const desktop::Box &box)
{
    boxes.push_back(box);
    if (onBox)
        onBox(box);
    if (box.buttons == desktop::Buttons::Ok)
        return desktop::Answer::Ok;
    if (answers.empty())
        return desktop::Answer::No;
    const desktop::Answer answer = answers.front();
    answers.pop_front();
    return answer;
}

QString FakeDesktop::get(const QString &application, const QString &section, const QString &key,
                         const QString &otherwise) const
{
    const auto found = settings.find(settingName(application, section, key));
    return found == settings.end() ? otherwise : found->second;
}

void FakeDesktop::save(const QString &application, const QString &section, const QString &key, const QString &value)
{
    if (settingsReadOnly)
        throw RunTimeError(RunTimeError::PathAccess);
    settings[settingName(application, section, key)] = value;
}

void FakeDesktop::setText(const QString &text)
{
    clipboard += text;
    clipboardHistory += text;
}

void FakeDesktop::yield()
{
    ++yields;
    if (onYield)
        onYield();
}

void FakeDesktop::yieldAndRest()
{
    seconds += 0.25;
    yield();
}

bool FakeDesktop::exists(const QString &path) const
{
    return QFileInfo(storage::existingPath(storage::localPath(path))).isFile();
}

QStringList FakeDesktop::list(const QString &pattern) const
{
    const QFileInfo wanted(storage::localPath(pattern));
    return wanted.dir().entryList({wanted.fileName()}, QDir::Files, QDir::Name | QDir::IgnoreCase);
}

QString FakeDesktop::shortPath(const QString &path) const
{
    const auto found = shortPaths.find(path);
    return found == shortPaths.end() ? path : found->second;
}
