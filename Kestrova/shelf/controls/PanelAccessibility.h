#pragma once

#include <QAccessible>

#include <functional>

class QWidget;

namespace kestrova {

/// Lets programs for people who cannot see or point find what the shelf's own controls are. May be called
/// again. Nothing is made before such a program asks.
void installPanelAccessibility();

/// Tells such programs what has happened; nothing while there are none.
using TellReaders = std::function<void(QAccessibleEvent*)>;

/// Names the widget for such programs. They are told of a name that is new, and of no other: what a widget
/// shows is rendered far more often than it changes. Answers whether it is new.
bool setSpokenName(QWidget& widget, const QString& name);
/// The same for what is said beside the name.
bool setSpokenDescription(QWidget& widget, const QString& description);

/// What the widget is for such programs, where the toolkit cannot tell by itself.
void setAccessibleRole(QWidget& widget, QAccessible::Role role);

} // namespace kestrova
