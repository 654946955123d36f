#include "Kestrova/capture/CapturedThumbnailController.h"

#include "Kestrova/capture/ScreenshotCapture.h"
#include "Kestrova/capture/ThumbnailPanel.h"
#include "Platform/UserDefaults.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kestrova {

namespace {

using namespace std::chrono_literals;

constexpr double columnWidth = 256;
constexpr double entryHeight = 180;
constexpr double gap = 8;
constexpr double columnPadding = 8;
constexpr double distanceFromCorner = 16;

constexpr int mostEntries = 6;
constexpr auto fadeDuration = 180ms;

} // namespace

CapturedThumbnailController::CapturedThumbnailController(Surroundings surroundings)
    : m_surroundings(std::move(surroundings)), m_self(std::make_shared<CapturedThumbnailController*>(this)) {}

CapturedThumbnailController::~CapturedThumbnailController() {
    if (m_registeredWindowNumber)
        ScreenshotCapture::excludedWindowIDs.erase(*m_registeredWindowNumber);
}

void CapturedThumbnailController::show(const QImage& image, const QByteArray& pngData,
                                       const QString& suggestedName) {
    if (!m_surroundings.defaults.boolean(QStringLiteral("captureThumbnailEnabled")).value_or(true))
        return;
    m_entries.push_back({.image = std::make_shared<CapturedPicture>(image, pngData),
                         .pngData = pngData,
                         .suggestedName = suggestedName});
    const auto limit = static_cast<std::size_t>(maxVisibleEntries());
    while (m_entries.size() > limit)
        m_entries.erase(m_entries.begin());
    presentWindow();
}

ScreenRect CapturedThumbnailController::activeFrame() const {
    const auto screens = m_surroundings.screens.screens();
    const auto mouse = m_surroundings.screens.mouseLocation();
    const auto underMouse =
        std::ranges::find_if(screens, [mouse](const Screen& screen) { return screen.frame.contains(mouse); });
    if (underMouse != screens.end())
        return underMouse->visibleFrame;
    if (const auto main = m_surroundings.screens.mainScreen())
        return main->visibleFrame;
    return screens.empty() ? ScreenRect{} : screens.front().visibleFrame;
}

int CapturedThumbnailController::maxVisibleEntries() const {
    const double room = activeFrame().height - 2 * distanceFromCorner - 2 * columnPadding;
    return static_cast<int>(
        std::clamp(std::trunc((room + gap) / (entryHeight + gap)), 1.0, double{mostEntries}));
}

ScreenRect CapturedThumbnailController::windowFrame() const {
    return columnFrame(static_cast<int>(m_entries.size()));
}

ScreenRect CapturedThumbnailController::columnFrame(int entries) const {
    const auto active = activeFrame();
    const int shown = std::max(entries, 1);
    return {.x = active.maxX() - columnWidth - distanceFromCorner,
            .y = active.y + distanceFromCorner,
            .width = columnWidth,
            .height = shown * entryHeight + (shown - 1) * gap + 2 * columnPadding};
}

void CapturedThumbnailController::presentWindow() {
    ThumbnailColumn column{.entries = m_entries,
                           .onEntryClick = [clicked = whileAlive(&CapturedThumbnailController::entryClicked)](
                                               QUuid) { clicked(); },
                           .onEntryEdit = whileAlive(&CapturedThumbnailController::entryEdit),
                           .onEntryClose = whileAlive(&CapturedThumbnailController::entryClose)};
    // On a smaller screen there may be more than it would take.
    const auto largest = columnFrame(std::max(maxVisibleEntries(), static_cast<int>(m_entries.size())));
    if (m_window) {
        m_window->setContent(std::move(column));
        m_window->setAlpha(1);
        m_window->setFrame(windowFrame(), largest);
        // A screen locker may have kept it away.
        if (!m_window->isVisible())
            m_window->orderFrontRegardless();
        return;
    }
    m_window = m_surroundings.makePanel();
    m_window->onPlaceLost = whileAlive(&CapturedThumbnailController::placeLost);
    m_window->setContent(std::move(column));
    m_window->setFrame(windowFrame(), largest);
    m_window->orderFrontRegardless();
    m_registeredWindowNumber = m_window->windowNumber();
    ScreenshotCapture::excludedWindowIDs.insert(*m_registeredWindowNumber);
}

void CapturedThumbnailController::placeLost() {
    // While it fades it is not to come back.
    if (!m_entries.empty())
        presentWindow();
}

void CapturedThumbnailController::entryClicked() {
    // The callback may set another one within the call.
    if (const auto told = onClick)
        told();
    m_entries.clear();
    hideWindow();
}

void CapturedThumbnailController::entryEdit(QUuid id) {
    const auto found = std::ranges::find(m_entries, id, &ThumbnailEntry::id);
    if (found == m_entries.end())
        return;
    const auto entry = *found;
    if (const auto told = onEdit)
        told(entry.image->pixels(), entry.pngData, entry.suggestedName);
    entryClose(id);
}

void CapturedThumbnailController::entryClose(QUuid id) {
    std::erase_if(m_entries, [id](const ThumbnailEntry& entry) { return entry.id == id; });
    if (m_entries.empty())
        hideWindow();
    else
        presentWindow();
}

void CapturedThumbnailController::hideWindow() {
    if (!m_window)
        return;
    m_window->animateAlpha(0, fadeDuration, AnimationTiming::easeOut);
    m_surroundings.mainQueue.after(fadeDuration, whileAlive(&CapturedThumbnailController::fadeEnded));
}

void CapturedThumbnailController::fadeEnded() {
    // A capture within the fade has brought the column back; of two fades the first one has ended it.
    if (!m_entries.empty() || !m_window)
        return;
    m_window->orderOut();
    m_window.reset();
    if (const auto number = std::exchange(m_registeredWindowNumber, std::nullopt))
        ScreenshotCapture::excludedWindowIDs.erase(*number);
}

template<typename... Arguments>
std::function<void(Arguments...)>
CapturedThumbnailController::whileAlive(void (CapturedThumbnailController::*act)(Arguments...)) {
    return [self = std::weak_ptr(m_self), act](Arguments... arguments) {
        if (const auto controller = self.lock())
            ((**controller).*act)(arguments...);
    };
}

} // namespace kestrova
