#pragma once

#include "Kestrova/detail/widgets/ContentView.h"

namespace kestrova {

class FastTextView;

/// A text, to be read and marked.
class TextDetail final : public ContentView {
public:
    explicit TextDetail(QWidget* parent);

    void render(const std::shared_ptr<ClipboardItem>& item, const ShelfTheme& theme) override;
    void forget() override;
    int leastHeight(int width) const override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    FastTextView* m_text;
    ShelfTheme m_theme;
};

} // namespace kestrova
