#include "Kestrova/commandline/CommandHandler.h"

#include "Kestrova/clipboard/ClipboardMonitor.h"
#include "Kestrova/commandline/ItemListing.h"
#include "Kestrova/shelf/ItemOperations.h"
#include "KestrovaCore/ClipboardItem.h"
#include "KestrovaCore/FoldedText.h"
#include "KestrovaCore/KovaCollection.h"
#include "KestrovaCore/ModelContainer.h"
#include "Platform/MachineInfo.h"
#include "Platform/Pasteboard.h"
#include "Platform/UserDefaults.h"
#include "Platform/Workspace.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <variant>

namespace kestrova {
namespace {

CommandReply printed(const QString& text) {
    return {ExitStatus::success, text.toUtf8(), {}};
}

CommandReply failed(const QString& message, int exitStatus = ExitStatus::failure) {
    return {exitStatus, {}, QStringLiteral("kestrova: %1\n").arg(message).toUtf8()};
}

CommandReply unknown(ItemID id) {
    return failed(QStringLiteral("no item with ID %1").arg(id.value));
}

CommandReply unreadable(const StoreError& error) {
    return failed(QStringLiteral("the history cannot be read: %1").arg(error.message));
}

/// The change stands in memory and goes to disk with the next save; a script must know that it is not there
/// yet.
CommandReply unwritten(const StoreError& error) {
    return failed(QStringLiteral("the history cannot be written yet: %1").arg(error.message));
}

CommandReply told(const std::function<void()>& listener) {
    if (listener)
        listener();
    return {};
}

} // namespace

CommandHandler::CommandHandler(const Surroundings& surroundings)
    : m_surroundings(surroundings),
      m_context(surroundings.container),
      m_operations(std::make_unique<ItemOperations>(m_context, surroundings.pasteboard, surroundings.hud)) {}

CommandHandler::~CommandHandler() = default;

CommandReply CommandHandler::run(const QStringList& arguments) {
    const auto command = parseCommand(arguments);
    if (!command)
        return failed(command.error().message, ExitStatus::wrongUse);
    return std::visit([this](const auto& each) { return run(each); }, command.value());
}

CommandReply CommandHandler::run(const StartCommand&) {
    return printed(QStringLiteral("Kestrova is running.\n"));
}

CommandReply CommandHandler::run(const HelpCommand&) {
    return printed(helpText());
}

CommandReply CommandHandler::run(const VersionCommand&) {
    return printed(QStringLiteral("kestrova %1\n").arg(m_surroundings.machineInfo.shortVersionString()));
}

CommandReply CommandHandler::run(const ToggleCommand&) {
    return told(onToggle);
}

CommandReply CommandHandler::run(const ShowCommand&) {
    return told(onShow);
}

CommandReply CommandHandler::run(const HideCommand&) {
    return told(onHide);
}

CommandReply CommandHandler::run(const CaptureCommand& command) {
    using enum CaptureCommand::Target;
    if (mayCapture && !mayCapture())
        return failed(QStringLiteral("the screen is locked or cannot be captured"));
    switch (command.target) {
    case area:
        return told(onCaptureArea);
    case window:
        return told(onCaptureWindow);
    case screen:
        return told(onCaptureFullScreen);
    }
    return {};
}

CommandReply CommandHandler::run(const ListCommand& command) {
    FetchDescriptor wanted{.limit = command.limit.value_or(FetchDescriptor::noLimit)};
    const SearchTerm term(command.search);
    if (!term.isEmpty())
        wanted.predicate = [&](const ClipboardItemValues& values) { return matches(values, term); };
    const auto items = m_context.fetch(wanted);
    if (!items)
        return unreadable(items.error());
    return {ExitStatus::success, command.json ? jsonListing(items.value()) : tableListing(items.value()), {}};
}

CommandReply CommandHandler::run(const GetCommand& command) {
    const auto item = m_context.item(command.id);
    if (!item)
        return unknown(command.id);
    if (!command.imageFile)
        return {ExitStatus::success, item->content().toUtf8(), {}};
    // The starting process writes the file: it knows its own folder and its own rights.
    const auto png = item->imageData();
    return png ? CommandReply{ExitStatus::success, *png, {}}
               : failed(QStringLiteral("item %1 has no picture").arg(command.id.value));
}

CommandReply CommandHandler::run(const CopyCommand& command) {
    const auto item = m_context.item(command.id);
    if (!item)
        return unknown(command.id);
    m_operations->copy(item);
    return {};
}

CommandReply CommandHandler::run(const PasteCommand& command) {
    const auto item = m_context.item(command.id);
    if (!item)
        return unknown(command.id);
    if (onPaste)
        onPaste(item);
    return {};
}

CommandReply CommandHandler::run(const AddCommand& command) {
    const auto item =
        std::make_shared<ClipboardItem>(command.text, typeOfCopiedText(command.text, false), std::nullopt,
                                        currentTimestamp(), false, ItemSource::clipboard);
    m_context.insert(item);
    if (const auto saved = m_context.save(); !saved)
        return unwritten(saved.error());
    return printed(QStringLiteral("%1\n").arg(item->id().value));
}

CommandReply CommandHandler::run(const PinCommand& command) {
    const auto item = m_context.item(command.id);
    if (!item)
        return unknown(command.id);
    if (const auto saved = m_operations->togglePin(*item); !saved)
        return unwritten(saved.error());
    return printed(item->pinned() ? QStringLiteral("pinned\n") : QStringLiteral("unpinned\n"));
}

CommandReply CommandHandler::run(const DeleteCommand& command) {
    const auto item = m_context.item(command.id);
    if (!item)
        return unknown(command.id);
    const auto saved = m_operations->deleteItem(*item);
    return saved ? CommandReply{} : unwritten(saved.error());
}

CommandReply CommandHandler::run(const StatusCommand& command) {
    const auto items = m_context.fetchCount({});
    const auto pinned = m_context.fetchCount({.predicate = &ClipboardItemValues::pinned});
    if (!items || !pinned)
        return unreadable(items ? pinned.error() : items.error());
    const auto front = m_surroundings.workspace.frontmostApplication();
    const bool monitors = m_surroundings.defaults.boolean(QStringLiteral("monitorEnabled")).value_or(true);
    const auto refused = refusedShortcuts ? refusedShortcuts() : QStringList();
    if (command.json) {
        const QJsonObject status{
            {QStringLiteral("version"), m_surroundings.machineInfo.shortVersionString()},
            {QStringLiteral("pid"), QCoreApplication::applicationPid()},
            {QStringLiteral("items"), static_cast<qint64>(items.value())},
            {QStringLiteral("pinned"), static_cast<qint64>(pinned.value())},
            {QStringLiteral("changeCount"), static_cast<qint64>(m_surroundings.pasteboard.changeCount())},
            {QStringLiteral("monitorEnabled"), monitors},
            {QStringLiteral("frontmostApplication"), front && front->bundleIdentifier
                                                         ? QJsonValue(*front->bundleIdentifier)
                                                         : QJsonValue(QJsonValue::Null)},
            {QStringLiteral("shelfVisible"), isShelfVisible && isShelfVisible()},
            {QStringLiteral("refusedShortcuts"), QJsonArray::fromStringList(refused)},
            {QStringLiteral("store"), m_surroundings.container.path()}};
        return {ExitStatus::success, QJsonDocument(status).toJson(), {}};
    }
    return printed(QStringLiteral("Kestrova %1, process %2\n"
                                  "Items: %3, of these pinned: %4\n"
                                  "Clipboard: %5\n"
                                  "In front: %6\n"
                                  "Shortcuts held by another program: %7\n"
                                  "Store: %8\n")
                       .arg(m_surroundings.machineInfo.shortVersionString())
                       .arg(QCoreApplication::applicationPid())
                       .arg(items.value())
                       .arg(pinned.value())
                       .arg(monitors ? QStringLiteral("recorded") : QStringLiteral("not recorded"))
                       .arg(front ? oneLine(front->localizedName) : QStringLiteral("-"))
                       .arg(refused.isEmpty() ? QStringLiteral("-") : refused.join(QStringLiteral(", ")))
                       .arg(m_surroundings.container.path()));
}

CommandReply CommandHandler::run(const QuitCommand&) {
    return told(onQuit);
}

} // namespace kestrova
