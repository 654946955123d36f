#include "Platform/x11/OwnWindows.h"

namespace kestrova {

OwnWindows::OwnWindows(xcb_connection_t* toolkit) {
    if (const auto* const setup = toolkit ? xcb_get_setup(toolkit) : nullptr) {
        m_base = setup->resource_id_base;
        m_mask = setup->resource_id_mask;
    }
}

} // namespace kestrova
