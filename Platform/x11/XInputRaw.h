#pragma once

#include <xcb/xcb.h>

#include <cstdint>

namespace kestrova {

/// Raw events of the input extension: what the devices do, whoever the events go to and whatever is grabbed.
/// On one connection.
class XInputRaw {
public:
    /// Who tells the server the extension's version, which a connection does once.
    enum class Version { Asked, AskedByToolkit };

    /// `connection` outlives the object.
    explicit XInputRaw(xcb_connection_t* connection, Version version = Version::Asked);

    bool isAvailable() const { return m_opcode != 0; }
    /// Which of XCB_INPUT_XI_EVENT_MASK_RAW_… come from now on, of all keyboards and pointers; 0 for none.
    void select(xcb_window_t root, std::uint32_t events) const;
    /// The kind of raw event; 0 if the event belongs to something else.
    std::uint16_t kind(const xcb_generic_event_t& event) const;

private:
    xcb_connection_t* m_connection;
    std::uint8_t m_opcode = 0;
};

} // namespace kestrova
