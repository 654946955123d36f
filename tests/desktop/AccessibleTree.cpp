#include "tests/desktop/AccessibleTree.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusVariant>

#include <algorithm>
#include <stdexcept>

namespace kestrova::test {

namespace {

using namespace Qt::StringLiterals;

const QString kAccessible = u"org.a11y.atspi.Accessible"_s;
const QString kAction = u"org.a11y.atspi.Action"_s;
const QString kComponent = u"org.a11y.atspi.Component"_s;
const QStringList kPresses{u"Press"_s, u"Toggle"_s};

} // namespace

QDBusMessage AccessibleTree::ask(const Reference& whom, const QString& interface, const QString& method,
                                 const QVariantList& arguments) const {
    auto question = QDBusMessage::createMethodCall(whom.service, whom.path, interface, method);
    question.setArguments(arguments);
    const auto answer = m_bus.call(question);
    if (answer.type() != QDBusMessage::ReplyMessage)
        throw std::runtime_error(method.toStdString() + " of " + whom.path.toStdString() + ": " +
                                 answer.errorMessage().toStdString());
    return answer;
}

QVariant AccessibleTree::property(const Reference& of, const QString& interface, const QString& name) const {
    return ask(of, u"org.freedesktop.DBus.Properties"_s, u"Get"_s, {interface, name})
        .arguments()
        .value(0)
        .value<QDBusVariant>()
        .variant();
}

std::vector<AccessibleTree::Reference> AccessibleTree::children(const Reference& parent) const {
    std::vector<Reference> found;
    const auto answer =
        ask(parent, kAccessible, u"GetChildren"_s).arguments().value(0).value<QDBusArgument>();
    answer.beginArray();
    while (!answer.atEnd()) {
        Reference child;
        QDBusObjectPath path;
        answer.beginStructure();
        answer >> child.service >> path;
        answer.endStructure();
        child.path = path.path();
        found.push_back(child);
    }
    answer.endArray();
    return found;
}

std::optional<AccessibleTree::Reference> AccessibleTree::program() const {
    for (const auto& candidate :
         children({u"org.a11y.atspi.Registry"_s, u"/org/a11y/atspi/accessible/root"_s}))
        if (m_bus.interface()->servicePid(candidate.service).value() == m_pid)
            return candidate;
    return std::nullopt;
}

AccessibleElement AccessibleTree::element(const Reference& reference) const {
    AccessibleElement element;
    element.service = reference.service;
    element.path = reference.path;
    element.name = property(reference, kAccessible, u"Name"_s).toString();
    element.description = property(reference, kAccessible, u"Description"_s).toString();
    element.role = ask(reference, kAccessible, u"GetRoleName"_s).arguments().value(0).toString();
    const auto words =
        qdbus_cast<QList<uint>>(ask(reference, kAccessible, u"GetState"_s).arguments().value(0));
    element.states = words.value(0) | std::uint64_t{words.value(1)} << 32;
    const auto interfaces =
        ask(reference, kAccessible, u"GetInterfaces"_s).arguments().value(0).toStringList();
    if (!interfaces.contains(kAction))
        return element;
    const auto actions = ask(reference, kAction, u"GetActions"_s).arguments().value(0).value<QDBusArgument>();
    actions.beginArray();
    while (!actions.atEnd()) {
        QString name;
        QString description;
        QString keys;
        actions.beginStructure();
        actions >> name >> description >> keys;
        actions.endStructure();
        element.actions.append(name);
    }
    actions.endArray();
    return element;
}

void AccessibleTree::collect(const AccessibleElement& parent, std::vector<AccessibleElement>& found) const {
    int position = 0;
    for (const auto& child : children({parent.service, parent.path})) {
        auto next = element(child);
        next.position = position++;
        next.parent = parent.path;
        if (!next.isShowing())
            continue;
        found.push_back(next);
        collect(next, found);
    }
}

std::vector<AccessibleElement> AccessibleTree::showing() const {
    std::vector<AccessibleElement> found;
    if (const auto root = program())
        collect(element(*root), found);
    return found;
}

std::optional<AccessibleElement> AccessibleTree::named(const QString& start) const {
    const auto all = showing();
    const auto found =
        std::ranges::find_if(all, [&](const auto& element) { return element.name.startsWith(start); });
    return found == all.end() ? std::nullopt : std::optional(*found);
}

QRect AccessibleTree::frame(const AccessibleElement& element) const {
    constexpr uint kOnTheScreen = 0;
    const auto extents = ask({element.service, element.path}, kComponent, u"GetExtents"_s, {kOnTheScreen})
                             .arguments()
                             .value(0)
                             .value<QDBusArgument>();
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    extents.beginStructure();
    extents >> x >> y >> width >> height;
    extents.endStructure();
    return {x, y, width, height};
}

bool AccessibleTree::press(const AccessibleElement& element) const {
    const auto action =
        std::ranges::find_if(element.actions, [](const QString& name) { return kPresses.contains(name); });
    return action != element.actions.end() && ask({element.service, element.path}, kAction, u"DoAction"_s,
                                                  {static_cast<int>(action - element.actions.begin())})
                                                  .arguments()
                                                  .value(0)
                                                  .toBool();
}

} // namespace kestrova::test
