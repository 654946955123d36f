#include "Platform/x11/AtspiElement.h"

#include <algorithm>

namespace kestrova {

namespace {

constexpr const char* textInterface = "org.a11y.atspi.Text";
constexpr const char* editableTextInterface = "org.a11y.atspi.EditableText";
constexpr std::uint32_t passwordTextRole = 40;
/// Reading back more takes too long.
constexpr int longestText = 200'000;

QString stringOf(const GVariantPointer& value) {
    return value ? QString::fromUtf8(g_variant_get_string(value.get(), nullptr)) : QString();
}

/// The references in a list of them; the null object, which stands for none, is left out.
std::vector<AtspiReference> referencesIn(GVariant* list) {
    std::vector<AtspiReference> references;
    GVariantIter iterator;
    const char* connection = nullptr;
    const char* path = nullptr;
    g_variant_iter_init(&iterator, list);
    while (g_variant_iter_next(&iterator, "(&s&o)", &connection, &path)) {
        if (!QByteArrayView(path).endsWith("/null"))
            references.push_back({connection, path});
    }
    return references;
}

} // namespace

QString AtspiObject::name() const {
    return stringOf(property(accessible, "Name", "s"));
}

QString AtspiObject::toolkitName() const {
    const AtspiObject application(*m_bus, {m_reference.connection, applicationPath}, m_deadline);
    return stringOf(application.property("org.a11y.atspi.Application", "ToolkitName", "s"));
}

bool AtspiObject::isPassword() const {
    const auto answer = call(accessible, "GetRole", nullptr, "(u)");
    std::uint32_t role = passwordTextRole;
    if (answer.value)
        g_variant_get(answer.value.get(), "(u)", &role);
    return role == passwordTextRole;
}

QSet<QByteArray> AtspiObject::interfaces() const {
    const auto answer = call(accessible, "GetInterfaces", nullptr, "(as)");
    QSet<QByteArray> interfaces;
    if (!answer.value)
        return interfaces;
    GVariantIter* iterator = nullptr;
    const char* interface = nullptr;
    g_variant_get(answer.value.get(), "(as)", &iterator);
    while (g_variant_iter_next(iterator, "&s", &interface))
        interfaces.insert(interface);
    g_variant_iter_free(iterator);
    return interfaces;
}

std::uint64_t AtspiObject::states() const {
    const auto answer = call(accessible, "GetState", nullptr, "(au)");
    if (!answer.value)
        return 0;
    const GVariantPointer list(g_variant_get_child_value(answer.value.get(), 0));
    std::uint64_t states = 0;
    for (gsize i = 0; i < std::min<gsize>(g_variant_n_children(list.get()), 2); ++i) {
        std::uint32_t half = 0;
        g_variant_get_child(list.get(), i, "u", &half);
        states |= std::uint64_t{half} << (32 * i);
    }
    return states;
}

std::optional<AtspiObject> AtspiObject::parent() const {
    const auto value = property(accessible, "Parent", "(so)");
    if (!value)
        return {};
    const char* connection = nullptr;
    const char* path = nullptr;
    g_variant_get(value.get(), "(&s&o)", &connection, &path);
    return AtspiObject(*m_bus, {connection, path}, m_deadline);
}

std::vector<AtspiObject> AtspiObject::children() const {
    const auto answer = call(accessible, "GetChildren", nullptr, "(a(so))");
    std::vector<AtspiObject> children;
    if (!answer.value)
        return children;
    const GVariantPointer list(g_variant_get_child_value(answer.value.get(), 0));
    for (const auto& reference : referencesIn(list.get()))
        children.emplace_back(*m_bus, reference, m_deadline);
    return children;
}

std::optional<AtspiObject> AtspiObject::focusedDescendant() const {
    constexpr std::int32_t matchAll = 1;
    constexpr std::uint32_t canonicalOrder = 1;
    constexpr std::int32_t focusedBit = 1 << static_cast<int>(State::Focused);
    GVariantBuilder states;
    g_variant_builder_init(&states, G_VARIANT_TYPE("ai"));
    g_variant_builder_add(&states, "i", focusedBit);
    g_variant_builder_add(&states, "i", 0);
    // States, attributes, roles and interfaces, each with how it is to match; empty lists match everything.
    GVariant* const rule = g_variant_new("(aiia{ss}iaiiasib)", &states, matchAll, nullptr, matchAll, nullptr,
                                         matchAll, nullptr, matchAll, FALSE);
    const auto answer =
        call("org.a11y.atspi.Collection", "GetMatches",
             g_variant_new("(@(aiia{ss}iaiiasib)uib)", rule, canonicalOrder, 1, TRUE), "(a(so))");
    if (!answer.value)
        return {};
    const GVariantPointer list(g_variant_get_child_value(answer.value.get(), 0));
    const auto references = referencesIn(list.get());
    if (references.empty())
        return {};
    return AtspiObject(*m_bus, references.front(), m_deadline);
}

std::optional<AtspiElement> AtspiElement::editable(const AtspiObject& object) {
    const auto units = textUnitsOfToolkit(object.toolkitName());
    if (!units)
        return {};
    const auto interfaces = object.interfaces();
    if (!interfaces.contains(textInterface) || !interfaces.contains(editableTextInterface))
        return {};
    const auto states = object.states();
    const auto is = [states](State state) { return (states >> static_cast<unsigned>(state) & 1U) != 0; };
    if (!is(State::Editable) || !is(State::Showing) || !(is(State::Enabled) || is(State::Sensitive)))
        return {};
    if (object.isPassword())
        return {};
    return AtspiElement(object, *units);
}

std::optional<int> AtspiElement::textNumber(const char* propertyName) const {
    const auto value = property(textInterface, propertyName, "i");
    if (!value)
        return {};
    return g_variant_get_int32(value.get());
}

std::optional<std::u32string> AtspiElement::characters() {
    const auto count = textNumber("CharacterCount");
    if (!count || *count < 0 || *count > longestText)
        return {};
    const auto answer = call(textInterface, "GetText", g_variant_new("(ii)", 0, *count), "(s)");
    if (!answer.value)
        return {};
    const char* text = nullptr;
    g_variant_get(answer.value.get(), "(&s)", &text);
    auto result = kestrova::characters(QString::fromUtf8(text), m_units.offset);
    // Otherwise offsets mean something else than expected.
    if (result.size() != static_cast<std::size_t>(*count))
        return {};
    return result;
}

std::optional<TextRange> AtspiElement::selection() {
    const auto countAnswer = call(textInterface, "GetNSelections", nullptr, "(i)");
    if (!countAnswer.value)
        return {};
    std::int32_t count = 0;
    g_variant_get(countAnswer.value.get(), "(i)", &count);
    if (count > 1)
        return {};
    if (count == 1) {
        const auto answer = call(textInterface, "GetSelection", g_variant_new("(i)", 0), "(ii)");
        if (!answer.value)
            return {};
        std::int32_t one = 0;
        std::int32_t other = 0;
        g_variant_get(answer.value.get(), "(ii)", &one, &other);
        return TextRange{std::min(one, other), std::max(one, other)};
    }
    const auto caret = textNumber("CaretOffset");
    if (!caret)
        return {};
    return TextRange{*caret, *caret};
}

Outcome AtspiElement::change(const char* method, GVariant* arguments) {
    const auto answer = call(editableTextInterface, method, arguments, "(b)");
    if (answer.isSilent)
        return Outcome::Silent;
    gboolean isDone = FALSE;
    if (answer.value)
        g_variant_get(answer.value.get(), "(b)", &isDone);
    return isDone ? Outcome::Done : Outcome::Refused;
}

Outcome AtspiElement::insertText(int offset, const QString& text) {
    return change("InsertText",
                  g_variant_new("(isi)", offset, text.toUtf8().constData(), lengthIn(text, m_units.length)));
}

Outcome AtspiElement::deleteText(TextRange range) {
    return change("DeleteText", g_variant_new("(ii)", range.start, range.end));
}

void AtspiElement::select(TextRange range) {
    // An answer would tell nothing that anyone acts upon.
    call(textInterface, "SetCaretOffset", g_variant_new("(i)", range.end), "(b)");
    if (!range.isEmpty())
        call(textInterface, "AddSelection", g_variant_new("(ii)", range.start, range.end), "(b)");
}

} // namespace kestrova
