#include "Kestrova/shelf/KeyHint.h"

#include "Kestrova/shelf/ShelfPanelView.h"
#include "KestrovaCore/ClipboardItem.h"

namespace kestrova {
namespace {

KeyHint command(const QString& letter, const QString& label) {
    return {.symbols = {QStringLiteral("command")}, .letter = letter, .label = label};
}

} // namespace

std::vector<KeyHint> keyHints(const ClipboardItem& item, ShelfViewMode mode) {
    std::vector<KeyHint> hints{
        command(QStringLiteral("C"), QStringLiteral("복사")),
        command(QStringLiteral("P"), item.pinned() ? QStringLiteral("핀 해제") : QStringLiteral("Pin"))};
    if (ShelfPanelView::isEditable(item))
        hints.push_back(command(QStringLiteral("E"), QStringLiteral("편집")));
    else if (item.type() == ClipboardItemType::image && item.hasImageData())
        hints.push_back(command(QStringLiteral("E"), QStringLiteral("이미지 편집")));
    hints.push_back(command(QStringLiteral("K"), QStringLiteral("액션")));
    // On a Korean keyboard the key left of 1 gives the won sign.
    hints.push_back(command(QStringLiteral("₩"), mode == ShelfViewMode::list ? QStringLiteral("그리드")
                                                                             : QStringLiteral("리스트")));
    hints.push_back(
        {.symbols = {QStringLiteral("delete.left")}, .letter = {}, .label = QStringLiteral("삭제")});
    return hints;
}

} // namespace kestrova
