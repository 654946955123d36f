#include "KeyboardShortcuts/Shortcut.h"

#include "KeyboardShortcuts/Modifiers.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace kestrova {
namespace {

constexpr QLatin1StringView keyCodeMember{"carbonKeyCode"};
constexpr QLatin1StringView modifiersMember{"carbonModifiers"};

std::optional<std::int64_t> integer(const QJsonValue& value) {
    // The answer depends on the fallback only where there is no integer.
    if (value.toInteger(0) != value.toInteger(1))
        return std::nullopt;
    return value.toInteger();
}

} // namespace

Shortcut Shortcut::of(Key key, std::uint32_t eventFlags) {
    return {key.rawValue, kestrova::carbonModifiers(eventFlags)};
}

Shortcut Shortcut::of(const KeyEvent& event) {
    return of(Key{event.keyCode}, event.modifierFlags);
}

QString encoded(const Shortcut& shortcut) {
    const QJsonObject object{{keyCodeMember, static_cast<qint64>(shortcut.carbonKeyCode)},
                             {modifiersMember, static_cast<qint64>(shortcut.carbonModifiers)}};
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

std::optional<Shortcut> decodedShortcut(const QString& text) {
    const auto object = QJsonDocument::fromJson(text.toUtf8()).object();
    const auto keyCode = integer(object.value(keyCodeMember));
    const auto modifiers = integer(object.value(modifiersMember));
    if (!keyCode || !modifiers)
        return std::nullopt;
    return Shortcut{*keyCode, *modifiers};
}

} // namespace kestrova
