#pragma once

#include <QSize>
#include <QString>

namespace kestrova::bench {

/// What a store is filled with.
struct SampleHistory {
    int texts = 0;
    int pictures = 0;
    QSize pictureSize{1920, 1080};
};

/// How many pictures differ; a history of more repeats them, which makes no difference to a store.
inline constexpr int distinctPictures = 20;

struct FilledStore {
    QString file;
    /// Of all contents in UTF-8, and of all pictures as PNG.
    qint64 textBytes = 0;
    qint64 pictureBytes = 0;
};

/// Makes a store in `directory` as the program would and closes it, its log carried over. Pictures are older
/// than texts. Throws std::runtime_error if that fails.
FilledStore fillStore(const QString& directory, const SampleHistory& history);
/// The same of a store that holds only this text.
FilledStore fillStore(const QString& directory, const QString& text);

} // namespace kestrova::bench
