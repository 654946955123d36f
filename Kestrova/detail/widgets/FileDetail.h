#pragma once

#include "Kestrova/detail/widgets/ContentView.h"

#include <QIcon>

#include <cstdint>
#include <optional>

namespace kestrova {

class Workspace;
struct InfoFormatters;

/// A file: its icon, its name and how large it is.
class FileDetail final : public ContentView {
public:
    /// Both outlive it.
    FileDetail(Workspace& workspace, const InfoFormatters& formatters, QWidget* parent);
    ~FileDetail() override;

    void render(const std::shared_ptr<ClipboardItem>& item, const ShelfTheme& theme) override;
    void forget() override;
    int leastHeight(int width) const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    struct Texts;

    const Texts& texts(int width) const;
    void requestIcon();

    Workspace& m_workspace;
    const InfoFormatters& m_formatters;
    ShelfTheme m_theme;
    QString m_path;
    std::optional<std::int64_t> m_size;
    /// Laid out for a width; null: to be laid out anew.
    mutable std::unique_ptr<Texts> m_texts;
    mutable int m_textsWidth = 0;
    /// Absent as long as it is waited for; null if the desktop has none.
    std::optional<QIcon> m_icon;
    /// Goes with the icon that is waited for.
    std::shared_ptr<bool> m_wish;
};

} // namespace kestrova
