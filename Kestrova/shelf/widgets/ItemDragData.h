#pragma once

#include "Kestrova/shelf/ItemDragPayload.h"

#include <QMimeData>

namespace kestrova {

/// A dragged item as drop destinations see it: its payload first, then its text. Either is made when somebody
/// asks for it, as a long text would hold up the start of the drag.
class ItemDragData : public QMimeData {
public:
    explicit ItemDragData(ItemDragPayload payload) : m_payload(std::move(payload)) {}

    const ItemDragPayload& payload() const { return m_payload; }

    bool hasFormat(const QString& format) const override { return formats().contains(format); }
    QStringList formats() const override;

protected:
    QVariant retrieveData(const QString& format, QMetaType type) const override;

private:
    ItemDragPayload m_payload;
};

} // namespace kestrova
