#pragma once

#include <QString>

#include <canberra.h>

namespace kestrova {

/// The functions of libcanberra that are used, found in the library at run time. It stays loaded, as what it
/// loads in turn cannot be unloaded.
struct CanberraLibrary {
    CanberraLibrary();

    decltype(&ca_context_create) create = nullptr;
    decltype(&ca_context_change_props) changeProperties = nullptr;
    decltype(&ca_context_open) open = nullptr;
    decltype(&ca_context_play) play = nullptr;
    decltype(&ca_context_destroy) destroy = nullptr;
    decltype(&ca_strerror) describe = nullptr;

    /// Why it cannot be used; empty if it can.
    QString fault;
};

} // namespace kestrova
