#pragma once

#include "Platform/Pasteboard.h"

#include <deque>
#include <map>
#include <vector>

namespace kestrova {

/// A pasteboard in memory, with the same queue of entries as the real one. A test copies "elsewhere" as
/// another program would.
class FakePasteboard final : public Pasteboard {
public:
    struct Entry {
        std::optional<QStringList> types = QStringList{};
        QList<QUrl> urls = {};
        std::optional<PasteboardImage> image = {};
        std::optional<QString> text = {};
        std::map<QUrl, PasteboardImage> filePictures = {};
        std::optional<RunningApplication> frontmost = application(QStringLiteral("org.example.editor"));
    };

    static RunningApplication application(const QString& identifier) {
        RunningApplication application;
        application.bundleIdentifier = identifier;
        return application;
    }

    /// Queues an entry and asks for a poll, if anybody listens.
    void copyElsewhere(Entry entry);
    void copyElsewhere(const QString& text);

    /// How often each reader was asked; the counter and the types do not count.
    int readersAsked() const { return m_readersAsked; }
    int pollsFinished() const { return m_pollsFinished; }
    const std::vector<PasteboardEntry>& written() const { return m_written; }

    std::int64_t changeCount() const override { return m_changeCount; }
    std::optional<QStringList> types() const override { return m_head.types; }
    QList<QUrl> readURLs() const override { return asked(m_head.urls); }
    std::optional<PasteboardImage> readImage() const override { return asked(m_head.image); }
    std::optional<QString> string() const override { return asked(m_head.text); }
    std::optional<PasteboardImage> pictureOfFile(const QUrl& url) const override;
    std::optional<RunningApplication> frontmostApplication() const override { return m_head.frontmost; }
    void pollFinished() override;
    void write(const PasteboardEntry& entry) override;

private:
    template<typename Value>
    Value asked(Value value) const {
        ++m_readersAsked;
        return value;
    }
    void advance();

    std::int64_t m_changeCount = 7;
    Entry m_head;
    bool m_headIsPolled = true;
    std::deque<Entry> m_waiting;
    std::vector<PasteboardEntry> m_written;
    int m_pollsFinished = 0;
    mutable int m_readersAsked = 0;
};

} // namespace kestrova
