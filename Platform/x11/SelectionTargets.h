#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>
#include <vector>

namespace kestrova {

/// The forms of an entry that are read.
enum class SelectionForm { Files, Image, Text };

/// One form and the target that gives it.
struct SelectionRequest {
    SelectionForm form = SelectionForm::Text;
    QByteArray target;

    bool operator==(const SelectionRequest&) const = default;
};

/// What to do about the targets that an owner offers.
struct SelectionPlan {
    /// The kinds in the program's vocabulary, each once, in the owner's order.
    QStringList types;
    /// In the order in which they are to be requested. None if the owner marks the entry as secret or as none
    /// of the person's.
    std::vector<SelectionRequest> requests;

    bool operator==(const SelectionPlan&) const = default;
};

/// The kind that a target stands for; the target's own name if it has no other.
QString pasteboardType(const QByteArray& target);

/// Every target whose name means something here. Whoever looks at part of an offer looks for these in all of
/// it.
QList<QByteArray> knownTargets();

/// `canDecode` tells which MIME types of pictures are worth asking for.
SelectionPlan planFor(const QList<QByteArray>& targets,
                      const std::function<bool(const QByteArray&)>& canDecode);

} // namespace kestrova
