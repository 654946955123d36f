#include "Platform/x11/FocusMemory.h"

#include <algorithm>

namespace kestrova {

void FocusMemory::gained(const AtspiReference& element) {
    std::erase_if(m_elements, [&](const auto& known) { return known.connection == element.connection; });
    m_elements.insert(m_elements.begin(), element);
    if (m_elements.size() > mostApplications)
        m_elements.pop_back();
}

void FocusMemory::lost(const AtspiReference& element) {
    if (std::ranges::find(m_elements, element.connection, &AtspiReference::connection) == m_elements.end())
        gained(element);
}

} // namespace kestrova
