#pragma once

#include "Kestrova/shelf/controls/ShelfTheme.h"

#include <QWidget>

namespace kestrova {

class SearchField;
class ShelfPanelView;
class SymbolButton;

/// The search, between the buttons that show and hide parts of the shelf.
class TopBar final : public QWidget {
public:
    /// `view` outlives it.
    TopBar(ShelfPanelView& view, QWidget* parent);

    SearchField& searchField() { return *m_searchField; }
    void render(const ShelfTheme& theme);

    static int height();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    SymbolButton* makeButton(const QString& name, const QString& help);

    ShelfPanelView& m_view;
    SymbolButton* m_sidebarButton;
    SearchField* m_searchField;
    SymbolButton* m_modeButton;
    SymbolButton* m_previewButton;
};

} // namespace kestrova
