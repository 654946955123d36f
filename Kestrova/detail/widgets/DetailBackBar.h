#pragma once

#include "Kestrova/shelf/controls/ShelfTheme.h"

#include <QWidget>

#include <functional>

class QLabel;

namespace kestrova {

class SymbolButton;

/// The bar at the top of a detail screen: a way back, what the screen is, and at the far side what else there
/// is to do.
class DetailBackBar final : public QWidget {
public:
    /// `trailing` may be null; it becomes a part of the bar.
    DetailBackBar(const QString& title, QWidget* trailing, QWidget* parent);

    std::function<void()> onBack;

    void setTheme(const ShelfTheme& theme);

private:
    SymbolButton* m_back;
    QLabel* m_title;
};

} // namespace kestrova
