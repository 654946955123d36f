#pragma once

#include "Kestrova/shelf/CollectionEditSheet.h"
#include "Kestrova/shelf/controls/ShelfTheme.h"

#include <QWidget>

namespace kestrova {

/// How the row of the collection is going to look.
class CollectionPreview final : public QWidget {
public:
    explicit CollectionPreview(QWidget* parent);

    void render(const CollectionEditSheet& sheet, const ShelfTheme& theme);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_name;
    QColor m_color;
    ShelfTheme m_theme;
};

} // namespace kestrova
