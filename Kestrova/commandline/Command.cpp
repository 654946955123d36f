#include "Kestrova/commandline/Command.h"

#include <QCommandLineOption>
#include <QCommandLineParser>

#include <algorithm>
#include <array>
#include <utility>

namespace kestrova {
namespace {

/// The words of one command, taken apart into options and positional arguments.
class Words {
public:
    Words(const QStringList& arguments, const QList<QCommandLineOption>& options, qsizetype positionals) {
        m_parser.addOptions(options);
        // The parser takes the first word for the program's name.
        if (!m_parser.parse(arguments))
            m_error = m_parser.errorText();
        else if (m_parser.positionalArguments().size() > positionals)
            m_error = QStringLiteral("too many arguments");
        else if (m_parser.positionalArguments().size() < positionals)
            m_error = QStringLiteral("an argument is missing");
        if (!m_error.isEmpty()) {
            m_error.front() = m_error.front().toLower();
            if (m_error.endsWith(u'.'))
                m_error.chop(1);
            m_error = arguments.constFirst() + QStringLiteral(": ") + m_error;
        }
    }

    const QString& error() const { return m_error; }
    QString positional(qsizetype index) const { return m_parser.positionalArguments().at(index); }
    bool has(const QString& option) const { return m_parser.isSet(option); }
    QString value(const QString& option) const { return m_parser.value(option); }

private:
    QCommandLineParser m_parser;
    QString m_error;
};

using Parsed = Result<Command, WrongUse>;

const QCommandLineOption jsonOption() {
    return QCommandLineOption(QStringLiteral("json"));
}

std::optional<ItemID> itemID(const QString& text) {
    bool isNumber = false;
    const auto value = text.toLongLong(&isNumber);
    return isNumber && value > 0 ? std::optional{ItemID{value}} : std::nullopt;
}

Parsed parseCapture(const QStringList& arguments) {
    using enum CaptureCommand::Target;
    const Words words(arguments, {}, 1);
    if (!words.error().isEmpty())
        return WrongUse{words.error()};
    const std::array targets{std::pair{QStringLiteral("area"), area},
                             std::pair{QStringLiteral("window"), window},
                             std::pair{QStringLiteral("screen"), screen}};
    for (const auto& [name, target] : targets)
        if (words.positional(0) == name)
            return Command{CaptureCommand{target}};
    return WrongUse{
        QStringLiteral("capture: '%1' is neither area nor window nor screen").arg(words.positional(0))};
}

Parsed parseList(const QStringList& arguments) {
    const Words words(arguments,
                      {jsonOption(), QCommandLineOption(QStringLiteral("limit"), {}, QStringLiteral("N")),
                       QCommandLineOption(QStringLiteral("search"), {}, QStringLiteral("TEXT"))},
                      0);
    if (!words.error().isEmpty())
        return WrongUse{words.error()};
    ListCommand command{.json = words.has(QStringLiteral("json")),
                        .limit = {},
                        .search = words.value(QStringLiteral("search"))};
    if (words.has(QStringLiteral("limit"))) {
        bool isNumber = false;
        command.limit = words.value(QStringLiteral("limit")).toULongLong(&isNumber);
        if (!isNumber)
            return WrongUse{QStringLiteral("list: --limit takes a whole number")};
    }
    return Command{command};
}

Parsed parseGet(const QStringList& arguments) {
    const QString image = QStringLiteral("image");
    const Words words(arguments, {QCommandLineOption(image, {}, QStringLiteral("FILE"))}, 1);
    if (!words.error().isEmpty())
        return WrongUse{words.error()};
    const auto id = itemID(words.positional(0));
    if (!id)
        return WrongUse{QStringLiteral("get: ID is a whole number above 0")};
    if (words.has(image) && words.value(image).isEmpty())
        return WrongUse{QStringLiteral("get: --image takes the name of a file")};
    return Command{GetCommand{*id, words.has(image) ? std::optional{words.value(image)} : std::nullopt}};
}

Parsed parseAdd(const QStringList& arguments) {
    const Words words(arguments, {}, 1);
    if (!words.error().isEmpty())
        return WrongUse{words.error()};
    if (words.positional(0).isEmpty())
        return WrongUse{QStringLiteral("add: TEXT is empty")};
    return Command{AddCommand{words.positional(0)}};
}

Parsed parseStatus(const QStringList& arguments) {
    const Words words(arguments, {jsonOption()}, 0);
    return words.error().isEmpty() ? Parsed(Command{StatusCommand{words.has(QStringLiteral("json"))}})
                                   : Parsed(WrongUse{words.error()});
}

template<typename WithID>
Parsed parseWithID(const QStringList& arguments) {
    const Words words(arguments, {}, 1);
    if (!words.error().isEmpty())
        return WrongUse{words.error()};
    const auto id = itemID(words.positional(0));
    if (!id)
        return WrongUse{arguments.constFirst() + QStringLiteral(": ID is a whole number above 0")};
    return Command{WithID{*id}};
}

template<typename Plain>
Parsed parsePlain(const QStringList& arguments) {
    const Words words(arguments, {}, 0);
    return words.error().isEmpty() ? Parsed(Command{Plain{}}) : Parsed(WrongUse{words.error()});
}

struct Verb {
    QLatin1StringView name;
    Parsed (*parse)(const QStringList& arguments);
    const char* usage;
    const char* help;
};

constexpr std::array verbs{
    Verb{QLatin1StringView("toggle"), parsePlain<ToggleCommand>, "toggle",
         "open the shelf, or close it if it is open"},
    Verb{QLatin1StringView("show"), parsePlain<ShowCommand>, "show", "open the shelf"},
    Verb{QLatin1StringView("hide"), parsePlain<HideCommand>, "hide", "close the shelf"},
    Verb{QLatin1StringView("capture"), parseCapture, "capture area|window|screen",
         "begin a capture; the picture follows as the newest item"},
    Verb{QLatin1StringView("list"), parseList, "list [--json] [--limit N] [--search TEXT]",
         "show the history, newest first"},
    Verb{QLatin1StringView("get"), parseGet, "get ID [--image FILE]",
         "print an item's text, or write its picture as PNG (FILE - prints it)"},
    Verb{QLatin1StringView("copy"), parseWithID<CopyCommand>, "copy ID", "put an item on the clipboard"},
    Verb{QLatin1StringView("paste"), parseWithID<PasteCommand>, "paste ID",
         "paste an item into the application in front"},
    Verb{QLatin1StringView("add"), parseAdd, "add TEXT", "add a text to the history and print its ID"},
    Verb{QLatin1StringView("pin"), parseWithID<PinCommand>, "pin ID",
         "pin an item, or unpin it if it is pinned"},
    Verb{QLatin1StringView("delete"), parseWithID<DeleteCommand>, "delete ID", "delete an item"},
    Verb{QLatin1StringView("status"), parseStatus, "status [--json]", "tell how the running program is"},
    Verb{QLatin1StringView("quit"), parsePlain<QuitCommand>, "quit", "end the running program"},
    Verb{QLatin1StringView("--help"), parsePlain<HelpCommand>, "--help", "show this help"},
    Verb{QLatin1StringView("--version"), parsePlain<VersionCommand>, "--version", "show the version"},
};

} // namespace

Parsed parseCommand(const QStringList& arguments) {
    if (arguments.isEmpty())
        return Command{StartCommand{}};
    const QString name = arguments.constFirst() == u"-h" ? QStringLiteral("--help") : arguments.constFirst();
    const auto verb = std::ranges::find_if(verbs, [&](const Verb& each) { return name == each.name; });
    if (verb == verbs.end())
        return WrongUse{QStringLiteral("unknown command '%1'; see kestrova --help").arg(name)};
    return verb->parse(arguments);
}

QString helpText() {
    QString text =
        QStringLiteral("Usage: kestrova [COMMAND]\n"
                       "Keeps what you copy. Without a command the program starts and keeps running;\n"
                       "with one, the program that runs carries it out.\n\n");
    for (const auto& verb : verbs)
        text += QStringLiteral("  %1 %2\n")
                    .arg(QString::fromLatin1(verb.usage), -42)
                    .arg(QString::fromLatin1(verb.help));
    text += QStringLiteral(
        "\nExit status: 0 done, 1 not possible (such as an unknown ID), 2 wrong use, 3 not running.\n");
    return text;
}

} // namespace kestrova
