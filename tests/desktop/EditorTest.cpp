#include "tests/desktop/HangulTest.h"
#include "tests/desktop/Mouse.h"
#include "tests/desktop/StoreFile.h"

namespace kestrova::test {
namespace {

using namespace Qt::StringLiterals;

class EditorTest : public ShelfTest {
protected:
    QStringList storedContents() const {
        return StoreFile(program.storeFile()).query("SELECT content FROM ClipboardItem ORDER BY createdAt");
    }
    bool waitForStored(const QStringList& contents) {
        return eventually([&] { return storedContents() == contents; });
    }
    void openEditor() {
        ASSERT_TRUE(shelf.open());
        keys.chord({keyAt::control, keyAt::e});
    }
};

TEST_F(EditorTest, WhatIsTypedAtOnceIsSavedWithCtrlS) {
    startWith({u"first"_s, u"second"_s});
    openEditor();
    keys.type("the ");
    keys.chord({keyAt::control, keyAt::s});
    EXPECT_TRUE(waitForStored({u"first"_s, u"the second"_s})) << storedContents().join(u'|').toStdString();
}

TEST_F(EditorTest, SuperReturnSavesToo) {
    startWith({u"text"_s});
    openEditor();
    keys.type("a ");
    keys.chord({keyAt::super, keyAt::returnKey});
    EXPECT_TRUE(waitForStored({u"a text"_s}));
}

TEST_F(EditorTest, EscapeLeavesTheEditorAndWhatWasTypedInIt) {
    startWith({u"text"_s});
    openEditor();
    keys.type("a ");
    keys.tap(keyAt::escape);
    // The lists have the keyboard again, and another editor begins with what is stored.
    keys.chord({keyAt::control, keyAt::e});
    keys.type("b ");
    keys.chord({keyAt::control, keyAt::s});
    EXPECT_TRUE(waitForStored({u"b text"_s})) << storedContents().join(u'|').toStdString();
    EXPECT_TRUE(shelf.isUp());
}

TEST_F(EditorTest, AVeryLongLineIsEditedAsAnyOther) {
    const auto line = u"0123456789"_s.repeated(5'000);
    startWith({line});
    openEditor();
    keys.type("new ");
    keys.chord({keyAt::control, keyAt::z});
    keys.type("old ");
    keys.chord({keyAt::control, keyAt::s});
    EXPECT_TRUE(waitForStored({u"old "_s + line}));
}

class EditorHangulTest : public HangulTest {
protected:
    bool waitForStored(const QByteArray& query, const QString& value) {
        return eventually([&] { return StoreFile(program.storeFile()).query(query).contains(value); });
    }
    void writeAndSave() {
        ASSERT_TRUE(shelf.open());
        keys.chord({keyAt::control, keyAt::e});
        ASSERT_TRUE(switchToKorean());
        // The keys of 한글; the last syllable is still being composed when it is saved.
        shelf.search("gks rmf");
        keys.chord({keyAt::control, keyAt::s});
        EXPECT_TRUE(waitForStored("SELECT content FROM ClipboardItem", u"한 글"_s))
            << program.contents().join(u'|').left(1000).toStdString();
    }
};

TEST_F(EditorHangulTest, SyllablesAreComposedInTheEditor) {
    startWith({u"text"_s});
    writeAndSave();
}

TEST_F(EditorHangulTest, SyllablesAreComposedInTheEditorOfAVeryLongLine) {
    startWith({u"0123456789"_s.repeated(5'000)});
    writeAndSave();
}

TEST_F(EditorHangulTest, SyllablesAreComposedInTheNameOfACollection) {
    startWith({u"text"_s});
    ASSERT_TRUE(shelf.open());
    // The button at the foot of the sidebar.
    Mouse(session.display()).click(shelf.frame().topLeft() + QPoint(60, 516));
    ASSERT_TRUE(switchToKorean());
    shelf.search("gks rmf");
    keys.tap(keyAt::returnKey);
    EXPECT_TRUE(waitForStored("SELECT name FROM KovaCollection", u"한 글"_s));
}

} // namespace
} // namespace kestrova::test
