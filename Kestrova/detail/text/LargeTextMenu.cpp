#include "Kestrova/detail/text/LargeTextMenu.h"

#include "Kestrova/detail/text/LargeTextEdit.h"
#include "Kestrova/detail/text/TextKeys.h"

#include <QCoreApplication>
#include <QMenu>

#include <array>

namespace kestrova {
namespace {

struct Entry {
    TextCommand command;
    /// The source that the toolkit translates.
    const char* label;
    QKeySequence::StandardKey key;
    /// It comes after a line.
    bool opensGroup;
};

constexpr std::array editing{Entry{TextCommand::undo, "&Undo", QKeySequence::Undo, false},
                             Entry{TextCommand::redo, "&Redo", QKeySequence::Redo, false},
                             Entry{TextCommand::cut, "Cu&t", QKeySequence::Cut, true},
                             Entry{TextCommand::copy, "&Copy", QKeySequence::Copy, false},
                             Entry{TextCommand::paste, "&Paste", QKeySequence::Paste, false},
                             Entry{TextCommand::selectAll, "Select All", QKeySequence::SelectAll, true}};
constexpr std::array reading{Entry{TextCommand::copy, "&Copy", QKeySequence::Copy, false},
                             Entry{TextCommand::selectAll, "Select All", QKeySequence::SelectAll, true}};

} // namespace

QMenu* makeLargeTextMenu(LargeTextEdit& edit) {
    auto* const menu = new QMenu(&edit);
    // The theme's clear grounds are the text's, not the menu's.
    menu->setPalette(QPalette());
    const auto add = [&](const Entry& entry) {
        if (entry.opensGroup)
            menu->addSeparator();
        const auto label = QCoreApplication::translate("QWidgetTextControl", entry.label) + u'\t' +
                           QKeySequence(entry.key).toString(QKeySequence::NativeText);
        auto* const action = menu->addAction(label);
        action->setEnabled(edit.canPerform(entry.command));
        QObject::connect(action, &QAction::triggered, &edit,
                         [&edit, command = entry.command] { edit.perform(command); });
    };
    if (edit.isReadOnly())
        for (const auto& entry : reading)
            add(entry);
    else
        for (const auto& entry : editing)
            add(entry);
    return menu;
}

} // namespace kestrova
