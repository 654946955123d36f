#pragma once

#include "tests/desktop/DesktopSession.h"
#include "tests/desktop/DesktopWindows.h"
#include "tests/desktop/PaintedWindow.h"
#include "tests/desktop/Printing.h"
#include "tests/desktop/ProbedHost.h"
#include "tests/desktop/ScreenPicture.h"
#include "tests/desktop/Waiting.h"

#include <QFile>
#include <QImage>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <set>
#include <stdexcept>
#include <vector>

namespace kestrova::test {

using namespace Qt::StringLiterals;

inline const QRect leftDisplay(0, 0, 640, 800);
inline const QRect rightDisplay(640, 100, 640, 600);
inline const QColor backgroundColor(20, 90, 110);
inline const QColor red(200, 30, 40);
inline const QColor green(30, 160, 60);
inline const QColor yellow(240, 200, 20);

struct Picture {
    /// "done", or what was thrown.
    QString outcome;
    QImage image;
};

struct WindowLine {
    xcb_window_t window = XCB_NONE;
    int layer = 0;
    bool isOnScreen = false;
    QRectF frame;
    QString identifier;
    QString title;
};

/// A picture as the probed host writes it.
inline QImage pixelsIn(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error("no picture was written");
    const auto header = file.readLine().split(' ');
    QImage image(header[1].toInt(), header[2].toInt(), static_cast<QImage::Format>(header[0].toInt()));
    const auto bytes = file.readAll();
    if (bytes.size() != image.sizeInBytes())
        throw std::runtime_error("the picture is not whole");
    std::copy(bytes.begin(), bytes.end(), reinterpret_cast<char*>(image.bits()));
    return image;
}

/// Two displays, the left one at twice the scale.
class ScreenContentTest : public ::testing::Test {
protected:
    ScreenContentTest() {
        setMonitor({u"L"_s, u"640/169x800/211+0+0"_s, u"screen"_s});
        setMonitor({u"R"_s, u"640/169x600/158+640+100"_s, u"none"_s});
        session.environment().insert(u"QT_SCREEN_SCALE_FACTORS"_s, u"L=2;R=1"_s);
        showBackground();
        if (!eventually([this] { return windowManagerAnswers(); }))
            throw std::runtime_error("the window manager does not answer");
    }

    /// It is there before it listens, and forgets what it was told until then.
    bool windowManagerAnswers() {
        xcb_client_message_event_t message{};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = 32;
        message.window = x.window();
        message.type = x.atom("_NET_REQUEST_FRAME_EXTENTS");
        xcb_send_event(x.get(), 0, x.root(),
                       XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                       reinterpret_cast<const char*>(&message));
        const XReply<xcb_get_property_reply_t> extents(xcb_get_property_reply(
            x.get(),
            xcb_get_property(x.get(), 0, x.window(), x.atom("_NET_FRAME_EXTENTS"), XCB_ATOM_CARDINAL, 0, 4),
            nullptr));
        return extents && extents->value_len == 4;
    }

    void setMonitor(const QStringList& monitor) {
        session.run(u"xrandr"_s, QStringList{u"--setmonitor"_s} + monitor);
    }

    void showBackground(const QColor& color = backgroundColor) {
        const auto pixel = pixelOf(color);
        xcb_change_window_attributes(x.get(), x.root(), XCB_CW_BACK_PIXEL, &pixel);
        xcb_clear_area(x.get(), 0, x.root(), 0, 0, 0, 0);
        xcb_flush(x.get());
    }

    ProbedHost& host() {
        if (!m_host)
            m_host = std::make_unique<ProbedHost>(session);
        return *m_host;
    }

    /// Run by another command; before anything was asked of it.
    void wrapHost(const QStringList& wrapper) { m_host = std::make_unique<ProbedHost>(session, wrapper); }

    std::unique_ptr<PaintedWindow> show(PaintedWindowSpec spec) {
        return std::make_unique<PaintedWindow>(session.display(), std::move(spec));
    }
    /// Without the window manager: at its place exactly, without a decoration.
    std::unique_ptr<PaintedWindow> showAt(const QRect& rect, const QColor& color) {
        return show({.rect = rect, .color = color, .isUnmanaged = true});
    }

    QString displayID(int index) {
        return host().ask(u"content-displays"_s).split(u'|').value(index).section(u' ', 0, 0);
    }

    Picture pictureByCommand(const QString& command, const QString& what) {
        const auto path = session.path(u"pixels"_s);
        Picture picture{.outcome = host().ask(u"%1 %2 %3"_s.arg(command, path, what)), .image = {}};
        if (picture.outcome == u"done")
            picture.image = pixelsIn(path);
        return picture;
    }
    Picture displayPicture(int index, QSize size, const QString& more = {}) {
        return pictureByCommand(
            u"content-display"_s,
            u"%1 %2 %3 %4"_s.arg(displayID(index)).arg(size.width()).arg(size.height()).arg(more).trimmed());
    }
    Picture windowPicture(xcb_window_t window, QSize size) {
        return pictureByCommand(u"content-window"_s,
                                u"%1 %2 %3"_s.arg(window).arg(size.width()).arg(size.height()));
    }

    std::vector<WindowLine> windows() {
        std::vector<WindowLine> all;
        for (const auto& line : host().ask(u"content-windows"_s).split(u'|')) {
            const auto words = line.split(u' ');
            all.push_back({.window = words.value(0).toUInt(),
                           .layer = words.value(1).toInt(),
                           .isOnScreen = words.value(2) == u"1",
                           .frame = {words.value(3).toDouble(), words.value(4).toDouble(),
                                     words.value(5).toDouble(), words.value(6).toDouble()},
                           .identifier = words.value(7),
                           .title = words.mid(8).join(u' ')});
        }
        return all;
    }
    WindowLine lineOf(xcb_window_t window) {
        for (const auto& line : windows()) {
            if (line.window == window)
                return line;
        }
        throw std::runtime_error("the window is not listed");
    }
    /// Of the given windows alone.
    std::vector<xcb_window_t> orderOf(const std::set<xcb_window_t>& wanted) {
        std::vector<xcb_window_t> order;
        for (const auto& number : host().ask(u"content-order"_s).split(u' ', Qt::SkipEmptyParts)) {
            if (wanted.contains(number.toUInt()))
                order.push_back(number.toUInt());
        }
        return order;
    }

    /// The window manager paints anew what has got the keyboard, and answers when it has.
    void waitUntilDecorated(const PaintedWindow& window) {
        const DesktopWindows desktop(session.display());
        if (!eventually([&] { return desktop.active() == window.id(); }))
            throw std::runtime_error("the window did not get the keyboard");
        xcb_delete_property(x.get(), x.window(), x.atom("_NET_FRAME_EXTENTS"));
        if (!eventually([this] { return windowManagerAnswers(); }))
            throw std::runtime_error("the window manager does not answer");
    }

    QImage onScreen(const QRect& area) const { return ScreenPicture(session.display()).of(area); }

    DesktopSession session;
    XConnection x{session.display()};

private:
    std::unique_ptr<ProbedHost> m_host;
};

/// Whether the same colours, alpha aside, are in both.
inline ::testing::AssertionResult looksAlike(const QImage& picture, const QImage& expected) {
    if (picture.size() != expected.size())
        return ::testing::AssertionFailure()
               << picture.width() << " by " << picture.height() << " pixels instead of " << expected.width()
               << " by " << expected.height();
    for (int y = 0; y < picture.height(); ++y) {
        for (int column = 0; column < picture.width(); ++column) {
            const auto found = picture.pixelColor(column, y);
            const auto wanted = expected.pixelColor(column, y);
            if (found.rgb() != wanted.rgb())
                return ::testing::AssertionFailure()
                       << "at " << column << ", " << y << ": " << found.name().toStdString() << " instead of "
                       << wanted.name().toStdString();
        }
    }
    return ::testing::AssertionSuccess();
}

inline QImage plain(QSize size, const QColor& color) {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(color);
    return image;
}

} // namespace kestrova::test
