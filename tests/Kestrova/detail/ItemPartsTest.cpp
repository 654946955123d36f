#include "Kestrova/detail/ItemParts.h"

#include "KestrovaCore/ClipboardItem.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

TEST(ItemPartsTest, ALinkLeadsToItsPageWhateverBlanksStandAroundIt) {
    EXPECT_EQ(linkOf(ClipboardItemType::url, u" https://example.org/a \n"_qs),
              QUrl(u"https://example.org/a"_qs));
}

TEST(ItemPartsTest, WhatCannotBeReadAsALinkLeadsNowhere) {
    EXPECT_EQ(linkOf(ClipboardItemType::url, u"http://["_qs), std::nullopt);
    EXPECT_EQ(linkOf(ClipboardItemType::url, QString()), std::nullopt);
}

TEST(ItemPartsTest, OnlyALinkLeadsSomewhere) {
    for (const auto type : allClipboardItemTypes)
        EXPECT_EQ(linkOf(type, u"https://example.org/"_qs).has_value(), type == ClipboardItemType::url);
}

TEST(ItemPartsTest, TheLastComponentIsWhatStandsBehindTheLastSlash) {
    EXPECT_EQ(lastPathComponent(u"/home/user/a b.txt"_qs), u"a b.txt");
    EXPECT_EQ(lastPathComponent(u"name"_qs), u"name");
    EXPECT_EQ(lastPathComponent(u"/usr/share//"_qs), u"share");
    EXPECT_EQ(lastPathComponent(u"/"_qs), u"/");
    EXPECT_EQ(lastPathComponent(u"//"_qs), u"/");
    EXPECT_EQ(lastPathComponent(QString()), QString());
}

} // namespace
} // namespace kestrova
