#include "Kestrova/state/Reactions.h"

#include <QtGlobal>

namespace kestrova {
namespace {

// Reactions that feed each other without end are a mistake in the table; no real chain is nearly as long.
constexpr int mostPasses = 100;

} // namespace

bool Reactions::settle() {
    bool anyChanged = false;
    for (int pass = 0;; ++pass) {
        if (pass == mostPasses)
            qFatal("The reactions of a state holder feed each other without end.");
        // All fields are looked at before the first reaction runs: what a reaction changes belongs to the
        // next pass.
        std::vector<Field*> changed;
        for (const auto& field : m_watched)
            if (field->hasChanged())
                changed.push_back(field.get());
        if (changed.empty())
            return anyChanged;
        anyChanged = true;
        for (auto* const field : changed)
            field->react();
    }
}

} // namespace kestrova
