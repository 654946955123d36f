#include "Platform/x11/KeymapText.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

constexpr xkb_keycode_t keyCodeOfA = 38;
constexpr xkb_keycode_t keyV = 55;
constexpr xkb_keycode_t bracket = 34;

/// Layouts as a person sets them, without a display.
class Keymap {
public:
    explicit Keymap(const char* layout, const char* variant = "")
        : m_context(xkb_context_new(XKB_CONTEXT_NO_FLAGS)) {
        const xkb_rule_names names{"evdev", "pc105", layout, variant, ""};
        m_keymap = xkb_keymap_new_from_names(m_context, &names, XKB_KEYMAP_COMPILE_NO_FLAGS);
    }
    Keymap(const Keymap&) = delete;
    Keymap& operator=(const Keymap&) = delete;
    ~Keymap() {
        xkb_keymap_unref(m_keymap);
        xkb_context_unref(m_context);
    }
    xkb_keymap* get() const { return m_keymap; }

private:
    xkb_context* m_context;
    xkb_keymap* m_keymap;
};

TEST(KeymapTextTest, AKeyGivesWhatItsLayoutWritesOnIt) {
    struct Row {
        const char* layout;
        const char* variant;
        xkb_keycode_t key;
        std::optional<QString> text;
    };
    for (const auto& row : std::vector<Row>{{"us", "", keyV, u"v"_s},
                                            {"us", "dvorak", keyV, u"k"_s},
                                            {"fr", "", 24, u"a"_s},
                                            {"de", "", 29, u"z"_s},
                                            {"ru", "", keyV, u"м"_s},
                                            {"kr", "", keyV, u"v"_s},
                                            {"us", "", 10, u"1"_s},
                                            {"us", "", 65, u" "_s},
                                            // Dead keys
                                            {"de", "", 49, u"^"_s},
                                            {"de", "", 21, u"´"_s},
                                            {"fr", "", bracket, u"^"_s},
                                            {"es", "", bracket, u"`"_s},
                                            {"pt", "", 51, u"~"_s},
                                            // No characters
                                            {"us", "", 113, std::nullopt},
                                            {"us", "", 67, std::nullopt},
                                            {"us", "", 50, std::nullopt},
                                            {"us", "", 250, std::nullopt}}) {
        const Keymap keymap(row.layout, row.variant);
        ASSERT_TRUE(keymap.get());
        EXPECT_EQ(textOfKey(keymap.get(), row.key, 0), row.text) << row.layout << " " << row.key;
    }
}

TEST(KeymapTextTest, TheKeypadGivesDigitsWhileNumLockIsOn) {
    const Keymap keymap("us");
    constexpr xkb_keycode_t keypad7 = 79;
    constexpr std::uint32_t numLock = 1 << 4;
    EXPECT_EQ(textOfKey(keymap.get(), keypad7, 0), std::nullopt);
    EXPECT_EQ(textOfKey(keymap.get(), keypad7, 0, numLock), u"7"_s);
}

TEST(KeymapTextTest, LayoutsWithoutLatinLettersAreKnown) {
    for (const auto* const layout : {"us", "fr", "de", "kr", "jp", "pl", "tr", "epo", "vn", "cz"})
        EXPECT_TRUE(hasLatinLetters(Keymap(layout).get(), 0)) << layout;
    for (const auto* const layout : {"ru", "gr", "ara", "il", "ua", "th", "in", "ge", "am"})
        EXPECT_FALSE(hasLatinLetters(Keymap(layout).get(), 0)) << layout;
}

TEST(KeymapTextTest, TheLatinLayoutIsTheCurrentOneOrElseTheFirst) {
    const Keymap keymap("ru,gr,us,fr");
    EXPECT_EQ(latinLayout(keymap.get(), 0), 2U);
    EXPECT_EQ(latinLayout(keymap.get(), 1), 2U);
    EXPECT_EQ(latinLayout(keymap.get(), 2), 2U);
    EXPECT_EQ(latinLayout(keymap.get(), 3), 3U);
    const Keymap none("ru,gr");
    EXPECT_EQ(latinLayout(none.get(), 1), 1U);
}

TEST(KeymapTextTest, ASymbolIsFoundInItsLayout) {
    const Keymap keymap("ru,us,us", ",,dvorak");
    EXPECT_EQ(keyGiving(keymap.get(), XKB_KEY_v, 0), std::nullopt);
    EXPECT_EQ(keyGiving(keymap.get(), XKB_KEY_v, 1), keyV);
    EXPECT_EQ(keyGiving(keymap.get(), XKB_KEY_v, 2), 60U);
    EXPECT_EQ(keyGiving(keymap.get(), XKB_KEY_a, 2), keyCodeOfA);
    EXPECT_EQ(keyGiving(keymap.get(), XKB_KEY_Insert, 0), 118U);
    EXPECT_EQ(keyGiving(keymap.get(), XKB_KEY_Control_L, 0), 37U);
}

} // namespace
} // namespace kestrova
