#include "Kestrova/detail/InfoSection.h"

#include "Kestrova/detail/InfoFormatters.h"
#include "Kestrova/detail/ItemParts.h"
#include "Kestrova/detail/SameText.h"
#include "Kestrova/detail/TypeWord.h"
#include "KestrovaCore/ClipboardItem.h"

#include <utility>

namespace kestrova {

InfoSection::InfoSection(const Surroundings& surroundings, std::function<void()> onChange)
    : m_surroundings(surroundings), m_length(surroundings.mainQueue, [this, onChange = std::move(onChange)] {
          makeRows();
          onChange();
      }) {}

bool InfoSection::show(const ClipboardItem& item) {
    Facts facts{.type = item.type(),
                .width = item.width(),
                .height = item.height(),
                .fileSize = item.fileSize(),
                .imageByteCount = item.values().imageByteCount,
                .sourceApp = item.sourceApp(),
                .createdAt = item.createdAt()};
    if (m_facts == facts && isSameText(item.content(), m_content))
        return false;
    m_facts = std::move(facts);
    m_content = item.content();
    makeRows();
    return true;
}

void InfoSection::forget() {
    m_facts = {};
    m_content.clear();
    m_length.forget();
    m_rows.clear();
}

void InfoSection::makeRows() {
    m_rows.clear();
    appendApplication();
    append(u"Content Type", typeWord(m_facts->type));
    appendSize();
    append(u"Copied", m_surroundings.formatters.date.string(m_facts->createdAt));
}

void InfoSection::appendApplication() {
    if (!m_facts->sourceApp || m_facts->sourceApp->isEmpty())
        return;
    const auto [name, icon] = application(*m_facts->sourceApp);
    m_rows.push_back({.label = QStringLiteral("Application"), .value = name, .leading = icon});
}

void InfoSection::appendSize() {
    const auto& byteCount = m_surroundings.formatters.byteCount;
    const auto isText = m_facts->type == ClipboardItemType::text || m_facts->type == ClipboardItemType::rtf;
    // A text that is shown no more must not be counted on.
    if (!isText)
        m_length.forget();
    switch (m_facts->type) {
    case ClipboardItemType::text:
    case ClipboardItemType::rtf: {
        const auto length = m_length.of(m_content);
        append(u"Length", length ? QStringLiteral("%1 chars").arg(*length) : QString(pending));
        return;
    }
    case ClipboardItemType::image:
        if (m_facts->width && m_facts->height)
            append(u"Dimensions", QStringLiteral("%1 × %2").arg(*m_facts->width).arg(*m_facts->height));
        if (m_facts->imageByteCount)
            append(u"Image Size", byteCount.string(*m_facts->imageByteCount));
        return;
    case ClipboardItemType::file:
        append(u"Path", m_content);
        if (m_facts->fileSize)
            append(u"File Size", byteCount.string(*m_facts->fileSize));
        return;
    case ClipboardItemType::url:
        if (const auto url = linkOf(m_facts->type, m_content); url && !url->host().isEmpty())
            append(u"Host", url->host());
        return;
    case ClipboardItemType::color:
        return;
    }
    Q_UNREACHABLE();
}

void InfoSection::append(const char16_t* label, const QString& value) {
    m_rows.push_back({.label = QString::fromUtf16(label), .value = value});
}

ApplicationDescription InfoSection::application(const QString& identifier) {
    if (const auto known = m_applications.find(identifier); known != m_applications.end())
        return known->second;
    // One that is missing is asked for again: it may be installed meanwhile.
    const auto found = m_surroundings.workspace.describe(identifier);
    return found ? m_applications.emplace(identifier, *found).first->second
                 : ApplicationDescription{.name = identifier, .icon = {}};
}

} // namespace kestrova
