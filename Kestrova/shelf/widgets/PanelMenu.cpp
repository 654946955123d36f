#include "Kestrova/shelf/widgets/PanelMenu.h"

#include "Kestrova/look/InterfaceFont.h"
#include "Kestrova/look/Symbol.h"

#include <QAction>
#include <QIconEngine>
#include <QKeyEvent>
#include <QPainter>
#include <QStyleOptionMenuItem>

#include <algorithm>

namespace kestrova {
namespace {

// Behind a highlighted line that cannot be taken back.
constexpr float tint = 0.14F;

/// In a title an ampersand would mark a letter.
QString literally(QString title) {
    return title.replace(u'&', QLatin1String("&&"));
}

QKeyCombination pressedKey(const QKeyEvent& event) {
    auto modifiers = event.modifiers() & ~(Qt::KeypadModifier | Qt::GroupSwitchModifier);
    if (modifiers == Qt::MetaModifier)
        modifiers = Qt::ControlModifier;
    return QKeyCombination(modifiers, static_cast<Qt::Key>(event.key()));
}

bool isReturn(QKeyCombination key) {
    return key == QKeyCombination(Qt::Key_Return) || key == QKeyCombination(Qt::Key_Enter);
}

/// A drawing as an icon that is sharp at every size.
class SymbolIcon final : public QIconEngine {
public:
    SymbolIcon(Symbol symbol, QColor color, QColor disabledColor)
        : m_symbol(std::move(symbol)), m_color(color), m_disabledColor(disabledColor) {}

    void paint(QPainter* painter, const QRect& frame, QIcon::Mode mode, QIcon::State) override {
        m_symbol.paint(*painter, frame, qMin(frame.width(), frame.height()),
                       mode == QIcon::Disabled ? m_disabledColor : m_color);
    }
    QIconEngine* clone() const override { return new SymbolIcon(*this); }

private:
    Symbol m_symbol;
    QColor m_color;
    QColor m_disabledColor;
};

} // namespace

class PanelMenu::Line final : public QAction {
public:
    Line(const Entry& entry, const QIcon& picture, QObject* parent)
        : QAction(picture, literally(entry.title), parent),
          shortcutShown(entry.shortcut),
          keys(entry.keys),
          isDestructive(entry.isDestructive) {
        setEnabled(entry.isEnabled);
        setIconVisibleInMenu(true);
        if (entry.action)
            connect(this, &QAction::triggered, entry.action);
    }

    const QString shortcutShown;
    const std::vector<QKeyCombination> keys;
    const bool isDestructive;
};

PanelMenu::PanelMenu(const ShelfTheme& theme, Ground ground, QWidget* parent)
    : QMenu(parent), m_theme(theme), m_ground(ground) {
    setAttribute(Qt::WA_DeleteOnClose);
    setAttribute(Qt::WA_TranslucentBackground, ground == Ground::translucent);
    // The ground draws its own edge.
    setWindowFlag(Qt::NoDropShadowWindowHint);
    setFont(interfaceFont(13));
    QPalette colors;
    colors.setColor(QPalette::Base, theme.card);
    // Stronger than the shelf's own edge: the menu lies on a ground that is nearly of its colour.
    colors.setColor(QPalette::Mid, theme.separator);
    colors.setColor(QPalette::Midlight, theme.separator);
    colors.setColor(QPalette::Text, theme.text);
    colors.setColor(QPalette::ButtonText, theme.text);
    colors.setColor(QPalette::PlaceholderText, theme.secondaryText);
    colors.setColor(QPalette::Highlight, theme.selection);
    setPalette(colors);
    setStyle(&m_style);
}

void PanelMenu::add(const Entry& entry) {
    addAction(new Line(entry, pictureOf(entry), this));
}

PanelMenu& PanelMenu::addSubmenu(const Entry& entry) {
    auto* const submenu = new PanelMenu(m_theme, m_ground, this);
    submenu->setAttribute(Qt::WA_DeleteOnClose, false);
    submenu->m_owner = this;
    submenu->setTitle(literally(entry.title));
    submenu->setIcon(pictureOf(entry));
    addMenu(submenu);
    return *submenu;
}

void PanelMenu::popUpForKeyboard(QPoint globalPosition) {
    popup(globalPosition);
    for (auto* const line : actions()) {
        if (line->isSeparator() || !line->isEnabled())
            continue;
        setActiveAction(line);
        return;
    }
}

PanelMenu::Line* PanelMenu::lineFor(QKeyCombination key) const {
    const auto all = actions();
    const auto found = std::ranges::find_if(all, [key](QAction* action) {
        const auto* const line = dynamic_cast<Line*>(action);
        return line && line->isEnabled() && std::ranges::find(line->keys, key) != line->keys.end();
    });
    return found == all.end() ? nullptr : static_cast<Line*>(*found);
}

void PanelMenu::keyPressEvent(QKeyEvent* event) {
    const auto key = pressedKey(*event);
    // In a submenu plain keys are those of its own lines.
    const bool isForOwner = m_owner && key.keyboardModifiers() != Qt::NoModifier;
    auto* const line = isForOwner ? m_owner->lineFor(key) : lineFor(key);
    if (!line || (isReturn(key) && activeAction())) {
        QMenu::keyPressEvent(event);
        return;
    }
    if (event->isAutoRepeat())
        return;
    if (m_owner)
        m_owner->close();
    close();
    line->trigger();
}

void PanelMenu::initStyleOption(QStyleOptionMenuItem* option, const QAction* action) const {
    QMenu::initStyleOption(option, action);
    const auto* const line = dynamic_cast<const Line*>(action);
    if (!line)
        return;
    if (!line->shortcutShown.isEmpty())
        option->text += u'\t' + line->shortcutShown;
    if (line->isDestructive) {
        auto ground = m_theme.destructive;
        ground.setAlphaF(tint);
        option->palette.setColor(QPalette::Text, m_theme.destructive);
        option->palette.setColor(QPalette::Highlight, ground);
    }
}

QIcon PanelMenu::pictureOf(const Entry& entry) const {
    if (entry.symbol.isEmpty())
        return entry.icon;
    return QIcon(new SymbolIcon(Symbol(entry.symbol),
                                entry.isDestructive ? m_theme.destructive : m_theme.symbol,
                                m_theme.inactiveSymbol));
}

} // namespace kestrova
