#pragma once

#include "Kestrova/shelf/CollectionEditSheet.h"
#include "Kestrova/shelf/controls/ShelfTheme.h"

#include <QWidget>

#include <functional>
#include <optional>
#include <vector>

class QLabel;

namespace kestrova {

class CollectionPreview;
class NameField;
class SheetButton;
class SwatchRow;

/// The controls of the sheet on their card. The tabulator walks within it.
class CollectionSheetCard final : public QWidget {
public:
    explicit CollectionSheetCard(QWidget* parent);

    void render(const CollectionEditSheet& sheet, const ShelfTheme& theme);
    NameField& nameField() { return *m_name; }
    SwatchRow& swatches() { return *m_swatches; }

    std::function<void()> onSubmit;
    std::function<void()> onCancel;

    static constexpr int fixedWidth = 360;

protected:
    void paintEvent(QPaintEvent* event) override;
    bool focusNextPrevChild(bool next) override;

private:
    std::vector<QWidget*> stops() const;

    QLabel* m_title;
    CollectionPreview* m_preview;
    QLabel* m_nameLabel;
    NameField* m_name;
    QLabel* m_colorLabel;
    SwatchRow* m_swatches;
    SheetButton* m_cancel;
    SheetButton* m_submit;
    ShelfTheme m_theme;
};

} // namespace kestrova
