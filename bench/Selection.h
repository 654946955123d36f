#pragma once

#include <cstdio>
#include <cstring>
#include <span>

namespace kestrova::bench {

/// Measures what the arguments name, or everything. False, with a message, if an argument names nothing.
template<typename Measurement, typename Run>
bool runSelected(int argc, char* argv[], std::span<const Measurement> measurements, Run run) {
    const std::span arguments(argv + 1, static_cast<std::size_t>(argc - 1));
    const auto isCalled = [](const Measurement& each, const char* name) {
        return std::strcmp(each.name, name) == 0;
    };
    for (const char* argument : arguments) {
        bool known = false;
        for (const auto& each : measurements)
            known |= isCalled(each, argument);
        if (known)
            continue;
        std::fprintf(stderr, "%s is none of:", argument);
        for (const auto& each : measurements)
            std::fprintf(stderr, " %s", each.name);
        std::fprintf(stderr, "\n");
        return false;
    }
    for (const auto& each : measurements) {
        bool wanted = arguments.empty();
        for (const char* argument : arguments)
            wanted |= isCalled(each, argument);
        if (wanted)
            run(each);
    }
    return true;
}

} // namespace kestrova::bench
