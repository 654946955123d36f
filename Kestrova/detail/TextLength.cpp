#include "Kestrova/detail/TextLength.h"

#include "Kestrova/detail/Characters.h"
#include "Kestrova/detail/SameText.h"
#include "Platform/MainQueue.h"

#include <utility>

namespace kestrova {
namespace {

// Some milliseconds, even where every letter has to be looked up.
constexpr qsizetype slice = 100'000;

} // namespace

TextLength::TextLength(MainQueue& mainQueue, std::function<void()> onCounted)
    : m_mainQueue(mainQueue), m_onCounted(std::move(onCounted)) {
    m_pool.setMaxThreadCount(1);
    m_pool.setExpiryTimeout(0);
}

TextLength::~TextLength() {
    forget();
    m_pool.waitForDone();
}

std::optional<qsizetype> TextLength::of(const QString& text) {
    const bool isKnown = (m_length || m_isAbandoned) && isSameText(text, m_text);
    if (isKnown)
        return m_length;
    forget();
    m_text = text;
    if (text.size() <= longestCountedAtOnce)
        m_length = characterCount(text);
    else
        startCounting();
    return m_length;
}

void TextLength::forget() {
    if (m_isAbandoned)
        *m_isAbandoned = true;
    m_isAbandoned = nullptr;
    m_text.clear();
    m_length = {};
}

void TextLength::startCounting() {
    m_isAbandoned = std::make_shared<std::atomic<bool>>(false);
    m_pool.start([this, text = m_text, isAbandoned = m_isAbandoned, &queue = m_mainQueue]() mutable {
        CharacterCount count(std::move(text));
        while (!count.isComplete()) {
            if (*isAbandoned)
                return;
            count.advance(slice);
        }
        queue.postFromAnyThread([this, isAbandoned, length = count.value()] {
            // Whoever gives it up may have gone.
            if (*isAbandoned)
                return;
            m_length = length;
            m_onCounted();
        });
    });
}

} // namespace kestrova
