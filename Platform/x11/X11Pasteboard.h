#pragma once

#include "Platform/MainQueue.h"
#include "Platform/Pasteboard.h"
#include "Platform/x11/SelectionReader.h"
#include "Platform/x11/SelectionSnapshot.h"
#include "Platform/x11/X11Windows.h"

#include <QSet>
#include <QString>
#include <QThreadPool>

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>

namespace kestrova {

class DesktopEntries;

/// The CLIPBOARD selection. Other programs' entries are read by a SelectionReader, own ones are served by the
/// toolkit.
///
/// The bytes of an entry are let go once its poll is finished, so that a large copy does not occupy memory
/// until the next one; its readers then find its types and URLs, but no picture and no text.
class X11Pasteboard final : public Pasteboard {
public:
    /// `queue` and `entries` outlive the object. Files with one of `pictureExtensions` (lower case) are
    /// decoded with their entry. Where the toolkit does not run on X11, only what this program writes is
    /// seen.
    X11Pasteboard(MainQueue& queue, DesktopEntries& entries, QString bundleIdentifier,
                  QSet<QString> pictureExtensions);
    /// Waits for a picture that is being decoded, not for those that wait for their turn.
    ~X11Pasteboard() override;

    std::int64_t changeCount() const override { return m_changeCount; }
    std::optional<QStringList> types() const override;
    QList<QUrl> readURLs() const override;
    std::optional<PasteboardImage> readImage() const override;
    std::optional<QString> string() const override;
    std::optional<PasteboardImage> pictureOfFile(const QUrl& url) const override;
    std::optional<RunningApplication> frontmostApplication() const override;
    void pollFinished() override;
    /// Counts at once. If another program took the clipboard just now and the toolkit does not know yet, the
    /// entry is there some milliseconds later; if the server keeps refusing, that is logged.
    void write(const PasteboardEntry& entry) override;
    /// Takes PRIMARY over with this program's last write too, for programs that paste from there by key.
    /// False if there is no such write or the server refuses.
    bool ownPrimarySelectionToo();

private:
    void decode(FetchedSelection fetched);
    void arrive(SelectionSnapshot snapshot);
    void advance();
    void pollWhatWaits();
    bool isOwnWriteKept(const SelectionSnapshot& snapshot) const;
    void takeOver(const PasteboardEntry& entry, int attempts);

    MainQueue& m_queue;
    DesktopEntries& m_entries;
    const QString m_bundleIdentifier;
    const QSet<QString> m_pictureExtensions;
    std::optional<X11Windows> m_windows;

    std::int64_t m_changeCount = 0;
    std::int64_t m_pollsFinished = 0;
    /// The entry that the readers speak of, if another program's.
    SelectionSnapshot m_head;
    bool m_headIsPolled = true;
    std::deque<SelectionSnapshot> m_waiting;
    /// This program's last write, for as long as nobody has changed it.
    std::optional<PasteboardEntry> m_ownEntry;
    bool m_pollingWhatWaits = false;
    ScheduledBlock m_nextAttempt;

    /// Blocks that were posted for this object find out by it that the object has gone.
    const std::shared_ptr<X11Pasteboard*> m_self = std::make_shared<X11Pasteboard*>(this);
    /// One thread, so that entries keep their order.
    QThreadPool m_decoding;
    std::optional<SelectionReader> m_reader;
};

} // namespace kestrova
