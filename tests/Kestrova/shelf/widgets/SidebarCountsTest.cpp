#include "Kestrova/shelf/widgets/SidebarCounts.h"
#include "tests/support/StoreFixture.h"

namespace kestrova {
namespace {

class SidebarCountsTest : public StoreFixture {};

TEST_F(SidebarCountsTest, CountsWhatEachLensWouldShow) {
    ModelContext context(*m_container);
    const auto collection = std::make_shared<KovaCollection>(u"c"_qs, 1, std::nullopt, std::nullopt);
    context.insert(collection);
    std::vector<std::shared_ptr<ClipboardItem>> items;
    for (int i = 0; i < 5; ++i) {
        items.push_back(std::make_shared<ClipboardItem>(
            QString::number(i), ClipboardItemType::text, std::nullopt, moment(i), i < 2,
            i < 3 ? ItemSource::screenshot : ItemSource::clipboard));
        context.insert(items.back());
    }
    items[4]->setCollections({{collection}});
    ASSERT_TRUE(context.save());

    const auto counts = SidebarCounts::of(items);
    EXPECT_EQ(counts.all, 5U);
    EXPECT_EQ(counts.pinned, 2U);
    EXPECT_EQ(counts.screenshots, 3U);
    EXPECT_EQ(counts.ofCollection(collection->id()), 1U);
    EXPECT_EQ(counts.ofCollection({.value = 4711}), 0U);
}

} // namespace
} // namespace kestrova
