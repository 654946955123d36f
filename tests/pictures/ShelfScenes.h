#pragma once

#include "Kestrova/shelf/ShelfPanelView.h"
#include "Kestrova/shelf/widgets/ShelfPanelWidget.h"

#include <functional>
#include <vector>

namespace kestrova {

/// A state of the shelf worth a picture.
struct ShelfScene {
    enum class History { empty, everyKind, extremes, many, details };

    QString name;
    std::function<void(ShelfPanelView&)> enter = [](ShelfPanelView&) {};
    History history = History::everyKind;
    /// What a person does on the window then; may be empty.
    std::function<void(ShelfPanelWidget&)> act = {};
    /// Of the desktop's font, against its ordinary size.
    double fontScale = 1;
};

/// Each of them is entered from a fresh view.
std::vector<ShelfScene> shelfScenes();

} // namespace kestrova
