#pragma once

#include "tests/support/Ports.h"

namespace kestrova {

/// A desktop with an application and with icons for files; of what is under "/absent/" it knows nothing.
class SampleWorkspace final : public FakeWorkspace {
public:
    SampleWorkspace();

    void fileIcon(const QString& path, std::function<void(const QIcon&)> done) override;

    static constexpr QLatin1StringView editor{"org.example.Editor"};
};

} // namespace kestrova
