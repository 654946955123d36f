#pragma once

#include "Kestrova/detail/RGBA.h"

#include <QString>

#include <array>
#include <functional>
#include <memory>
#include <optional>

namespace kestrova {

class KovaCollection;

/// The sheet that makes a collection or changes one: what has been typed and chosen in it so far. It draws
/// nothing. Main thread only.
class CollectionEditSheet {
public:
    /// What the sheet is open for.
    class Mode {
    public:
        enum class Kind { create, edit };

        static Mode create() { return {Kind::create, nullptr}; }
        static Mode edit(std::shared_ptr<KovaCollection> collection) {
            return {Kind::edit, std::move(collection)};
        }

        Kind kind() const { return m_kind; }
        /// Null unless of the kind `edit`.
        const std::shared_ptr<KovaCollection>& collection() const { return m_collection; }

        /// "create", or "edit-" and the hash value of the collection's identifier. Modes with the same one
        /// are one sheet.
        QString id() const;
        bool operator==(const Mode& other) const { return id() == other.id(); }

    private:
        Mode(Kind kind, std::shared_ptr<KovaCollection> collection)
            : m_kind(kind), m_collection(std::move(collection)) {}

        Kind m_kind;
        std::shared_ptr<KovaCollection> m_collection;
    };

    struct Swatch {
        QString name;
        /// Absent: the colour that collections have unless one is chosen.
        std::optional<QString> hex;
    };
    /// In the order in which they are shown; the first is the one without a colour.
    static const std::array<Swatch, 9>& swatches();

    /// Called with the trimmed name, which is not empty, and the chosen colour.
    using Submit = std::function<void(const QString& name, const std::optional<QString>& colorHex)>;

    /// Both are set.
    CollectionEditSheet(Mode mode, Submit onSubmit, std::function<void()> onCancel);

    /// Nothing happens while the name is empty or blank.
    void submit();
    void cancel();

    QString title() const;
    QString submitTitle() const;
    /// The name as the row will show it.
    QString previewName() const;
    /// The colour as the row will show it, or would with the swatch under the pointer. Absent: the accent
    /// colour.
    std::optional<RGBA> previewColor() const;

    const Mode mode;
    Submit onSubmit;
    std::function<void()> onCancel;
    /// What an input method is composing is part of it.
    QString _name;
    std::optional<QString> _selectedColorHex;
    bool _hoveringSwatch = false;
    /// Of the swatch under the pointer.
    std::optional<QString> _hoverHex;
    bool _nameFocused = true;
};

} // namespace kestrova
