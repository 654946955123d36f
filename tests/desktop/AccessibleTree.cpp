#include "tests/desktop/AccessibleTree.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusVariant>

#include <algorithm>
#include <stdexcept>

namespace kestrova::test {

namespace {

using namespace Qt::StringLiterals;

const QString kAccessible = u"org.a11y.atspi.Accessible"_s;
const QString kAction = u"org.a11y.atspi.Action"_s;
const QString kComponent = u"org.a11y.atspi.Component"_s;
const QString kProperties = u"org.freedesktop.DBus.Properties"_s;
const QStringList kPresses{u"Press"_s, u"Toggle"_s};

QVariant propertyIn(const QDBusMessage& answer) {
    return answer.arguments().value(0).value<QDBusVariant>().variant();
}

QStringList actionsIn(const QDBusMessage& answer) {
    QStringList names;
    const auto actions = answer.arguments().value(0).value<QDBusArgument>();
    actions.beginArray();
    while (!actions.atEnd()) {
        QString name;
        QString description;
        QString keys;
        actions.beginStructure();
        actions >> name >> description >> keys;
        actions.endStructure();
        names.append(name);
    }
    actions.endArray();
    return names;
}

} // namespace

std::vector<QDBusMessage> AccessibleTree::ask(const std::vector<Question>& questions) const {
    std::vector<QDBusPendingCall> calls;
    for (const auto& question : questions) {
        auto message = QDBusMessage::createMethodCall(question.whom.service, question.whom.path,
                                                      question.interface, question.method);
        message.setArguments(question.arguments);
        calls.push_back(m_bus.asyncCall(message));
    }
    std::vector<QDBusMessage> answers;
    for (std::size_t number = 0; number < calls.size(); ++number) {
        calls[number].waitForFinished();
        const auto answer = calls[number].reply();
        if (answer.type() != QDBusMessage::ReplyMessage)
            throw std::runtime_error(questions[number].method.toStdString() + " of " +
                                     questions[number].whom.path.toStdString() + ": " +
                                     answer.errorMessage().toStdString());
        answers.push_back(answer);
    }
    return answers;
}

QDBusMessage AccessibleTree::ask(const Reference& whom, const QString& interface, const QString& method,
                                 const QVariantList& arguments) const {
    return ask({Question{whom, interface, method, arguments}}).front();
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

std::vector<AccessibleElement> AccessibleTree::showingOf(const std::vector<Reference>& references) const {
    std::vector<Question> questions;
    for (const auto& each : references)
        questions.push_back({each, kAccessible, u"GetState"_s});
    std::vector<AccessibleElement> found;
    int position = 0;
    for (const auto& answer : ask(questions)) {
        const auto& reference = references[static_cast<std::size_t>(position)];
        const auto words = qdbus_cast<QList<uint>>(answer.arguments().value(0));
        AccessibleElement element;
        element.service = reference.service;
        element.path = reference.path;
        element.states = words.value(0) | std::uint64_t{words.value(1)} << 32;
        element.position = position++;
        if (element.isShowing())
            found.push_back(element);
    }

    questions.clear();
    for (const auto& element : found) {
        const Reference whom{element.service, element.path};
        questions.push_back({whom, kProperties, u"Get"_s, {kAccessible, u"Name"_s}});
        questions.push_back({whom, kProperties, u"Get"_s, {kAccessible, u"Description"_s}});
        questions.push_back({whom, kAccessible, u"GetRoleName"_s});
        questions.push_back({whom, kAccessible, u"GetInterfaces"_s});
    }
    const auto answers = ask(questions);
    auto next = answers.begin();
    std::vector<AccessibleElement*> active;
    questions.clear();
    for (auto& element : found) {
        element.name = propertyIn(*next++).toString();
        element.description = propertyIn(*next++).toString();
        element.role = (next++)->arguments().value(0).toString();
        if (!(next++)->arguments().value(0).toStringList().contains(kAction))
            continue;
        active.push_back(&element);
        questions.push_back({{element.service, element.path}, kAction, u"GetActions"_s});
    }

    const auto actions = ask(questions);
    for (std::size_t number = 0; number < active.size(); ++number)
        active[number]->actions = actionsIn(actions[number]);
    return found;
}

void AccessibleTree::collect(const Reference& parent, std::vector<AccessibleElement>& found) const {
    for (auto& element : showingOf(children(parent))) {
        element.parent = parent.path;
        found.push_back(element);
        collect({element.service, element.path}, found);
    }
}

std::vector<AccessibleElement> AccessibleTree::showing() const {
    std::vector<AccessibleElement> found;
    if (const auto root = program())
        collect(*root, found);
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
