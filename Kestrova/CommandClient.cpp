#include "Kestrova/CommandClient.h"

#include "Kestrova/commandline/Command.h"
#include "Platform/SingleInstance.h"

#include <QFile>
#include <QSaveFile>

#include <cstdio>
#include <variant>

#include <unistd.h>

namespace kestrova {
namespace {

bool print(std::FILE* stream, const QByteArray& bytes) {
    const auto size = static_cast<std::size_t>(bytes.size());
    return std::fwrite(bytes.constData(), 1, size, stream) == size && std::fflush(stream) == 0;
}

int complain(const QString& message, int exitStatus) {
    print(stderr, QStringLiteral("kestrova: %1\n").arg(message).toUtf8());
    return exitStatus;
}

bool writeFile(const QString& path, const QByteArray& bytes, QString& error) {
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit())
        return true;
    error = file.errorString();
    return false;
}

} // namespace

std::optional<int> CommandClient::run(const QStringList& arguments) const {
    const auto command = parseCommand(arguments);
    if (!command)
        return complain(command.error().message, ExitStatus::wrongUse);
    if (std::holds_alternative<StartCommand>(command.value()))
        return std::nullopt;
    if (std::holds_alternative<HelpCommand>(command.value()))
        return print(stdout, helpText().toUtf8()) ? ExitStatus::success : ExitStatus::failure;
    if (std::holds_alternative<VersionCommand>(command.value()))
        return print(stdout, "kestrova " KESTROVA_VERSION "\n") ? ExitStatus::success : ExitStatus::failure;
    const auto* const get = std::get_if<GetCommand>(&command.value());
    return handOver(arguments, get ? get->imageFile : std::nullopt);
}

int CommandClient::greetRunningProgram() const {
    return handOver({});
}

int CommandClient::handOver(const QStringList& arguments, const std::optional<QString>& outputFile) const {
    const auto reply = m_send(arguments);
    if (!reply)
        return complain(QStringLiteral("Kestrova is not running"), ExitStatus::notRunning);
    print(stderr, reply->standardError);
    if (reply->exitStatus != ExitStatus::success)
        return reply->exitStatus;
    if (outputFile && *outputFile != u"-") {
        QString error;
        return writeFile(*outputFile, reply->standardOutput, error)
                   ? ExitStatus::success
                   : complain(QStringLiteral("cannot write %1: %2").arg(*outputFile, error),
                              ExitStatus::failure);
    }
    bool written = print(stdout, reply->standardOutput);
    // A text goes out as it is; only a person at a terminal wants the prompt on a line of its own.
    if (isatty(STDOUT_FILENO) && !reply->standardOutput.isEmpty() && !reply->standardOutput.endsWith('\n'))
        written = print(stdout, "\n") && written;
    return written ? ExitStatus::success : ExitStatus::failure;
}

} // namespace kestrova
