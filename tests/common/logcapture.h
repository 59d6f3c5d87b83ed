#pragma once
#include <QStringList>

// Collects every Qt message emitted while it lives (and still forwards nothing to stderr
// unless `echo` is set). Tests read log lines through it.
class LogCapture
{
public:
    explicit LogCapture(bool echo = false);
    ~LogCapture();
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    QStringList lines() const;
    // Lines containing `text`.
    QStringList matching(const QString& text) const;
    int count(const QString& text) const { return matching(text).size(); }
    bool contains(const QString& text) const { return count(text) > 0; }
    void clear();
};
