#pragma once

#include <QByteArray>

#include <cstdint>
#include <optional>
#include <vector>

namespace kestrova::test {

/// How an owner answers a request for one of its targets.
enum class Answer {
    Serve,
    Refuse,
    /// Refuses the first request of this target and serves the later ones.
    RefuseFirst,
    /// Never answers.
    Silence,
    /// Sends the first piece by INCR and drops its connection when it should send the second.
    DieMidTransfer,
    /// Sends the first piece by INCR and never the second.
    StallMidTransfer,
};

/// One target that an owner offers.
struct Offer {
    QByteArray target;
    QByteArray bytes = {};
    Answer answer = Answer::Serve;
    /// What INCR promises, true or not; INCR is then used whatever the size. Absent: INCR for large bytes
    /// only.
    std::optional<std::uint32_t> promisedSize = std::nullopt;

    bool operator==(const Offer&) const = default;
};

/// What a scripted owner of the clipboard offers and does.
struct SelectionScript {
    std::vector<Offer> offers = {};
    /// How it answers when asked what it offers.
    Answer targetsAnswer = Answer::Serve;
};

/// The script of an ordinary program that copied `text`, which is UTF-8.
inline SelectionScript plainText(const QByteArray& text) {
    return {.offers = {{.target = "UTF8_STRING", .bytes = text},
                       {.target = "text/plain;charset=utf-8", .bytes = text}}};
}

} // namespace kestrova::test
