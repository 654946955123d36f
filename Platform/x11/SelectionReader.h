#pragma once

#include "Platform/x11/SelectionConnection.h"
#include "Platform/x11/SelectionFetch.h"
#include "Platform/x11/SelectionSnapshot.h"

#include <QString>

#include <atomic>
#include <cstdint>
#include <functional>
#include <list>
#include <thread>

namespace kestrova {

class DesktopEntries;

/// Reads what other programs put on the clipboard, on a thread and a connection of its own: neither a busy
/// main thread nor another program's slowness reaches the other. It sleeps while nothing changes hands.
class SelectionReader {
public:
    /// Gets each entry as soon as it and all before it are there, in the order in which they were copied, on
    /// the reader's thread. Must not wait.
    using OnFetched = std::function<void(FetchedSelection)>;

    /// Watches from when it returns; what is on the clipboard by then is never read. Windows made by the
    /// client that made `ownResource` are this program's own, and what they copy is not read either.
    /// `entries` outlives the object. Without a server that tells of changes nothing is ever read, which is
    /// logged.
    SelectionReader(std::uint32_t ownResource, QString bundleIdentifier, DesktopEntries& entries,
                    OnFetched onFetched);
    SelectionReader(const SelectionReader&) = delete;
    SelectionReader& operator=(const SelectionReader&) = delete;
    /// Returns when the thread has ended, which no other program can delay.
    ~SelectionReader();

private:
    void run();
    void dispatchEvents();
    void dispatch(const xcb_generic_event_t& event);
    void onOwnerNotice(const xcb_generic_event_t& event);
    void onAnswer(const xcb_selection_notify_event_t& event);
    void onProperty(const xcb_property_notify_event_t& event);
    void deliver();
    void wait() const;

    const std::uint32_t m_ownResource;
    const QString m_bundleIdentifier;
    DesktopEntries& m_entries;
    const OnFetched m_onFetched;
    SelectionConnection m_connection;
    /// By the order of the changes of hands; only the last one's owner may still own the clipboard.
    std::list<SelectionFetch> m_fetches;
    const int m_wakeUp;
    std::atomic<bool> m_stop = false;
    std::thread m_thread;
};

} // namespace kestrova
