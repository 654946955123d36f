#include "Platform/x11/CanberraLibrary.h"

#include <QLibrary>

namespace kestrova {

namespace {

constexpr int interfaceVersion = 0;

template<typename Function>
bool find(QLibrary& library, const char* symbol, Function& function) {
    function = reinterpret_cast<Function>(library.resolve(symbol));
    return function != nullptr;
}

} // namespace

CanberraLibrary::CanberraLibrary() {
    QLibrary library(QStringLiteral("canberra"), interfaceVersion);
    library.setLoadHints(QLibrary::PreventUnloadHint);
    const bool isUsable = find(library, "ca_context_create", create) &&
                          find(library, "ca_context_change_props", changeProperties) &&
                          find(library, "ca_context_open", open) && find(library, "ca_context_play", play) &&
                          find(library, "ca_context_destroy", destroy) &&
                          find(library, "ca_strerror", describe);
    if (!isUsable)
        fault = library.errorString();
}

} // namespace kestrova
