#pragma once

#include "Kestrova/detail/TextLength.h"
#include "KestrovaCore/ClipboardItemType.h"
#include "KestrovaCore/Timestamp.h"
#include "Platform/Workspace.h"

#include <QIcon>
#include <QString>

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <vector>

namespace kestrova {

class ClipboardItem;
class MainQueue;
struct InfoFormatters;

/// One line of what is told of an item.
struct InfoRowData {
    QString label;
    QString value;
    /// Stands before the value; null if there is none.
    QIcon leading = {};
};

/// The lines that tell of an item beside its content: where it came from, what it is, how large it is and
/// when it was copied. Main thread only.
class InfoSection {
public:
    /// All of it outlives the section.
    struct Surroundings {
        MainQueue& mainQueue;
        const Workspace& workspace;
        const InfoFormatters& formatters;
    };

    /// `onChange`: a line that was not known yet is.
    InfoSection(const Surroundings& surroundings, std::function<void()> onChange);

    /// True if that changed the lines.
    bool show(const ClipboardItem& item);
    /// Keeps nothing of an item any more.
    void forget();

    const std::vector<InfoRowData>& rows() const { return m_rows; }

    /// The value of a line that is not known yet.
    static constexpr QChar pending = u'…';

private:
    /// What the lines tell of, but for the content.
    struct Facts {
        ClipboardItemType type = ClipboardItemType::text;
        std::optional<std::int64_t> width;
        std::optional<std::int64_t> height;
        std::optional<std::int64_t> fileSize;
        std::optional<std::int64_t> imageByteCount;
        std::optional<QString> sourceApp;
        Timestamp createdAt;

        bool operator==(const Facts&) const = default;
    };

    void makeRows();
    void appendApplication();
    void appendSize();
    void append(const char16_t* label, const QString& value);
    ApplicationDescription application(const QString& identifier);

    Surroundings m_surroundings;
    TextLength m_length;
    std::optional<Facts> m_facts;
    QString m_content;
    std::vector<InfoRowData> m_rows;
    /// By identifier, so that a run along the lists asks for each of them once.
    std::map<QString, ApplicationDescription> m_applications;
};

} // namespace kestrova
