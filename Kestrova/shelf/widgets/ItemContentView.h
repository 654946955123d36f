#pragma once

#include "Kestrova/shelf/controls/ShelfTheme.h"
#include "KestrovaCore/ClipboardItemType.h"
#include "KestrovaCore/PersistentIdentifier.h"
#include "Platform/MainQueue.h"

#include <QImage>
#include <QWidget>

#include <memory>
#include <optional>

namespace kestrova {

class ClipboardItem;
class PictureDecoder;
class PlainTextView;

/// Shows what an item holds: its text, its picture or its colour. Pictures come a moment later, so that the
/// selection can run past them.
class ItemContentView final : public QWidget {
public:
    /// Both outlive it.
    ItemContentView(MainQueue& mainQueue, PictureDecoder& decoder, QWidget* parent);

    /// Null: nothing is shown but a word to the person.
    void render(const std::shared_ptr<ClipboardItem>& item, const ShelfTheme& theme);
    /// Shows nothing any more if the item has been deleted.
    void forgetDeleted();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    bool showsPicture() const;
    void requestPicture();
    void readPicture();
    void paintEmptyState(QPainter& painter);
    void paintColor(QPainter& painter);
    void paintPicture(QPainter& painter);

    MainQueue& m_mainQueue;
    PictureDecoder& m_decoder;
    PlainTextView* m_text;
    bool m_showsItem = false;
    // What is out of sight must not keep an item that is deleted.
    std::weak_ptr<ClipboardItem> m_item;
    QString m_content;
    std::optional<ClipboardItemType> m_type;
    std::optional<std::int64_t> m_byteCount;
    ShelfTheme m_theme;
    QImage m_picture;
    ScheduledBlock m_read;
    std::uint64_t m_wish = 0;
};

} // namespace kestrova
