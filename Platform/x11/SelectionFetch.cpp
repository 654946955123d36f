#include "Platform/x11/SelectionFetch.h"

#include "Platform/x11/PasteboardLog.h"
#include "Platform/x11/PictureDecoding.h"
#include "Platform/x11/SelectionConnection.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace kestrova {

namespace {

using namespace std::chrono_literals;

constexpr auto wholeFetch = 5s;
// What is on its way when the next owner comes; entries wait for their turn, so that the next one is held up
// by it.
constexpr auto afterSuperseded = 250ms;
// The store takes a billion bytes a row, and Latin-1 doubles as UTF-8.
constexpr qsizetype largestForm = 480'000'000;
// Room for a quarter of a million targets; real owners offer some dozens.
constexpr qsizetype largestTargets = 1'000'000;
// Some owners hand large forms to one requestor at a time.
constexpr auto untilAskedAgain = 50ms;

std::vector<xcb_atom_t> atomsIn(const SelectionConversion& answer) {
    std::vector<xcb_atom_t> atoms;
    if (answer.format() == 32) {
        atoms.resize(answer.bytes().size() / sizeof(xcb_atom_t));
        std::memcpy(atoms.data(), answer.bytes().constData(), atoms.size() * sizeof(xcb_atom_t));
    }
    return atoms;
}

// Sequence numbers wrap around.
bool isLater(std::uint32_t sequence, std::uint32_t other) {
    return static_cast<std::int32_t>(sequence - other) > 0;
}

} // namespace

SelectionFetch::SelectionFetch(SelectionConnection& connection, xcb_window_t owner, xcb_timestamp_t time,
                               Clock::time_point now)
    : m_connection(connection), m_owner(owner), m_time(time), m_deadline(now + wholeFetch) {
    ask("TARGETS", connection.atoms().targets);
}

void SelectionFetch::setFrontmostApplication(std::optional<RunningApplication> application) {
    m_fetched.ownerInFront = application && m_connection.sameClient(application->window, m_owner);
    m_fetched.frontmostApplication = std::move(application);
}

bool SelectionFetch::onAnswer(const xcb_selection_notify_event_t& event, Clock::time_point now) {
    if (!m_conversion || !m_conversion->onAnswer(event))
        return false;
    if (m_conversion->isOver())
        conversionEnded(now);
    return true;
}

bool SelectionFetch::onProperty(const xcb_property_notify_event_t& event, Clock::time_point now) {
    if (!m_conversion || !m_conversion->onProperty(event))
        return false;
    if (m_conversion->isOver())
        conversionEnded(now);
    return true;
}

void SelectionFetch::onTime(Clock::time_point now) {
    if (m_over)
        return;
    if (now >= m_deadline) {
        end(m_superseded ? "the next copy came before it answered" : "it did not answer in time");
    } else if (m_askAgainAt && now >= *m_askAgainAt) {
        m_askAgainAt.reset();
        m_askedAgain = true;
        const auto& target = m_requests.front().target;
        ask(target, m_connection.atom(target));
    }
}

void SelectionFetch::onSuperseded(std::uint32_t sequence, Clock::time_point now) {
    if (m_over || m_superseded)
        return;
    m_superseded = true;
    m_deadline = std::min(m_deadline, now + afterSuperseded);
    if (!m_conversion || isLater(m_conversion->sequence(), sequence))
        end("the next copy came before it could be asked");
}

void SelectionFetch::onOwnerGone() {
    if (!m_over)
        end("it went away");
}

SelectionFetch::Clock::time_point SelectionFetch::due() const {
    return m_askAgainAt ? std::min(*m_askAgainAt, m_deadline) : m_deadline;
}

std::optional<FetchedSelection> SelectionFetch::take() {
    if (!m_plan) {
        qCWarning(lcPasteboard,
                  "[Pasteboard] A copy is not recorded, its owner did not say what it offers: %s", m_reason);
        return {};
    }
    if (!m_plan->requests.empty() && m_formsHad == 0) {
        qCWarning(lcPasteboard,
                  "[Pasteboard] A copy is not recorded, nothing that its owner offers could be had: %s",
                  m_reason);
        return {};
    }
    if (!m_requests.empty())
        qCWarning(lcPasteboard, "[Pasteboard] A copy is recorded in part, %s is missing: %s",
                  m_requests.front().target.constData(), m_reason);
    return std::move(m_fetched);
}

void SelectionFetch::ask(const QByteArray& target, xcb_atom_t atom) {
    m_conversion.reset();
    m_conversion.emplace(m_connection, target, atom, m_time, m_plan ? largestForm : largestTargets);
}

void SelectionFetch::askNext() {
    m_conversion.reset();
    m_askedAgain = false;
    if (m_requests.empty()) {
        m_over = true;
    } else if (m_superseded) {
        end("the next copy came before it could be asked");
    } else {
        const auto& target = m_requests.front().target;
        ask(target, m_connection.atom(target));
    }
}

void SelectionFetch::conversionEnded(Clock::time_point now) {
    const bool isWhole = m_conversion->state() == SelectionConversion::State::Whole;
    const bool isTooLarge = m_conversion->state() == SelectionConversion::State::TooLarge;
    if (!m_plan) {
        if (!isWhole)
            return end(isTooLarge ? "it offers too much" : "it refused");
        planFromTargets();
        return askNext();
    }
    if (isWhole) {
        takeForm();
    } else if (m_conversion->state() == SelectionConversion::State::Refused && !m_askedAgain &&
               !m_superseded) {
        m_conversion.reset();
        m_askAgainAt = now + untilAskedAgain;
        return;
    } else {
        m_reason = isTooLarge ? "it is too large" : "it refused";
        qCWarning(lcPasteboard, "[Pasteboard] %s of a copy could not be had: %s",
                  m_requests.front().target.constData(), m_reason);
    }
    if (!m_requests.empty())
        m_requests.pop_front();
    askNext();
}

void SelectionFetch::planFromTargets() {
    m_plan = planFor(m_connection.names(atomsIn(*m_conversion)), canDecodePicture);
    m_fetched.types = m_plan->types;
    m_requests.assign(m_plan->requests.begin(), m_plan->requests.end());
}

void SelectionFetch::takeForm() {
    ++m_formsHad;
    const auto& bytes = m_conversion->bytes();
    switch (m_requests.front().form) {
    case SelectionForm::Files:
        m_fetched.urls = urlsFromList(bytes);
        // A file is recorded as such, whatever other forms it has.
        if (!m_fetched.urls.isEmpty() && m_fetched.urls.first().isLocalFile())
            m_requests.clear();
        break;
    case SelectionForm::Image:
        m_fetched.image = bytes;
        break;
    case SelectionForm::Text:
        m_fetched.text = textFromTarget(m_requests.front().target, bytes);
        break;
    }
}

void SelectionFetch::end(const char* reason) {
    m_conversion.reset();
    m_askAgainAt.reset();
    m_reason = reason;
    m_over = true;
}

} // namespace kestrova
