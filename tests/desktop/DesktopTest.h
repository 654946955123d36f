#pragma once

#include "tests/desktop/DesktopSession.h"
#include "tests/desktop/KestrovaProgram.h"
#include "tests/desktop/Printing.h"
#include "tests/desktop/SelectionOwner.h"
#include "tests/desktop/Waiting.h"

#include <gtest/gtest.h>

#include <deque>

namespace kestrova::test {

/// A test with a desktop and, not yet started, the program on it.
class DesktopTest : public ::testing::Test {
protected:
    /// A new client takes the clipboard, as when a person copies. It stays until the test ends.
    SelectionOwner& copy(SelectionScript script) {
        return m_owners.emplace_back(session.display(), std::move(script));
    }
    SelectionOwner& copyText(const QByteArray& text) { return copy(plainText(text)); }

    DesktopSession session;
    KestrovaProgram program{session};

private:
    std::deque<SelectionOwner> m_owners;
};

} // namespace kestrova::test
