#pragma once

#include "Kestrova/shelf/widgets/ShelfContent.h"
#include "tests/Kestrova/shelf/widgets/WidgetFixture.h"

#include <QApplication>
#include <QDropEvent>
#include <QMimeData>

namespace kestrova {

/// A shelf over which something is dragged.
class DropFixture : public WidgetFixture {
protected:
    void SetUp() override {
        show();
        overLists = list().mapTo(&content(), list().rect().center());
    }
    ShelfContent& content() { return part<ShelfContent>(); }

    bool enter(const QMimeData& data, Qt::DropActions actions = Qt::CopyAction | Qt::MoveAction) {
        QDragEnterEvent event(overLists, actions, &data, Qt::LeftButton, {});
        QApplication::sendEvent(&content(), &event);
        return event.isAccepted();
    }
    bool move(const QMimeData& data, QPoint place,
              Qt::DropActions actions = Qt::CopyAction | Qt::MoveAction) {
        QDragMoveEvent event(place, actions, &data, Qt::LeftButton, {});
        QApplication::sendEvent(&content(), &event);
        return event.isAccepted();
    }
    /// Answers what the source is told to do with what it offered.
    Qt::DropAction drop(const QMimeData& data, QPoint place,
                        Qt::DropActions actions = Qt::CopyAction | Qt::MoveAction) {
        enter(data, actions);
        QDropEvent event(place, actions, &data, Qt::LeftButton, {});
        QApplication::sendEvent(&content(), &event);
        return event.isAccepted() ? event.dropAction() : Qt::IgnoreAction;
    }
    static std::unique_ptr<QMimeData> addresses(const QList<QUrl>& urls) {
        auto data = std::make_unique<QMimeData>();
        data->setUrls(urls);
        return data;
    }
    QStringList contents() const {
        QStringList all;
        for (const auto& item : view.items())
            all.append(item->content());
        return all;
    }

    const QUrl link{QStringLiteral("https://example.org/page")};
    QPoint overLists;
};

} // namespace kestrova
