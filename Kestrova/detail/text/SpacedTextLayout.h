#pragma once

#include <QPlainTextDocumentLayout>

#include <functional>

class QPlainTextEdit;

namespace kestrova {

/// Sets the lines of the toolkit's control for plain text as far below each other as `textLineHeight` asks
/// for.
class SpacedTextLayout final : public QPlainTextDocumentLayout {
public:
    /// Gives the control a new, empty document with such a layout.
    static void install(QPlainTextEdit& edit);

    QRectF blockBoundingRect(const QTextBlock& block) const override;

protected:
    void documentChanged(int from, int charsRemoved, int charsAdded) override;

private:
    SpacedTextLayout(QTextDocument& document, std::function<int()> width);

    /// Answers how many lines there are.
    int lay(const QTextBlock& block) const;

    std::function<int()> m_width;
};

} // namespace kestrova
