#pragma once

#include "Platform/x11/SoundBackend.h"

#include <memory>
#include <string>

struct ca_context;

namespace kestrova {

struct CanberraLibrary;

/// Plays through libcanberra, which finds the sound server or, without one, the device. The library is loaded
/// when the object is made: linked, it would cost the program a millisecond at every start and a third of a
/// megabyte for as long as it runs, sounds or none. The first failure is logged, and no other.
class CanberraBackend : public SoundBackend {
public:
    explicit CanberraBackend(std::string applicationIdentifier);
    ~CanberraBackend() override;

    void play(const std::string& path) override;

private:
    void open();
    void report(const char* failure, int error);
    void report(const char* failure, const char* reason);

    const std::string m_applicationIdentifier;
    const std::unique_ptr<const CanberraLibrary> m_library;
    ca_context* m_context = nullptr;
    bool m_hasReported = false;
};

} // namespace kestrova
