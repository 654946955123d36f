#include "Platform/x11/X11Pasteboard.h"

#include "Platform/x11/Atoms.h"
#include "Platform/x11/DesktopEntries.h"
#include "Platform/x11/FrontmostApplication.h"
#include "Platform/x11/OwnEntry.h"
#include "Platform/x11/PasteboardLog.h"
#include "Platform/x11/PictureDecoding.h"
#include "Platform/x11/ToolkitConnection.h"
#include "Platform/x11/XcbReply.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QScopedValueRollback>

#include <chrono>
#include <utility>

namespace kestrova {

namespace {

using namespace std::chrono_literals;

constexpr int mostAttempts = 10;
constexpr MainQueue::Duration betweenAttempts = 5ms;

/// As the server says, not as the toolkit believes.
bool isOwnSelection(QClipboard::Mode mode) {
    auto* const connection = toolkitConnection();
    if (!connection) {
        const auto& clipboard = *QGuiApplication::clipboard();
        return mode == QClipboard::Selection ? clipboard.ownsSelection() : clipboard.ownsClipboard();
    }
    const QByteArrayView name = mode == QClipboard::Selection ? "PRIMARY" : "CLIPBOARD";
    const auto selection = atomNamed(connection, name);
    const XcbReply<xcb_get_selection_owner_reply_t> reply{
        xcb_get_selection_owner_reply(connection, xcb_get_selection_owner(connection, selection), nullptr)};
    const auto* const setup = xcb_get_setup(connection);
    return reply && (reply->owner & ~setup->resource_id_mask) == setup->resource_id_base;
}

} // namespace

X11Pasteboard::X11Pasteboard(MainQueue& queue, DesktopEntries& entries, QString bundleIdentifier,
                             QSet<QString> pictureExtensions)
    : m_queue(queue),
      m_entries(entries),
      m_bundleIdentifier(std::move(bundleIdentifier)),
      m_pictureExtensions(std::move(pictureExtensions)) {
    allowLargePictures();
    m_decoding.setMaxThreadCount(1);
    auto* const connection = toolkitConnection();
    if (!connection) {
        qCWarning(lcPasteboard, "[Pasteboard] No X11 display: copies of other programs are not seen");
        return;
    }
    m_windows.emplace(connection);
    m_reader.emplace(xcb_get_setup(connection)->resource_id_base, m_bundleIdentifier, m_entries,
                     [this](FetchedSelection fetched) { decode(std::move(fetched)); });
}

X11Pasteboard::~X11Pasteboard() {
    m_reader.reset();
    m_decoding.clear();
    m_decoding.waitForDone();
}

void X11Pasteboard::decode(FetchedSelection fetched) {
    const std::weak_ptr<X11Pasteboard*> self = m_self;
    m_decoding.start([this, self, fetched = std::move(fetched)]() mutable {
        // Shared, since a block must be copyable.
        const auto snapshot =
            std::make_shared<SelectionSnapshot>(decodedSnapshot(std::move(fetched), m_pictureExtensions));
        m_queue.postFromAnyThread([self, snapshot] {
            if (const auto pasteboard = self.lock())
                (*pasteboard)->arrive(std::move(*snapshot));
        });
    });
}

void X11Pasteboard::arrive(SelectionSnapshot snapshot) {
    if (isOwnWriteKept(snapshot))
        return;
    m_ownEntry.reset();
    m_waiting.push_back(std::move(snapshot));
    if (!m_headIsPolled)
        return;
    advance();
    if (onPollDue)
        onPollDue();
}

void X11Pasteboard::advance() {
    m_head = std::move(m_waiting.front());
    m_waiting.pop_front();
    m_headIsPolled = false;
    ++m_changeCount;
}

void X11Pasteboard::pollFinished() {
    ++m_pollsFinished;
    m_headIsPolled = true;
    m_head.image.reset();
    m_head.text.reset();
    m_head.pictureOfFile.reset();
    if (m_waiting.empty())
        return;
    advance();
    if (m_pollingWhatWaits)
        return;
    m_queue.post([self = std::weak_ptr(m_self)] {
        if (const auto pasteboard = self.lock(); pasteboard && (*pasteboard)->onPollDue)
            (*pasteboard)->onPollDue();
    });
}

bool X11Pasteboard::isOwnWriteKept(const SelectionSnapshot& snapshot) const {
    return m_ownEntry && !snapshot.ownerInFront && holds(snapshot, *m_ownEntry);
}

std::optional<QStringList> X11Pasteboard::types() const {
    return m_head.types.isEmpty() ? std::nullopt : std::optional{m_head.types};
}

QList<QUrl> X11Pasteboard::readURLs() const {
    return m_head.urls;
}

std::optional<PasteboardImage> X11Pasteboard::readImage() const {
    return m_head.image;
}

std::optional<QString> X11Pasteboard::string() const {
    return m_head.text;
}

std::optional<PasteboardImage> X11Pasteboard::pictureOfFile(const QUrl& url) const {
    return !m_head.urls.isEmpty() && m_head.urls.first() == url ? m_head.pictureOfFile : std::nullopt;
}

std::optional<RunningApplication> X11Pasteboard::frontmostApplication() const {
    return m_head.frontmostApplication;
}

void X11Pasteboard::pollWhatWaits() {
    if (m_pollingWhatWaits)
        return;
    const QScopedValueRollback polling{m_pollingWhatWaits, true};
    while (!m_headIsPolled) {
        const auto finished = m_pollsFinished;
        if (onPollDue)
            onPollDue();
        // Nobody polls, or not to the end: the entries must make way all the same.
        if (m_pollsFinished == finished)
            pollFinished();
    }
}

void X11Pasteboard::write(const PasteboardEntry& entry) {
    pollWhatWaits();
    ++m_changeCount;
    m_head = snapshotOf(entry);
    if (m_windows)
        m_head.frontmostApplication =
            kestrova::frontmostApplication(*m_windows, m_entries, m_bundleIdentifier);
    takeOver(entry, mostAttempts);
}

void X11Pasteboard::takeOver(const PasteboardEntry& entry, int attempts) {
    m_nextAttempt.cancel();
    QGuiApplication::clipboard()->setMimeData(mimeDataFor(entry).release());
    if (isOwnSelection(QClipboard::Clipboard)) {
        m_ownEntry = entry;
        return;
    }
    m_ownEntry.reset();
    if (attempts == 1) {
        qCWarning(lcPasteboard, "[Pasteboard] The X server did not give the clipboard to this program");
        return;
    }
    // The toolkit takes it as of the last event it has seen, which the server refuses if another program has
    // taken it since. That news is on its way to the toolkit.
    m_nextAttempt = m_queue.afterUnlessCancelled(betweenAttempts,
                                                 [this, entry, attempts] { takeOver(entry, attempts - 1); });
}

bool X11Pasteboard::ownPrimarySelectionToo() {
    if (!m_ownEntry)
        return false;
    QGuiApplication::clipboard()->setMimeData(mimeDataFor(*m_ownEntry).release(), QClipboard::Selection);
    return isOwnSelection(QClipboard::Selection);
}

} // namespace kestrova
