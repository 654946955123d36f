#pragma once

#include <QString>
#include <QThreadPool>

#include <atomic>
#include <functional>
#include <memory>
#include <optional>

namespace kestrova {

class MainQueue;

/// How many characters the text that is shown has. An ordinary text is counted at once, a huge one on a
/// thread of its own, and the count is given up as soon as another text is shown. Main thread only.
class TextLength {
public:
    /// `onCounted`: the count that `of` could not give yet is there. `mainQueue` outlives it.
    TextLength(MainQueue& mainQueue, std::function<void()> onCounted);
    TextLength(const TextLength&) = delete;
    TextLength& operator=(const TextLength&) = delete;
    ~TextLength();

    /// Absent as long as it is being counted.
    std::optional<qsizetype> of(const QString& text);
    /// Keeps no text any more.
    void forget();

    static constexpr qsizetype longestCountedAtOnce = 50'000;

private:
    void startCounting();

    MainQueue& m_mainQueue;
    std::function<void()> m_onCounted;
    QString m_text;
    std::optional<qsizetype> m_length;
    /// Set: the count on the thread is given up.
    std::shared_ptr<std::atomic<bool>> m_isAbandoned;
    QThreadPool m_pool;
};

} // namespace kestrova
