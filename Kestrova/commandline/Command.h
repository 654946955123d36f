#pragma once

#include "KestrovaCore/PersistentIdentifier.h"
#include "KestrovaCore/Result.h"

#include <QString>
#include <QStringList>

#include <cstddef>
#include <optional>
#include <variant>

namespace kestrova {

/// How a command ends, for scripts.
namespace ExitStatus {
inline constexpr int success = 0;
/// The command was understood and could not be carried out; an unknown identifier is such a case.
inline constexpr int failure = 1;
inline constexpr int wrongUse = 2;
inline constexpr int notRunning = 3;
} // namespace ExitStatus

/// Start the program, or find it running.
struct StartCommand {};
struct HelpCommand {};
struct VersionCommand {};
struct ToggleCommand {};
struct ShowCommand {};
struct HideCommand {};
struct CaptureCommand {
    enum class Target { area, window, screen };
    Target target = Target::screen;
};
struct ListCommand {
    bool json = false;
    std::optional<std::size_t> limit;
    QString search;
};
struct GetCommand {
    ItemID id;
    /// Where the starting process writes the picture, "-" for standard output; absent asks for the text.
    std::optional<QString> imageFile;
};
struct CopyCommand {
    ItemID id;
};
struct PasteCommand {
    ItemID id;
};
struct AddCommand {
    QString text;
};
struct PinCommand {
    ItemID id;
};
struct DeleteCommand {
    ItemID id;
};
struct StatusCommand {
    bool json = false;
};
struct QuitCommand {};

using Command = std::variant<StartCommand, HelpCommand, VersionCommand, ToggleCommand, ShowCommand,
                             HideCommand, CaptureCommand, ListCommand, GetCommand, CopyCommand, PasteCommand,
                             AddCommand, PinCommand, DeleteCommand, StatusCommand, QuitCommand>;

/// What is wrong with the arguments, in one line without a line feed.
struct WrongUse {
    QString message;
};

/// Understands the arguments that follow the program's name. The process that is started and the running
/// program both go by it.
Result<Command, WrongUse> parseCommand(const QStringList& arguments);

/// The text of `--help`.
QString helpText();

} // namespace kestrova
