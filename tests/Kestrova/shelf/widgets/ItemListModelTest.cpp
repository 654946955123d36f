#include "Kestrova/shelf/widgets/ItemListModel.h"
#include "KestrovaCore/ClipboardItem.h"
#include "tests/support/StoreFixture.h"

#include <QAbstractItemModelTester>

#include <gtest/gtest.h>

namespace kestrova {
namespace {

class ItemListModelTest : public testing::Test {
protected:
    ItemListModelTest() {
        QObject::connect(&m_model, &QAbstractItemModel::modelReset, [this] { ++m_resets; });
    }

    ItemListModel m_model;
    int m_resets = 0;
    // Whatever it finds ends the program.
    QAbstractItemModelTester m_tester{&m_model, QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST_F(ItemListModelTest, KeepsTheRulesOfModelsThroughAllChanges) {
    const ItemListModel::Items some{makeText(u"one"_qs), makeText(u"둘"_qs), makeText(u"three"_qs)};
    EXPECT_EQ(m_model.rowCount(), 0);
    EXPECT_TRUE(m_model.show(some));
    EXPECT_EQ(m_model.rowCount(), 3);
    EXPECT_EQ(m_model.index(1, 0).data(Qt::DisplayRole).toString(), u"둘");
    EXPECT_EQ(m_model.item(m_model.index(2, 0)), some[2]);
    EXPECT_TRUE(m_model.show({some[2]}));
    EXPECT_EQ(m_model.rowCount(), 1);
    EXPECT_TRUE(m_model.show({}));
    EXPECT_EQ(m_model.item(m_model.index(0, 0)), nullptr);
}

TEST_F(ItemListModelTest, TheSameItemsChangeNothing) {
    const ItemListModel::Items some{makeText(u"one"_qs), makeText(u"two"_qs)};
    m_model.show(some);
    EXPECT_EQ(m_resets, 1);
    EXPECT_FALSE(m_model.show(some));
    EXPECT_EQ(m_resets, 1);
}

TEST_F(ItemListModelTest, LooksAtNoItemBeforeItIsAskedForOne) {
    // Null items would be found out.
    m_model.show(ItemListModel::Items(100'000));
    EXPECT_EQ(m_model.rowCount(), 100'000);
    EXPECT_EQ(m_model.index(99'999, 0).data(), QVariant());
}

} // namespace
} // namespace kestrova
