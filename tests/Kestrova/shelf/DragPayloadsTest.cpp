#include "Kestrova/shelf/CollectionReorderPayload.h"
#include "Kestrova/shelf/ItemDragPayload.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

constexpr std::int64_t someRow = 4711;

QStringList keysOf(const QByteArray& json) {
    return QJsonDocument::fromJson(json).object().keys();
}

TEST(ItemDragPayloadTest, ComesBackFromItsJson) {
    const QString text = u"첫 줄\n\"quoted\" \\ 😀\t"_s;
    for (const auto row :
         {std::int64_t{1}, someRow, PersistentIdentifier<ClipboardItem>::firstTemporary + 7}) {
        const ItemDragPayload payload{.id = {row}, .exportText = text};
        EXPECT_EQ(ItemDragPayload::decoded(payload.encoded()), payload);
    }
}

TEST(ItemDragPayloadTest, HasTheKeysOfItsFields) {
    const ItemDragPayload payload{.id = {someRow}, .exportText = u"words"_s};
    EXPECT_EQ(keysOf(payload.encoded()), (QStringList{u"exportText"_s, u"id"_s}));
    EXPECT_EQ(ItemDragPayload::contentType(), u"public.json");
}

TEST(ItemDragPayloadTest, AnEmptyTextIsAPayloadToo) {
    const ItemDragPayload payload{.id = {someRow}, .exportText = {}};
    EXPECT_EQ(ItemDragPayload::decoded(payload.encoded()), payload);
}

TEST(CollectionReorderPayloadTest, ComesBackFromItsJson) {
    const CollectionReorderPayload payload{.id = {someRow}};
    EXPECT_EQ(CollectionReorderPayload::decoded(payload.encoded()), payload);
}

TEST(CollectionReorderPayloadTest, HasTheKeyOfItsField) {
    EXPECT_EQ(keysOf(CollectionReorderPayload{.id = {someRow}}.encoded()), QStringList{u"id"_s});
    EXPECT_EQ(CollectionReorderPayload::contentType(), u"com.brelvane.Kestrova.collection-reorder");
}

struct Broken {
    const char* name;
    const char* json;
};
void PrintTo(const Broken& broken, std::ostream* out) {
    *out << broken.name;
}
std::string nameOf(const ::testing::TestParamInfo<Broken>& broken) {
    return broken.param.name;
}

class BrokenItemPayloadTest : public ::testing::TestWithParam<Broken> {};
TEST_P(BrokenItemPayloadTest, IsNoPayload) {
    EXPECT_EQ(ItemDragPayload::decoded(GetParam().json), std::nullopt);
}
INSTANTIATE_TEST_SUITE_P(
    Json, BrokenItemPayloadTest,
    ::testing::Values(Broken{"Nothing", ""}, Broken{"NoJson", "words"},
                      Broken{"CutOff", R"({"id":"1","exportText":"wor)"}, Broken{"AList", R"(["1","words"])"},
                      Broken{"WithoutIdentifier", R"({"exportText":"words"})"},
                      Broken{"WithoutText", R"({"id":"1"})"},
                      Broken{"IdentifierThatIsNoNumber", R"({"id":"one","exportText":"words"})"},
                      Broken{"IdentifierTooLarge", R"({"id":"9223372036854775808","exportText":"words"})"},
                      Broken{"TextThatIsNoText", R"({"id":"1","exportText":2})"},
                      Broken{"OtherCase", R"({"ID":"1","exporttext":"words"})"},
                      Broken{"MoreBehind", R"({"id":"1","exportText":"words"} x)"}),
    nameOf);

class BrokenReorderPayloadTest : public ::testing::TestWithParam<Broken> {};
TEST_P(BrokenReorderPayloadTest, IsNoPayload) {
    EXPECT_EQ(CollectionReorderPayload::decoded(GetParam().json), std::nullopt);
}
INSTANTIATE_TEST_SUITE_P(Json, BrokenReorderPayloadTest,
                         ::testing::Values(Broken{"Nothing", ""}, Broken{"NoJson", "words"},
                                           Broken{"CutOff", R"({"id":"1")"},
                                           Broken{"WithoutIdentifier", "{}"},
                                           Broken{"IdentifierThatIsNoNumber", R"({"id":""})"},
                                           Broken{"IdentifierThatIsNull", R"({"id":null})"}),
                         nameOf);

} // namespace
} // namespace kestrova
