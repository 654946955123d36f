#include "tests/support/FakePasteboard.h"

#include <utility>

namespace kestrova {

void FakePasteboard::copyElsewhere(Entry entry) {
    m_waiting.push_back(std::move(entry));
    if (m_headIsPolled)
        advance();
}

void FakePasteboard::copyElsewhere(const QString& text) {
    copyElsewhere({.types = QStringList{QString(PasteboardType::string)}, .text = text});
}

void FakePasteboard::advance() {
    if (m_waiting.empty())
        return;
    m_head = std::move(m_waiting.front());
    m_waiting.pop_front();
    m_headIsPolled = false;
    ++m_changeCount;
    if (onPollDue)
        onPollDue();
}

std::optional<PasteboardImage> FakePasteboard::pictureOfFile(const QUrl& url) const {
    const auto found = m_head.filePictures.find(url);
    return asked(found == m_head.filePictures.end() ? std::nullopt : std::optional{found->second});
}

void FakePasteboard::pollFinished() {
    ++m_pollsFinished;
    m_headIsPolled = true;
    advance();
}

void FakePasteboard::write(const PasteboardEntry& entry) {
    if (!m_headIsPolled && onPollDue)
        onPollDue();
    m_written.push_back(entry);
    m_head = {};
    if (const auto* const text = std::get_if<PlainText>(&entry)) {
        m_head.types = QStringList{QString(PasteboardType::string)};
        m_head.text = text->text;
    }
    m_headIsPolled = true;
    ++m_changeCount;
}

} // namespace kestrova
