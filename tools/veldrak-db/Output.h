#pragma once

#include <QElapsedTimer>
#include <QFile>
#include <QString>

/// Where data and messages go. Both are UTF-8.
class Output
{
public:
    Output();
    ~Output();
    Output(const Output &) = delete;
    Output &operator=(const Output &) = delete;

    /// A line of data. Throws StorageError::InputOutput if it cannot be written.
    void line(const QString &text);
    /// The same for UTF-8 with the line's end.
    void data(const QByteArray &bytes);
    /// Writes what is still held back; call it when all is done.
    void finish();

    /// A line for the user.
    void message(const QString &text);
    /// What long work is at: shown on a terminal, a few times a second, each in place of the last.
    void progress(const QString &text);

private:
    void clearProgress();

    QFile m_data{};
    QFile m_messages{};
    QElapsedTimer m_sinceProgress{};
    qsizetype m_progressWidth = 0;
};
