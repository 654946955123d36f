#include "Platform/x11/FocusedElement.h"

#include <algorithm>
#include <deque>

namespace kestrova {

namespace {

constexpr int deepestNesting = 64;
constexpr int longestWalk = 400;

AtspiObject applicationOf(const AtspiBus& bus, const AtspiReference& element,
                          AtspiBus::Clock::time_point deadline) {
    return AtspiObject(bus, {element.connection, AtspiObject::applicationPath}, deadline);
}

/// The child of the application's root under which the element lies.
std::optional<AtspiObject> windowOf(const AtspiObject& element) {
    auto object = element;
    for (int depth = 0; depth < deepestNesting; ++depth) {
        const auto parent = object.parent();
        if (!parent || parent->reference() == object.reference())
            return {};
        if (parent->isApplication())
            return object;
        object = *parent;
    }
    return {};
}

/// An element that is remembered may lie in another window of the application than the one that was in front.
bool isInWindow(const AtspiObject& element, const AtspiObject& application, const QString& title) {
    if (application.children().size() == 1)
        return true;
    const auto window = windowOf(element);
    return window && isWindowTitle(title, window->name());
}

/// For toolkits that do not search themselves: the showing part of the tree, breadth first.
std::optional<AtspiObject> focusedByWalk(const AtspiObject& window) {
    std::deque<AtspiObject> waiting{window};
    for (int seen = 0; !waiting.empty() && seen < longestWalk; ++seen) {
        const auto object = waiting.front();
        waiting.pop_front();
        const auto states = object.states();
        const auto is = [states](AtspiObject::State state) {
            return (states >> static_cast<unsigned>(state) & 1U) != 0;
        };
        if (is(AtspiObject::State::Focused))
            return object;
        if (!is(AtspiObject::State::Showing))
            continue;
        std::ranges::copy(object.children(), std::back_inserter(waiting));
    }
    return {};
}

std::optional<AtspiObject> focusedIn(const AtspiObject& application, const QString& title) {
    for (const auto& window : application.children()) {
        if (!window.has(AtspiObject::State::Active) || !isWindowTitle(title, window.name()))
            continue;
        const auto found = window.focusedDescendant();
        return found ? found : focusedByWalk(window);
    }
    return {};
}

} // namespace

bool isWindowTitle(QStringView title, QStringView name) {
    if (name.isEmpty() || !title.startsWith(name))
        return false;
    const auto rest = title.sliced(name.size());
    return rest.isEmpty() ||
           (rest.size() > 1 && rest[0].isSpace() && rest[1].category() == QChar::Punctuation_Dash);
}

std::optional<AtspiObject> focusedElement(const AtspiBus& bus, const FocusMemory& memory,
                                          std::int64_t processIdentifier, const QString& windowTitle,
                                          AtspiBus::Clock::time_point deadline) {
    const auto isOfProcess = [&](const QByteArray& connection) {
        return bus.processIdentifier(connection, deadline) == processIdentifier;
    };
    for (const auto& remembered : memory.elements()) {
        if (!isOfProcess(remembered.connection))
            continue;
        const AtspiObject element(bus, remembered, deadline);
        if (!isInWindow(element, applicationOf(bus, remembered, deadline), windowTitle))
            return {};
        return element;
    }
    // Nothing has been heard of it yet: it has had the focus since before this program listened.
    const AtspiObject registry(bus, {"org.a11y.atspi.Registry", AtspiObject::applicationPath}, deadline);
    for (const auto& application : registry.children()) {
        if (isOfProcess(application.reference().connection))
            return focusedIn(application, windowTitle);
    }
    return {};
}

} // namespace kestrova
