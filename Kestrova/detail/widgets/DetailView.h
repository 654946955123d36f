#pragma once

#include "Kestrova/detail/InfoSection.h"
#include "Kestrova/detail/widgets/DetailSurroundings.h"
#include "Kestrova/shelf/controls/ShelfTheme.h"
#include "KestrovaCore/ClipboardItemType.h"

#include <QScrollArea>

#include <map>
#include <memory>

namespace kestrova {

class ContentView;
class InfoSectionView;
class ThinScrollBar;

/// The look at one item: what it holds and, under it, what there is to tell of it. It scrolls where both have
/// no room.
class DetailView final : public QScrollArea {
public:
    DetailView(const DetailSurroundings& surroundings, QWidget* parent);

    /// To be called whenever something may have changed; what has not changed stays as it is. Null: nothing
    /// is shown and nothing of an item kept.
    void render(const std::shared_ptr<ClipboardItem>& item, const ShelfTheme& theme);
    /// Shows nothing any more if the item has been deleted.
    void forgetDeleted();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    /// What shows items of that kind.
    enum class Kind { text, image, file, url, color };

    static Kind kindOf(ClipboardItemType type);
    ContentView& contentView(Kind kind);
    void arrange();

    DetailSurroundings m_surroundings;
    InfoSection m_info;
    ThinScrollBar* m_scrollBar;
    QWidget* m_page;
    InfoSectionView* m_infoView;
    /// Each is made when it is first needed.
    std::map<Kind, ContentView*> m_contentViews;
    ContentView* m_content = nullptr;
    // What is out of sight must not keep an item that is deleted.
    std::weak_ptr<ClipboardItem> m_item;
    bool m_showsItem = false;
    ShelfTheme m_theme;
};

} // namespace kestrova
