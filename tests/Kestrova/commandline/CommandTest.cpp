#include "Kestrova/commandline/Command.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

QStringList words(const char* line) {
    return QString::fromUtf8(line).split(u' ', Qt::SkipEmptyParts);
}

template<typename Expected>
Expected parsed(const QStringList& arguments) {
    const auto command = parseCommand(arguments);
    EXPECT_TRUE(command) << command.error().message.toStdString();
    EXPECT_TRUE(std::holds_alternative<Expected>(command.value()));
    return std::get<Expected>(command.value());
}

TEST(CommandTest, NoArgumentsStartTheProgram) {
    parsed<StartCommand>({});
}

TEST(CommandTest, CaptureTakesWhatIsToBeCaptured) {
    using enum CaptureCommand::Target;
    EXPECT_EQ(parsed<CaptureCommand>(words("capture area")).target, area);
    EXPECT_EQ(parsed<CaptureCommand>(words("capture window")).target, window);
    EXPECT_EQ(parsed<CaptureCommand>(words("capture screen")).target, screen);
}

TEST(CommandTest, ListTakesItsOptionsInAnyOrder) {
    const auto plain = parsed<ListCommand>(words("list"));
    EXPECT_FALSE(plain.json);
    EXPECT_EQ(plain.limit, std::nullopt);
    EXPECT_TRUE(plain.search.isEmpty());
    const auto full = parsed<ListCommand>(words("list --search=한글 --limit 3 --json"));
    EXPECT_TRUE(full.json);
    EXPECT_EQ(full.limit, 3u);
    EXPECT_EQ(full.search, u"한글");
    EXPECT_EQ(parsed<ListCommand>(words("list --limit 0")).limit, 0u);
}

TEST(CommandTest, GetTakesAnIdentifierAndWherePicturesGo) {
    EXPECT_EQ(parsed<GetCommand>(words("get 12")).id, ItemID{12});
    EXPECT_EQ(parsed<GetCommand>(words("get 12")).imageFile, std::nullopt);
    EXPECT_EQ(parsed<GetCommand>(words("get 12 --image a.png")).imageFile, QStringLiteral("a.png"));
    EXPECT_EQ(parsed<GetCommand>(words("get --image - 12")).imageFile, QStringLiteral("-"));
}

TEST(CommandTest, AddTakesItsTextAsItStands) {
    EXPECT_EQ(parsed<AddCommand>({QStringLiteral("add"), QStringLiteral(" two\nlines ")}).text,
              u" two\nlines ");
    EXPECT_EQ(
        parsed<AddCommand>({QStringLiteral("add"), QStringLiteral("--"), QStringLiteral("--json")}).text,
        u"--json");
}

TEST(CommandTest, TheOthersTakeAnIdentifierOrNothing) {
    EXPECT_EQ(parsed<CopyCommand>(words("copy 1")).id, ItemID{1});
    EXPECT_EQ(parsed<PinCommand>(words("pin 2")).id, ItemID{2});
    EXPECT_EQ(parsed<DeleteCommand>(words("delete 3")).id, ItemID{3});
    EXPECT_TRUE(parsed<StatusCommand>(words("status --json")).json);
    EXPECT_EQ(parsed<PasteCommand>(words("paste 4")).id, ItemID{4});
    parsed<ToggleCommand>(words("toggle"));
    parsed<ShowCommand>(words("show"));
    parsed<HideCommand>(words("hide"));
    parsed<QuitCommand>(words("quit"));
    parsed<HelpCommand>(words("--help"));
    parsed<HelpCommand>(words("-h"));
    parsed<VersionCommand>(words("--version"));
}

class WrongUseOf : public testing::TestWithParam<const char*> {};

TEST_P(WrongUseOf, IsToldInOneLine) {
    const auto command = parseCommand(words(GetParam()));
    ASSERT_FALSE(command) << GetParam();
    EXPECT_FALSE(command.error().message.isEmpty());
    EXPECT_FALSE(command.error().message.contains(u'\n'));
}

INSTANTIATE_TEST_SUITE_P(
    Table, WrongUseOf,
    testing::Values("frobnicate", "--json", "list extra", "list --limit", "list --limit x", "list --limit -1",
                    "list --limit 1.5", "list --nope", "list --search", "get", "get x", "get 0", "get -1",
                    "get 1 2", "get 1 --image", "get 1 --image=", "get 99999999999999999999", "copy",
                    "copy one", "add", "add a b", "pin", "pin 1 2", "delete", "delete 1.0", "status extra",
                    "status --limit 1", "quit now", "--help me", "toggle 1", "capture", "capture all",
                    "capture area screen", "capture --area", "capture Screen", "show x", "hide x", "paste",
                    "paste x"));

TEST(CommandTest, AnEmptyTextCannotBeAdded) {
    EXPECT_FALSE(parseCommand({QStringLiteral("add"), QString()}));
}

TEST(CommandTest, TheHelpNamesEveryCommand) {
    const auto help = helpText();
    for (const auto* verb : {"toggle", "show", "hide", "capture", "list", "get", "copy", "paste", "add",
                             "pin", "delete", "status", "quit", "--help", "--version"})
        EXPECT_TRUE(help.contains(QStringLiteral("\n  ") + QString::fromUtf8(verb))) << verb;
}

} // namespace
} // namespace kestrova
