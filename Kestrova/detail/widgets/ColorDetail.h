#pragma once

#include "Kestrova/detail/widgets/ContentView.h"

#include <QColor>

#include <array>
#include <functional>
#include <optional>

namespace kestrova {

class ColorFormRow;

/// A colour: a swatch of it, and its forms as text, each of which can be copied. Of a text that names no
/// colour the text alone is shown.
class ColorDetail final : public ContentView {
public:
    using Copy = std::function<void(const std::shared_ptr<ClipboardItem>& item, const QString& text)>;

    ColorDetail(Copy onCopy, QWidget* parent);

    void render(const std::shared_ptr<ClipboardItem>& item, const ShelfTheme& theme) override;
    void forget() override;
    int leastHeight(int width) const override;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QRect swatch() const;
    int rowsHeight() const;
    void arrange();
    void copy(const QString& text);

    Copy m_onCopy;
    // What is out of sight must not keep an item that is deleted.
    std::weak_ptr<ClipboardItem> m_item;
    ShelfTheme m_theme;
    QString m_content;
    std::optional<QColor> m_color;
    /// As hexadecimal digits, as red, green and blue, and as hue, saturation and lightness.
    std::array<ColorFormRow*, 3> m_rows;
};

} // namespace kestrova
