#include "Kestrova/detail/widgets/TextDetail.h"

#include "Kestrova/detail/widgets/FastTextView.h"
#include "Kestrova/look/InterfaceFont.h"
#include "KestrovaCore/ClipboardItem.h"

namespace kestrova {
namespace {

constexpr double leastTextHeight = 120;
// The scroll bar stands beside the text.
constexpr int trailingPadding = 6;

} // namespace

TextDetail::TextDetail(QWidget* parent) : ContentView(parent), m_text(new FastTextView(this)) {}

void TextDetail::render(const std::shared_ptr<ClipboardItem>& item, const ShelfTheme& theme) {
    m_theme = theme;
    m_text->render(item->content(), theme);
}

void TextDetail::forget() {
    m_text->render({}, m_theme);
}

int TextDetail::leastHeight(int) const {
    return interfaceLength(leastTextHeight);
}

void TextDetail::resizeEvent(QResizeEvent*) {
    m_text->setGeometry(rect().adjusted(padding, padding, -trailingPadding, -padding));
}

} // namespace kestrova
