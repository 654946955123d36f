#include "Platform/x11/PixelReader.h"

#include "Platform/x11/CaptureConnection.h"
#include "Platform/x11/XcbReply.h"

#include <QSysInfo>

#include <xcb/shm.h>

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <deque>
#include <memory>
#include <utility>

namespace kestrova {

namespace {

constexpr std::uint32_t allPlanes = 0xFFFFFFFF;
constexpr std::uint8_t opaqueDepth = 24;
constexpr std::uint8_t deepDepth = 30;
constexpr std::uint8_t translucentDepth = 32;
constexpr int bytesPerPixel = 4;
// Below that, arranging shared memory takes longer than copying.
constexpr qsizetype leastShared = 256 * 1024;
// What the server fills while the band before is copied. Small enough to stay in the processor's caches, and
// to cost little to prepare.
constexpr qsizetype bandSize = 512 * 1024;

qsizetype byteCount(const QRect& area) {
    return qsizetype{area.width()} * area.height() * bytesPerPixel;
}

/// Memory of this process that the server is handed by descriptor: nobody else finds it, and it goes with the
/// last that has it, a program that was killed included.
class SharedMemory {
public:
    explicit SharedMemory(std::size_t size)
        : m_descriptor(::memfd_create("pixels", MFD_CLOEXEC)), m_size(size) {
        if (m_descriptor >= 0 && ::ftruncate(m_descriptor, static_cast<off_t>(size)) == 0)
            m_memory =
                ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_POPULATE, m_descriptor, 0);
    }
    SharedMemory(const SharedMemory&) = delete;
    SharedMemory& operator=(const SharedMemory&) = delete;
    ~SharedMemory() {
        if (isMapped())
            ::munmap(m_memory, m_size);
        if (m_descriptor >= 0)
            ::close(m_descriptor);
    }

    bool isMapped() const { return m_memory != MAP_FAILED; }
    /// Given away once, to who closes it.
    int takeDescriptor() { return std::exchange(m_descriptor, -1); }
    const std::uint32_t* pixelsAt(qsizetype offset) const {
        return reinterpret_cast<const std::uint32_t*>(static_cast<const char*>(m_memory) + offset);
    }

private:
    int m_descriptor;
    std::size_t m_size;
    void* m_memory = MAP_FAILED;
};

/// A picture whose memory the system prepares at once, and in large pages where it has them: small ones, each
/// at its first use, would take longer than all the rest.
/// It goes back to the system with the picture. Null if there is not enough.
QImage preparedImage(QSize size) {
    struct Memory {
        void* begin;
        std::size_t size;
    };
    const auto bytes =
        static_cast<std::size_t>(size.width()) * static_cast<std::size_t>(size.height()) * bytesPerPixel;
    void* const memory = ::mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED)
        return {};
    // A system that follows neither advice is slower, and nothing else.
    static_cast<void>(::madvise(memory, bytes, MADV_HUGEPAGE));
    static_cast<void>(::madvise(memory, bytes, MADV_POPULATE_WRITE));
    return QImage(
        static_cast<uchar*>(memory), size.width(), size.height(), qsizetype{size.width()} * bytesPerPixel,
        QImage::Format_RGB32,
        [](void* owned) {
            const std::unique_ptr<Memory> whole(static_cast<Memory*>(owned));
            ::munmap(whole->begin, whole->size);
        },
        new Memory{memory, bytes});
}

// Nobody says what is in the byte that is not used, and painting takes it for transparency.
constexpr QRgb opaque = 0xFF000000;

void copyPixels(const std::uint32_t* from, qsizetype count, QRgb* to, std::uint8_t depth) {
    if (depth == deepDepth) {
        std::transform(from, from + count, to, rgbOfDeepPixel);
        return;
    }
    const QRgb set = depth == opaqueDepth ? opaque : 0;
    for (qsizetype i = 0; i < count; ++i)
        to[i] = from[i] | set;
}

void setOpaque(QImage& image) {
    auto* const pixels = reinterpret_cast<QRgb*>(image.bits());
    const auto count = image.sizeInBytes() / bytesPerPixel;
    for (qsizetype i = 0; i < count; ++i)
        pixels[i] |= opaque;
}

std::int16_t coordinate(int value) {
    return static_cast<std::int16_t>(value);
}
std::uint16_t length(int value) {
    return static_cast<std::uint16_t>(value);
}

} // namespace

/// Memory that the server writes into, of two bands; of no use if it refused it.
class PixelReader::AttachedMemory {
public:
    explicit AttachedMemory(xcb_connection_t* connection) : m_connection(connection), m_memory(2 * bandSize) {
        if (!m_memory.isMapped())
            return;
        const auto number = xcb_generate_id(connection);
        const XcbReply<xcb_generic_error_t> refusal{xcb_request_check(
            connection, xcb_shm_attach_fd_checked(connection, number, m_memory.takeDescriptor(), 0))};
        if (!refusal && xcb_connection_has_error(connection) == 0)
            m_number = number;
    }
    AttachedMemory(const AttachedMemory&) = delete;
    AttachedMemory& operator=(const AttachedMemory&) = delete;
    ~AttachedMemory() {
        if (isAttached())
            xcb_shm_detach(m_connection, m_number);
    }

    bool isAttached() const { return m_number != XCB_NONE; }
    xcb_shm_seg_t number() const { return m_number; }
    const std::uint32_t* pixelsAt(qsizetype offset) const { return m_memory.pixelsAt(offset); }

private:
    xcb_connection_t* m_connection;
    SharedMemory m_memory;
    xcb_shm_seg_t m_number = XCB_NONE;
};

PixelReader::PixelReader(const CaptureConnection& connection) : m_connection(connection) {}

PixelReader::~PixelReader() = default;

bool PixelReader::canRead(xcb_connection_t* connection, std::uint8_t depth) {
    const auto* const setup = xcb_get_setup(connection);
    const auto hostOrder =
        QSysInfo::ByteOrder == QSysInfo::LittleEndian ? XCB_IMAGE_ORDER_LSB_FIRST : XCB_IMAGE_ORDER_MSB_FIRST;
    if (setup->image_byte_order != hostOrder ||
        (depth != opaqueDepth && depth != deepDepth && depth != translucentDepth))
        return false;
    for (auto format = xcb_setup_pixmap_formats_iterator(setup); format.rem > 0; xcb_format_next(&format)) {
        if (format.data->depth == depth)
            return format.data->bits_per_pixel == 8 * bytesPerPixel;
    }
    return false;
}

void PixelReader::prepare(QSize size) {
    const QRect area(QPoint(), size);
    if (area.isEmpty() || byteCount(area) < leastShared || !m_connection.hasSharedMemory())
        return;
    if (!m_shared)
        m_shared = std::make_unique<AttachedMemory>(m_connection.get());
    if (m_prepared.size() != size)
        m_prepared = preparedImage(size);
}

QImage PixelReader::read(xcb_drawable_t drawable, std::uint8_t depth, const QRect& area) {
    if (area.isEmpty() || !canRead(m_connection.get(), depth))
        return {};
    prepare(area.size());
    auto image = m_prepared.size() == area.size() ? std::exchange(m_prepared, {})
                                                  : QImage(area.size(), QImage::Format_RGB32);
    if (image.isNull() ||
        !(readShared(drawable, depth, area, image) || readCopied(drawable, depth, area, image)))
        return {};
    if (depth == translucentDepth)
        image.reinterpretAsFormat(QImage::Format_ARGB32_Premultiplied);
    return image;
}

bool PixelReader::readShared(xcb_drawable_t drawable, std::uint8_t depth, const QRect& area,
                             QImage& image) const {
    auto* const connection = m_connection.get();
    const qsizetype rowSize = qsizetype{area.width()} * bytesPerPixel;
    const int rowsAtOnce = static_cast<int>(bandSize / rowSize);
    if (!m_shared || !m_shared->isAttached() || rowsAtOnce == 0 || byteCount(area) < leastShared)
        return false;

    struct Band {
        int row;
        int rows;
        qsizetype offset;
        xcb_shm_get_image_cookie_t asked;
    };
    std::deque<Band> bands;
    int nextRow = 0;
    const auto askForNext = [&](qsizetype offset) {
        const int rows = std::min(rowsAtOnce, area.height() - nextRow);
        if (rows == 0)
            return;
        bands.push_back(
            {nextRow, rows, offset,
             xcb_shm_get_image(connection, drawable, coordinate(area.x()), coordinate(area.y() + nextRow),
                               length(area.width()), length(rows), allPlanes, XCB_IMAGE_FORMAT_Z_PIXMAP,
                               m_shared->number(), static_cast<std::uint32_t>(offset))});
        nextRow += rows;
    };
    askForNext(0);
    askForNext(bandSize);
    auto* const pixels = reinterpret_cast<QRgb*>(image.bits());
    while (!bands.empty()) {
        const auto band = bands.front();
        bands.pop_front();
        const XcbReply<xcb_shm_get_image_reply_t> reply{
            xcb_shm_get_image_reply(connection, band.asked, nullptr)};
        if (!reply || reply->size != rowSize * band.rows) {
            for (const auto& other : bands)
                xcb_discard_reply(connection, other.asked.sequence);
            return false;
        }
        copyPixels(m_shared->pixelsAt(band.offset), qsizetype{area.width()} * band.rows,
                   pixels + qsizetype{area.width()} * band.row, depth);
        askForNext(band.offset);
    }
    return true;
}

bool PixelReader::readCopied(xcb_drawable_t drawable, std::uint8_t depth, const QRect& area,
                             QImage& image) const {
    auto* const connection = m_connection.get();
    const auto get =
        xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, drawable, coordinate(area.x()),
                      coordinate(area.y()), length(area.width()), length(area.height()), allPlanes);
    const XcbReply<xcb_get_image_reply_t> reply{xcb_get_image_reply(connection, get, nullptr)};
    if (!reply || xcb_get_image_data_length(reply.get()) < byteCount(area))
        return false;
    copyPixels(reinterpret_cast<const std::uint32_t*>(xcb_get_image_data(reply.get())),
               qsizetype{area.width()} * area.height(), reinterpret_cast<QRgb*>(image.bits()), depth);
    return true;
}

QImage madeOpaque(QImage image) {
    image.reinterpretAsFormat(QImage::Format_RGB32);
    setOpaque(image);
    return image;
}

} // namespace kestrova
