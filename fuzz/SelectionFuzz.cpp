#include "Platform/x11/SelectionSnapshot.h"
#include "Platform/x11/SelectionTargets.h"

#include <algorithm>

using namespace kestrova;

/// The bytes that the owner of the clipboard sends: names of targets, a list of files, a text.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));

    const auto plan = planFor(bytes.split('\n'), [](const QByteArray&) { return true; });
    const bool isMarked = std::ranges::any_of(bytes.split('\n'), [](const QByteArray& target) {
        return target == "x-kde-passwordManagerHint" || target == "org.nspasteboard.ConcealedType";
    });
    if (isMarked && !plan.requests.empty())
        qFatal("Something of a secret would be asked for.");

    for (const auto& url : urlsFromList(bytes))
        if (!url.isValid() || url.isRelative())
            qFatal("A list yields what is no address.");
    for (const char* target : {"UTF8_STRING", "STRING", "text/plain"})
        textFromTarget(target, bytes);
    return 0;
}
