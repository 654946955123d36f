#include "tests/desktop/ContentCommands.h"

#include <QFile>

namespace kestrova::test {

namespace {

using namespace Qt::StringLiterals;

QString nameOf(ScreenContentError::Code code) {
    switch (code) {
    case ScreenContentError::Code::displayGone:
        return u"displayGone"_s;
    case ScreenContentError::Code::windowGone:
        return u"windowGone"_s;
    case ScreenContentError::Code::windowNotReadable:
        return u"windowNotReadable"_s;
    case ScreenContentError::Code::noPicture:
        return u"noPicture"_s;
    }
    return {};
}

/// The number of the format, the width and the height, then the rows as they are in memory.
void writePixels(const QImage& image, const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        qFatal("the picture cannot be written");
    file.write(u"%1 %2 %3\n"_s.arg(image.format()).arg(image.width()).arg(image.height()).toLatin1());
    for (int y = 0; y < image.height(); ++y)
        file.write(reinterpret_cast<const char*>(image.constScanLine(y)), qsizetype{image.width()} * 4);
}

QString numbers(double x, double y, double width, double height) {
    return u"%1 %2 %3 %4"_s.arg(x).arg(y).arg(width).arg(height);
}

} // namespace

ContentCommands::ContentCommands(MainQueue& mainQueue, DesktopEntries& entries,
                                 const QString& bundleIdentifier, std::function<void(const QString&)> answer)
    : m_content(mainQueue, entries, bundleIdentifier), m_answer(std::move(answer)) {}

bool ContentCommands::obey(const QStringList& words) {
    const auto& command = words.value(0);
    const auto number = [&](qsizetype index) { return words.value(index).toUInt(); };
    PictureConfiguration configuration{.sourceRect = std::nullopt,
                                       .pixels = {static_cast<int>(number(3)), static_cast<int>(number(4))}};
    if (command == "content-access"_L1) {
        m_answer(QString::number(m_content.preflightAccess()));
    } else if (command == "content-displays"_L1) {
        displays();
    } else if (command == "content-windows"_L1) {
        windows();
    } else if (command == "content-order"_L1) {
        QStringList order;
        for (const auto window : m_content.windowOrder())
            order.append(QString::number(window));
        m_answer(order.join(u' '));
    } else if (command == "content-window"_L1) {
        picture(WindowFilter{number(2)}, configuration, words.value(1));
    } else if (command == "content-both"_L1) {
        both(words.value(1), words.value(2));
    } else if (command == "content-display"_L1) {
        DisplayFilter filter{.displayID = number(2), .excludedWindowIDs = {}};
        auto rest = words.mid(5);
        if (const auto without = rest.indexOf(u"without"_s); without >= 0) {
            for (const auto& window : rest.mid(without + 1))
                filter.excludedWindowIDs.push_back(window.toUInt());
            rest = rest.first(without);
        }
        if (rest.size() == 4)
            configuration.sourceRect =
                QRectF(rest[0].toDouble(), rest[1].toDouble(), rest[2].toDouble(), rest[3].toDouble());
        picture(std::move(filter), configuration, words.value(1));
    } else {
        return false;
    }
    return true;
}

QCoro::Task<> ContentCommands::displays() {
    const auto content = co_await m_content.shareableContent();
    QStringList all;
    for (const auto& display : content.displays)
        all.append(u"%1 "_s.arg(display.displayID) +
                   numbers(display.frame.x, display.frame.y, display.frame.width, display.frame.height));
    m_answer(all.join(u'|'));
}

QCoro::Task<> ContentCommands::windows() {
    const auto content = co_await m_content.shareableContent();
    QStringList all;
    for (const auto& window : content.windows)
        all.append(
            u"%1 %2 %3 %4 %5 %6"_s.arg(window.windowID)
                .arg(window.windowLayer)
                .arg(window.isOnScreen)
                .arg(numbers(window.frame.x(), window.frame.y(), window.frame.width(), window.frame.height()))
                .arg(window.owningApplication ? window.owningApplication->bundleIdentifier : u"none"_s)
                .arg(window.title.value_or(QString())));
    m_answer(all.join(u'|'));
}

QCoro::Task<> ContentCommands::picture(ContentFilter filter, PictureConfiguration configuration,
                                       QString file) {
    QString outcome;
    try {
        writePixels(co_await m_content.captureImage(filter, configuration), file);
        outcome = u"done"_s;
    } catch (const ScreenContentError& error) {
        outcome = nameOf(error.code());
    }
    m_answer(outcome);
}

QCoro::Task<> ContentCommands::allOf(std::uint32_t display, QString file) {
    const DisplayFilter filter{.displayID = display, .excludedWindowIDs = {}};
    const auto info = m_content.info(filter);
    const QSizeF size(info.contentRect.width, info.contentRect.height);
    const PictureConfiguration configuration{.sourceRect = std::nullopt,
                                             .pixels = (size * info.pointPixelScale).toSize()};
    writePixels(co_await m_content.captureImage(filter, configuration), file);
}

QCoro::Task<> ContentCommands::both(QString firstFile, QString secondFile) {
    const auto content = co_await m_content.shareableContent();
    const auto first = allOf(content.displays.at(0).displayID, firstFile);
    const auto second = allOf(content.displays.at(1).displayID, secondFile);
    co_await first;
    co_await second;
    m_answer(u"done"_s);
}

} // namespace kestrova::test
