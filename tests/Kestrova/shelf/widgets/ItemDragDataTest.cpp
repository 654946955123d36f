#include "Kestrova/shelf/widgets/ItemDragData.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

TEST(ItemDragDataTest, OffersThePayloadAndThenTheText) {
    const ItemDragData data({.id = {7}, .exportText = u"글\nwords"_s});
    EXPECT_EQ(data.formats(), (QStringList{u"public.json"_s, u"text/plain"_s}));
    EXPECT_EQ(ItemDragPayload::decoded(data.data(u"public.json"_s)),
              (ItemDragPayload{.id = {7}, .exportText = u"글\nwords"_s}));
    EXPECT_EQ(data.text(), u"글\nwords");
    EXPECT_EQ(data.data(u"text/plain"_s), u"글\nwords"_s.toUtf8());
    EXPECT_FALSE(data.hasUrls());
    EXPECT_FALSE(data.hasHtml());
    EXPECT_EQ(data.data(u"text/html"_s), QByteArray());
}

} // namespace
} // namespace kestrova
