#pragma once

#include "Kestrova/shelf/controls/ShelfTheme.h"

#include <QWidget>

#include <functional>
#include <memory>

namespace kestrova {

class ClipboardItem;

/// Shows what an item of one kind holds. It is laid out by the view that it lies in.
class ContentView : public QWidget {
public:
    using QWidget::QWidget;

    /// The item may be the one of before, with what has changed.
    virtual void render(const std::shared_ptr<ClipboardItem>& item, const ShelfTheme& theme) = 0;
    /// Keeps nothing of an item any more.
    virtual void forget() = 0;
    /// The least height in which a content can be read, in points.
    virtual int leastHeight(int width) const = 0;

    /// The least height has changed by itself.
    std::function<void()> onHeightChange;

    /// The room around a content, in points.
    static constexpr int padding = 16;
};

} // namespace kestrova
