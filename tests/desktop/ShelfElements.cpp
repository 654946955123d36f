#include "tests/desktop/ShelfElements.h"

#include "tests/desktop/Waiting.h"

#include <QRegularExpression>

#include <algorithm>
#include <stdexcept>

namespace kestrova::test {

namespace {

using namespace Qt::StringLiterals;

using Elements = std::vector<AccessibleElement>;

QString withoutKey(const QString& name) {
    static const QRegularExpression key(u", ⌘\\d$"_s);
    return QString(name).remove(key);
}

QStringList namesOf(const Elements& elements) {
    QStringList names;
    for (const auto& element : elements)
        names.append(withoutKey(element.name));
    return names;
}

QString nameOfSelected(const Elements& elements) {
    const auto found = std::ranges::find_if(elements, &AccessibleElement::isSelected);
    return found == elements.end() ? QString() : withoutKey(found->name);
}

bool matches(const AccessibleElement& element, const QString& name, const QString& role) {
    return element.name == name && (role.isEmpty() || element.role == role);
}

} // namespace

Elements ShelfElements::showing() const {
    Elements found;
    std::string failure;
    const auto isAnswered = [&] {
        try {
            found = m_tree.showing();
            return true;
        } catch (const std::runtime_error& error) {
            // Something went between being found and being asked; what is there now can be found anew.
            failure = error.what();
            return false;
        }
    };
    if (!eventually(isAnswered))
        throw std::runtime_error(failure);
    return found;
}

std::optional<AccessibleElement> ShelfElements::named(const QString& name, const QString& role) const {
    const auto all = showing();
    const auto found =
        std::ranges::find_if(all, [&](const auto& element) { return matches(element, name, role); });
    return found == all.end() ? std::nullopt : std::optional(*found);
}

bool ShelfElements::waitFor(const QString& name, const QString& role) const {
    return eventually([&] { return named(name, role).has_value(); });
}

bool ShelfElements::waitUntilGone(const QString& name, const QString& role) const {
    return eventually([&] { return !named(name, role); });
}

bool ShelfElements::waitForFocus(const QString& name, const QString& role) const {
    return eventually([&] {
        return std::ranges::any_of(showing(), [&](const auto& element) {
            return element.isFocused() && matches(element, name, role);
        });
    });
}

bool ShelfElements::waitForChecked(const QString& name, bool isChecked) const {
    return eventually([&] {
        return std::ranges::any_of(showing(), [&](const auto& element) {
            return element.name == name && element.isChecked() == isChecked;
        });
    });
}

QString ShelfElements::focused() const {
    const auto all = showing();
    // The innermost one, which comes last.
    const auto found =
        std::find_if(all.rbegin(), all.rend(), [](const auto& element) { return element.isFocused(); });
    return found == all.rend() ? QString() : withoutKey(found->name);
}

QRect ShelfElements::frame(const QString& name, const QString& role) const {
    const auto found = named(name, role);
    return found ? m_tree.frame(*found) : QRect();
}

Elements ShelfElements::partsOf(const QString& name, const QString& role) const {
    const auto all = showing();
    const auto whole =
        std::ranges::find_if(all, [&](const auto& element) { return matches(element, name, role); });
    Elements parts;
    if (whole != all.end())
        std::ranges::copy_if(all, std::back_inserter(parts),
                             [&](const auto& element) { return element.parent == whole->path; });
    return parts;
}

Elements ShelfElements::itemElements() const {
    auto parts = partsOf(u"클립보드 기록"_s, u"list"_s);
    std::erase_if(parts, [](const auto& element) { return element.role != u"list item"; });
    return parts;
}

QStringList ShelfElements::items() const {
    return namesOf(itemElements());
}

bool ShelfElements::waitForItems(const QStringList& expected) const {
    return eventually([&] { return items() == expected; });
}

QString ShelfElements::selectedItem() const {
    return nameOfSelected(itemElements());
}

bool ShelfElements::waitForSelectedItem(const QString& name) const {
    return eventually([&] { return selectedItem() == name; });
}

QRect ShelfElements::frameOfItem(const QString& name) const {
    const auto all = itemElements();
    const auto found =
        std::ranges::find_if(all, [&](const auto& element) { return withoutKey(element.name) == name; });
    return found == all.end() ? QRect() : m_tree.frame(*found);
}

std::vector<QRect> ShelfElements::framesOfItems() const {
    std::vector<QRect> frames;
    for (const auto& element : itemElements())
        frames.push_back(m_tree.frame(element));
    return frames;
}

QStringList ShelfElements::chips() const {
    return namesOf(partsOf(u"종류"_s, {}));
}

QStringList ShelfElements::lenses() const {
    return namesOf(partsOf(u"컬렉션"_s, u"list"_s));
}

QString ShelfElements::selectedLens() const {
    return nameOfSelected(partsOf(u"컬렉션"_s, u"list"_s));
}

bool ShelfElements::waitForSelectedLens(const QString& name) const {
    return eventually([&] { return selectedLens() == name; });
}

} // namespace kestrova::test
