#pragma once

#include "Kestrova/shelf/controls/ShelfTheme.h"

#include <QVariantAnimation>
#include <QWidget>

namespace kestrova {

/// Turns while something takes an unknown time, and only as long as it can be seen.
class ProgressIndicator final : public QWidget {
public:
    explicit ProgressIndicator(QWidget* parent);

    void setTheme(const ShelfTheme& theme);
    bool isTurning() const { return m_turn.state() == QAbstractAnimation::Running; }

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    ShelfTheme m_theme;
    QVariantAnimation m_turn;
};

} // namespace kestrova
