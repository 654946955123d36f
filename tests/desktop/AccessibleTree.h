#pragma once

#include "tests/desktop/AssistiveProgram.h"

#include <QRect>
#include <QStringList>

#include <cstdint>
#include <optional>
#include <vector>

namespace kestrova::test {

/// One thing on the screen as a screen reader gets it.
struct AccessibleElement {
    QString service;
    QString path;
    QString name;
    QString description;
    QString role;
    std::uint64_t states = 0;
    QStringList actions;
    /// Its place among its siblings, and the path of what it lies in.
    int position = 0;
    QString parent;

    bool isShowing() const { return has(25); }
    bool isFocusable() const { return has(11); }
    bool isFocused() const { return has(12); }
    bool isChecked() const { return has(4); }
    bool isSelected() const { return has(23); }

private:
    bool has(int state) const { return (states >> state & 1) != 0; }
};

/// What a screen reader finds in a program. Throws std::runtime_error if the program does not answer.
class AccessibleTree {
public:
    /// `assistive` outlives the object.
    AccessibleTree(const AssistiveProgram& assistive, qint64 pid) : m_bus(assistive.bus()), m_pid(pid) {}

    /// All that is showing now, from the outside in; empty while the program has not come to the bus.
    std::vector<AccessibleElement> showing() const;
    /// The first whose name begins so.
    std::optional<AccessibleElement> named(const QString& start) const;
    /// Where it lies, in pixels of the display; what it lies in may cut a part of that off.
    QRect frame(const AccessibleElement& element) const;
    /// Does what the element does when it is pressed; false if it does nothing.
    bool press(const AccessibleElement& element) const;

private:
    struct Reference {
        QString service;
        QString path;
    };

    struct Question {
        Reference whom;
        QString interface;
        QString method;
        QVariantList arguments = {};
    };

    /// All are put before the first answer is waited for: a tree is hundreds of them.
    std::vector<QDBusMessage> ask(const std::vector<Question>& questions) const;
    std::optional<Reference> program() const;
    std::vector<Reference> children(const Reference& parent) const;
    /// Those of the references that are showing, with their positions among them all.
    std::vector<AccessibleElement> showingOf(const std::vector<Reference>& references) const;
    void collect(const Reference& parent, std::vector<AccessibleElement>& found) const;
    QDBusMessage ask(const Reference& whom, const QString& interface, const QString& method,
                     const QVariantList& arguments = {}) const;

    QDBusConnection m_bus;
    qint64 m_pid;
};

} // namespace kestrova::test
