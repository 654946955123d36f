#pragma once

#include <QString>

#include <functional>
#include <memory>

namespace kestrova {

class ClipboardItem;
class LinkPreviewCache;
class MainQueue;
class PictureDecoder;
class UserDefaults;
class Workspace;
struct InfoFormatters;

/// What the views of an item need of the world. All of it outlives them.
struct DetailSurroundings {
    MainQueue& mainQueue;
    PictureDecoder& decoder;
    Workspace& workspace;
    LinkPreviewCache& linkPreviews;
    const UserDefaults& defaults;
    const InfoFormatters& formatters;
    /// Puts a text that was made of the item on the pasteboard, as a copy of the item would be put there. It
    /// is set.
    std::function<void(const std::shared_ptr<ClipboardItem>& item, const QString& text)> onCopy;
};

} // namespace kestrova
