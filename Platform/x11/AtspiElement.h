#pragma once

#include "Platform/x11/AtspiBus.h"
#include "Platform/x11/SelectionReplacement.h"

#include <QSet>

#include <optional>
#include <vector>

namespace kestrova {

/// Questions about an object on the accessibility bus, of whatever kind.
class AtspiObject {
public:
    using Clock = AtspiBus::Clock;

    /// The path of the object that stands for an application as a whole.
    static constexpr const char* applicationPath = "/org/a11y/atspi/accessible/root";

    /// What an object can be or do at a moment, by its bit.
    enum class State { Active = 1, Editable = 7, Enabled = 8, Focused = 12, Sensitive = 24, Showing = 25 };

    /// `bus` outlives the object.
    AtspiObject(const AtspiBus& bus, AtspiReference reference, Clock::time_point deadline)
        : m_bus(&bus), m_reference(std::move(reference)), m_deadline(deadline) {}

    const AtspiReference& reference() const { return m_reference; }
    bool isApplication() const { return m_reference.path == applicationPath; }

    QString name() const;
    /// Of the application that it belongs to.
    QString toolkitName() const;
    bool isPassword() const;
    QSet<QByteArray> interfaces() const;
    /// All bits that are set; none if the program does not tell.
    std::uint64_t states() const;
    bool has(State state) const { return (states() >> static_cast<unsigned>(state) & 1U) != 0; }

    std::optional<AtspiObject> parent() const;
    std::vector<AtspiObject> children() const;
    /// The element below it that has the focus, as the program itself finds it.
    std::optional<AtspiObject> focusedDescendant() const;

protected:
    static constexpr const char* accessible = "org.a11y.atspi.Accessible";

    AtspiBus::Answer call(const char* interface, const char* method, GVariant* arguments,
                          const char* answerType) const {
        return m_bus->call(m_reference, interface, method, arguments, answerType, m_deadline);
    }
    GVariantPointer property(const char* interface, const char* propertyName, const char* type) const {
        return m_bus->property(m_reference, interface, propertyName, type, m_deadline);
    }

    const AtspiBus* m_bus;
    AtspiReference m_reference;
    Clock::time_point m_deadline;
};

/// An element whose text can be changed.
class AtspiElement final : public AtspiObject, public EditableElement {
public:
    /// Absent unless the object is a text that a person could change now, that is no password, and that is
    /// drawn by a toolkit whose ways are known.
    static std::optional<AtspiElement> editable(const AtspiObject& object);

    void setDeadline(Clock::time_point deadline) { m_deadline = deadline; }

    TextUnit offsetUnit() const override { return m_units.offset; }
    std::optional<std::u32string> characters() override;
    std::optional<TextRange> selection() override;
    Outcome insertText(int offset, const QString& text) override;
    Outcome deleteText(TextRange range) override;
    void select(TextRange range) override;

private:
    AtspiElement(const AtspiObject& object, TextUnits units) : AtspiObject(object), m_units(units) {}

    Outcome change(const char* method, GVariant* arguments);
    std::optional<int> textNumber(const char* propertyName) const;

    TextUnits m_units;
};

} // namespace kestrova
