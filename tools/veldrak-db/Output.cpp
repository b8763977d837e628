// Data to the standard output, messages to the error output.
#include "tools/veldrak-db/Output.h"

#include <cstdio>

#include "platform/storage/StorageError.h"
#include "tools/veldrak-db/Terminal.h"

using namespace Qt::StringLiterals;
using storage::StorageError;

Output::Output()
{
    if (!m_data.open(stdout, QIODevice::WriteOnly) || !m_messages.open(stderr, QIODevice::WriteOnly))
        throw StorageError(StorageError::InputOutput, u"Die Ausgabe ist geschlossen."_s);
    m_sinceProgress.start();
}

Output::~Output()
{
    clearProgress();
}

void Output::line(const QString &text)
{
    data(text.toUtf8() + '\n');
}

void Output::data(const QByteArray &bytes)
{
    clearProgress();
    if (m_data.write(bytes) < 0)
        throw StorageError(StorageError::InputOutput,
                           u"Die Ausgabe lässt sich nicht schreiben: %1"_s.arg(m_data.errorString()));
}

void Output::finish()
{
    if (!m_data.flush() || std::fflush(stdout) != 0)
        throw StorageError(StorageError::InputOutput,
                           u"Die Ausgabe lässt sich nicht schreiben: %1"_s.arg(m_data.errorString()));
}

void Output::message(const QString &text)
{
    clearProgress();
    m_messages.write(text.toUtf8() + '\n');
    m_messages.flush();
}

void Output::progress(const QString &text)
{
    constexpr qint64 pauseMs = 200;
    if (!terminal::showsMessages() || m_sinceProgress.elapsed() < pauseMs)
        return;
    m_sinceProgress.restart();
    m_messages.write("\r" + text.leftJustified(m_progressWidth).toUtf8());
    m_messages.flush();
    m_progressWidth = text.size();
}

void Output::clearProgress()
{
    if (m_progressWidth == 0)
        return;
    m_messages.write("\r" + QByteArray(m_progressWidth, ' ') + "\r");
    m_messages.flush();
    m_progressWidth = 0;
}
