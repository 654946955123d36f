#pragma once

#include "KestrovaCore/ModelContainer.h"
#include "KestrovaCore/Result.h"
#include "KestrovaCore/StoreError.h"
#include "KestrovaCore/Timestamp.h"

#include <QString>

#include <functional>
#include <memory>
#include <mutex>
#include <optional>

namespace kestrova {

/// The one store of the program. A file that is of no use is moved aside and a new store starts, so that a
/// damaged history never keeps the program from starting. A file that is only out of reach (in use, no
/// permission, disk full) is left alone.
class KovaStore {
public:
    /// `directory` is made on first use, for this user alone. `now` names the backup.
    explicit KovaStore(QString directory, std::function<Timestamp()> now = currentTimestamp);

    /// The store, opened at the first call; a failure, too, is that of the first call. Any thread may be the
    /// first. Without a store the program has no use: a failure is meant to end it.
    Result<ModelContainer*, StoreError> container();

    QString filePath() const;

private:
    Result<std::unique_ptr<ModelContainer>, StoreError> open() const;
    void moveAside() const;

    QString m_directory;
    std::function<Timestamp()> m_now;
    std::once_flag m_once;
    std::optional<Result<std::unique_ptr<ModelContainer>, StoreError>> m_container;
};

} // namespace kestrova
