#pragma once

#include "Kestrova/detail/widgets/ContentView.h"
#include "Kestrova/services/LinkPreviewCache.h"

#include <QUrl>

#include <optional>

namespace kestrova {

class MainQueue;
class UserDefaults;

/// A link, with what is known of its page. As soon as it is seen the page is looked up, if the person wants
/// that.
class URLDetail final : public ContentView {
public:
    struct Surroundings {
        MainQueue& mainQueue;
        LinkPreviewCache& cache;
        /// Holds `autoLinkPreview`.
        const UserDefaults& defaults;
    };

    /// All of the surroundings outlive it.
    URLDetail(const Surroundings& surroundings, QWidget* parent);
    ~URLDetail() override;

    void render(const std::shared_ptr<ClipboardItem>& item, const ShelfTheme& theme) override;
    void forget() override;
    int leastHeight(int width) const override;

protected:
    void showEvent(QShowEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    struct Texts;
    class LookUp;

    const Texts& texts(int width) const;
    void lookUp();
    void showPreview();

    Surroundings m_surroundings;
    ShelfTheme m_theme;
    QString m_address;
    std::optional<QUrl> m_url;
    std::optional<LinkPreviewCache::Preview> m_preview;
    /// Laid out for a width; null: to be laid out anew.
    mutable std::unique_ptr<Texts> m_texts;
    mutable int m_textsWidth = 0;
    /// The picture as it was painted last.
    QImage m_fitted;
    /// Of the page that was looked up last; who waits for the answer holds it weakly.
    std::shared_ptr<LookUp> m_lookUp;
};

} // namespace kestrova
