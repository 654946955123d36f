#pragma once

#include <QByteArray>

#include <vector>

namespace kestrova {

/// An object on the accessibility bus: the connection that has it and its path there.
struct AtspiReference {
    QByteArray connection;
    QByteArray path;

    bool operator==(const AtspiReference&) const = default;
};

/// Which element of each application had the focus last. An application that is not in front says of none of
/// its elements that it has the focus, so this has to be kept.
class FocusMemory {
public:
    /// Enough for the applications among which a person changes.
    static constexpr std::size_t mostApplications = 32;

    void gained(const AtspiReference& element);
    /// An element that is left was in focus until now; that tells something of an application only as long as
    /// nothing else is known of it.
    void lost(const AtspiReference& element);
    void clear() { m_elements.clear(); }

    /// One element an application, the latest first.
    const std::vector<AtspiReference>& elements() const { return m_elements; }

private:
    std::vector<AtspiReference> m_elements;
};

} // namespace kestrova
