#include "Kestrova/detail/widgets/FastTextView.h"

#include "Kestrova/detail/text/LargeTextEdit.h"
#include "Kestrova/detail/text/LargeTextLimit.h"
#include "Kestrova/detail/widgets/PlainTextView.h"

#include <QVBoxLayout>

#include <utility>

namespace kestrova {

FastTextView::FastTextView(QWidget* parent) : QWidget(parent), m_plain(new PlainTextView(this)) {
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_plain);
}

void FastTextView::render(const QString& text, const ShelfTheme& theme) {
    if (std::exchange(m_theme, theme) != theme) {
        m_plain->setTheme(theme);
        if (m_large)
            m_large->setTheme(theme);
    }
    const bool isSame = isShown(text);
    m_text = text;
    if (!isSame)
        showText(text);
}

/// A view is rendered far more often than its text changes, and the text may be long: mostly one need not
/// look into it.
bool FastTextView::isShown(const QString& text) const {
    const bool isShared = text.constData() == m_text.constData() && text.size() == m_text.size();
    return isShared || text == m_text;
}

void FastTextView::showText(const QString& text) {
    const bool isLarge = needsLargeTextControl(text);
    if (isLarge && !m_large)
        makeLarge();
    // What the other one showed is not kept in memory.
    m_plain->show(isLarge ? QString() : text);
    if (m_large)
        m_large->setText(isLarge ? text : QString());
    showLarge(isLarge);
}

void FastTextView::showLarge(bool isLarge) {
    QWidget* const shown = isLarge ? static_cast<QWidget*>(m_large) : m_plain;
    const bool hadKeyboard = focusProxy() && focusProxy()->hasFocus();
    if (m_large)
        m_large->setVisible(isLarge);
    m_plain->setVisible(!isLarge);
    setFocusProxy(shown);
    if (hadKeyboard)
        shown->setFocus(Qt::OtherFocusReason);
}

void FastTextView::makeLarge() {
    m_large = new LargeTextEdit(this);
    m_large->setReadOnly(true);
    m_large->setAccessibleName(m_plain->accessibleName());
    m_large->setFocusPolicy(m_plain->focusPolicy());
    m_large->setTheme(m_theme);
    layout()->addWidget(m_large);
}

void FastTextView::setTakesKeyboard(bool takes) {
    const auto policy = takes ? Qt::StrongFocus : Qt::NoFocus;
    m_plain->setFocusPolicy(policy);
    if (m_large)
        m_large->setFocusPolicy(policy);
}

} // namespace kestrova
