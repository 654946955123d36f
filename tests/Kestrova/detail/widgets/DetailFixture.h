#pragma once

#include "Kestrova/detail/InfoFormatters.h"
#include "Kestrova/detail/widgets/DetailSurroundings.h"
#include "Kestrova/shelf/controls/PictureDecoder.h"
#include "Kestrova/shelf/controls/ShelfTheme.h"
#include "KestrovaCore/ClipboardItem.h"
#include "Platform/x11/QtMainQueue.h"
#include "tests/support/FakeLinkPreviews.h"
#include "tests/support/InMemoryUserDefaults.h"
#include "tests/support/Ports.h"
#include "tests/support/StoreFixture.h"

#include <QBuffer>
#include <QImage>
#include <QStringList>
#include <QTest>
#include <QWidget>

#include <gmock/gmock.h>

#include <chrono>
#include <memory>
#include <vector>

namespace kestrova {

/// What the views of an item need, and items to show.
class DetailFixture : public testing::Test {
protected:
    using Type = ClipboardItemType;

    static constexpr std::chrono::seconds deadline{10};

    static std::shared_ptr<ClipboardItem> item(Type type, const QString& content,
                                               const std::optional<QString>& sourceApp = {}) {
        return std::make_shared<ClipboardItem>(content, type, sourceApp, moment(0), false,
                                               ItemSource::clipboard);
    }
    /// Keeps it for the whole test, as the lists keep what is shown.
    std::shared_ptr<ClipboardItem> hold(const std::shared_ptr<ClipboardItem>& kept) {
        return m_held.emplace_back(kept);
    }
    static QImage filled(QSize size, const QColor& color) {
        QImage image(size, QImage::Format_RGB32);
        image.fill(color);
        return image;
    }
    static std::shared_ptr<ClipboardItem> picture(const QByteArray& png) {
        auto made = item(Type::image, QString());
        made->setImageData(png);
        return made;
    }
    static QByteArray png(QSize size, const QColor& color) {
        QBuffer buffer;
        EXPECT_TRUE(filled(size, color).save(&buffer, "PNG"));
        return buffer.data();
    }

    template<typename Widget>
    static std::vector<Widget*> visibleParts(const QWidget& parent) {
        std::vector<Widget*> found;
        for (auto* const child : parent.findChildren<QWidget*>())
            if (auto* const part = dynamic_cast<Widget*>(child); part && part->isVisible())
                found.push_back(part);
        return found;
    }
    static QStringList spokenNames(const auto& widgets) {
        QStringList names;
        for (const auto* const widget : widgets)
            names.append(widget->accessibleName());
        return names;
    }
    static QImage seen(QWidget& widget) { return widget.grab().toImage(); }
    /// The smallest rectangle around all that has this colour.
    static QRect areaOf(const QColor& color, const QImage& shown) {
        QRect area;
        for (int y = 0; y < shown.height(); ++y)
            for (int x = 0; x < shown.width(); ++x)
                if (shown.pixelColor(x, y) == color)
                    area |= QRect(x, y, 1, 1);
        return area;
    }
    static QColor seenAt(QWidget& widget, QPoint place) { return seen(widget).pixelColor(place); }

    template<typename Condition>
    static bool waitFor(Condition condition) {
        return QTest::qWaitFor(condition, static_cast<int>(std::chrono::milliseconds(deadline).count()));
    }
    /// All that waits for the next turn has run.
    void turn() {
        bool hasTurned = false;
        queue.post([&] { hasTurned = true; });
        EXPECT_TRUE(waitFor([&] { return hasTurned; }));
    }

    QtMainQueue queue;
    PictureDecoder decoder{queue};
    FakeWorkspace workspace;
    FakeLinkPreviews previews{queue};
    InMemoryUserDefaults defaults;
    InfoFormatters formatters{.byteCount = ByteCountFormatter(QLocale::c()),
                              .date = DateFormatter(QLocale::c())};
    QStringList copied;
    DetailSurroundings surroundings{
        .mainQueue = queue,
        .decoder = decoder,
        .workspace = workspace,
        .linkPreviews = previews,
        .defaults = defaults,
        .formatters = formatters,
        .onCopy = [this](const auto&, const QString& text) { copied.append(text); }};
    const ShelfTheme dark = ShelfTheme::of(ShelfTheme::Scheme::dark);
    const ShelfTheme light = ShelfTheme::of(ShelfTheme::Scheme::light);

private:
    std::vector<std::shared_ptr<ClipboardItem>> m_held;
};

} // namespace kestrova
