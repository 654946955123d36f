#include "Kestrova/detail/text/SpacedTextLayout.h"

#include "Kestrova/detail/text/TextLineHeight.h"

#include <QPlainTextEdit>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>

#include <algorithm>
#include <cmath>
#include <utility>

namespace kestrova {

void SpacedTextLayout::install(QPlainTextEdit& edit) {
    auto* const document = new QTextDocument(&edit);
    document->setDefaultFont(edit.font());
    document->setDocumentLayout(
        new SpacedTextLayout(*document, [&edit] { return edit.viewport()->width(); }));
    edit.setDocument(document);
}

SpacedTextLayout::SpacedTextLayout(QTextDocument& document, std::function<int()> width)
    : QPlainTextDocumentLayout(&document), m_width(std::move(width)) {}

QRectF SpacedTextLayout::blockBoundingRect(const QTextBlock& block) const {
    // A block that is asked for is laid out, by the toolkit or, before it comes to that, here.
    if (block.isValid() && block.isVisible() && block.layout()->lineCount() == 0) {
        QTextBlock counted = block;
        counted.setLineCount(lay(block));
    }
    return QPlainTextDocumentLayout::blockBoundingRect(block);
}

/// The toolkit lays out anew by itself if only one block has changed, with its own distances.
void SpacedTextLayout::documentChanged(int from, int charsRemoved, int charsAdded) {
    QPlainTextDocumentLayout::documentChanged(from, charsRemoved, charsAdded);
    const auto last = document()->findBlock(std::max(from, from + charsAdded - 1));
    for (auto block = document()->findBlock(from); block.isValid(); block = block.next()) {
        if (block.layout()->lineCount() > 0)
            block.setLineCount(lay(block));
        if (block == last)
            break;
    }
}

int SpacedTextLayout::lay(const QTextBlock& block) const {
    auto& layout = *block.layout();
    layout.setTextOption(document()->defaultTextOption());
    const double margin = document()->documentMargin();
    const int slot = textLineHeight(document()->defaultFont());
    double bottom = 0;
    layout.beginLayout();
    for (auto line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLeadingIncluded(true);
        line.setLineWidth(std::max(1.0, m_width() - 2 * margin));
        bottom += std::max<double>(slot, std::ceil(line.height()));
        // What a block's height is told by is where its last line ends.
        line.setPosition(QPointF(margin, bottom - line.height()));
    }
    layout.endLayout();
    return layout.lineCount();
}

} // namespace kestrova
