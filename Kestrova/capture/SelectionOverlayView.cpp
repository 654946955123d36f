#include "Kestrova/capture/SelectionOverlayView.h"

#include "Kestrova/capture/AreaCaptureSession.h"
#include "Kestrova/capture/DisplayCoordinates.h"

#include <QTextBoundaryFinder>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>
#include <vector>

namespace kestrova {

namespace {

constexpr double alphaOfHint = 0.6;
constexpr double alphaOfFrozenHint = 0.85;
constexpr double alphaOfWindowHint = 0.75;
constexpr double alphaOfBadge = 0.7;
constexpr double radiusOfPill = 6;
constexpr double radiusOfBadge = 4;
constexpr QSizeF paddingOfPill{10, 5};
constexpr QSizeF paddingOfSizeBadge{6, 3};
constexpr QSizeF paddingOfCoordinateBadge{5, 2.5};

/// A line of text with room around it; the frame is to be moved to its place.
OverlayBadge makeBadge(const QString& text, OverlayFont font, QSizeF padding,
                       const OverlayTextSize& textSize) {
    const auto size = textSize(text, font);
    return {.frame = {0, 0, size.width() + 2 * padding.width(), size.height() + 2 * padding.height()},
            .cornerRadius = radiusOfBadge,
            .fill = {OverlayFill::Color::black, alphaOfBadge},
            .text = text,
            .font = font,
            .textOrigin = {padding.width(), padding.height()}};
}

OverlayBadge movedTo(OverlayBadge badge, double x, double y) {
    badge.frame.x = x;
    badge.frame.y = y;
    badge.textOrigin += {x, y};
    return badge;
}

/// Where a text may be cut without parting a character, its start and its end included.
std::vector<qsizetype> characterBoundaries(const QString& text) {
    std::vector<qsizetype> boundaries;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    for (auto at = finder.position(); at != -1; at = finder.toNextBoundary())
        boundaries.push_back(at);
    return boundaries;
}

QString rounded(double value) {
    return QString::number(std::llround(value));
}

} // namespace

OverlayCursor cursorOf(CaptureMode mode) {
    return mode == CaptureMode::window ? OverlayCursor::openHand : OverlayCursor::crosshair;
}

void SelectionOverlayView::setPanel(OverlayPanel* panel) {
    m_panel = panel;
    cursorUpdate();
}

QPointF SelectionOverlayView::convertPointToScreen(QPointF point) const {
    return {point.x() + m_screen.frame.x, point.y() + m_screen.frame.y};
}

QPointF SelectionOverlayView::convertPointFromScreen(QPointF globalPoint) const {
    return {globalPoint.x() - m_screen.frame.x, globalPoint.y() - m_screen.frame.y};
}

void SelectionOverlayView::setMode(CaptureMode mode) {
    m_mode = mode;
    setNeedsDisplay();
}

void SelectionOverlayView::setFrozenImage(std::optional<QImage> image) {
    m_frozenImage = std::move(image);
    setNeedsDisplay();
}

void SelectionOverlayView::setShowsFrozen(bool shows) {
    m_showsFrozen = shows;
    setNeedsDisplay();
}

void SelectionOverlayView::setSelectionRectGlobal(const ScreenRect& rect) {
    m_selectionRectGlobal = rect;
    setNeedsDisplay();
}

void SelectionOverlayView::setHoveredWindowFrameGlobal(std::optional<ScreenRect> frame) {
    m_hoveredWindowFrameGlobal = frame;
    setNeedsDisplay();
}

void SelectionOverlayView::setHoveredWindowTitle(std::optional<QString> title) {
    m_hoveredWindowTitle = std::move(title);
    setNeedsDisplay();
}

void SelectionOverlayView::cursorUpdate() {
    if (m_panel)
        m_panel->setCursor(cursorOf(m_mode));
}

void SelectionOverlayView::setNeedsDisplay() {
    if (m_panel)
        m_panel->setNeedsDisplay();
}

void SelectionOverlayView::beginMouseHandler(const OverlayPointer& pointer) {
    m_hoverPoint = pointer.corner;
    cursorUpdate();
}

void SelectionOverlayView::mouseDown(const OverlayPointer& pointer) {
    // The session may end with it, and let go of its views.
    const auto self = shared_from_this();
    beginMouseHandler(pointer);
    m_isDragging = true;
    if (const auto session = m_session.lock())
        session->handleMouseDown(*this,
                                 session->mode() == CaptureMode::window ? pointer.centre : pointer.corner);
    setNeedsDisplay();
}

void SelectionOverlayView::mouseDragged(const OverlayPointer& pointer) {
    beginMouseHandler(pointer);
    const auto session = m_session.lock();
    if (!session)
        return;
    if (session->mode() == CaptureMode::window) {
        session->updateHover(convertPointToScreen(pointer.centre));
    } else if (const auto start = session->startGlobalPoint()) {
        const auto end = convertPointToScreen(pointer.corner);
        // The drag stays with this view, also over other displays.
        for (const auto& view : session->overlayViews())
            view->setSelectionRectGlobal(rectBetween(*start, end));
    }
}

void SelectionOverlayView::mouseUp(const OverlayPointer& pointer) {
    const auto self = shared_from_this();
    beginMouseHandler(pointer);
    m_isDragging = false;
    if (const auto session = m_session.lock())
        session->handleMouseUp(*this, pointer.corner);
    setNeedsDisplay();
}

void SelectionOverlayView::mouseMoved(const OverlayPointer& pointer) {
    beginMouseHandler(pointer);
    const auto session = m_session.lock();
    if (session && session->mode() == CaptureMode::window)
        session->updateHover(convertPointToScreen(pointer.centre));
    if (!m_isDragging)
        setNeedsDisplay();
}

void SelectionOverlayView::mouseEntered(const OverlayPointer& pointer) {
    beginMouseHandler(pointer);
    if (!m_isDragging)
        setNeedsDisplay();
}

void SelectionOverlayView::mouseExited(const OverlayPointer& pointer) {
    beginMouseHandler(pointer);
    m_hoverPoint.reset();
    if (!m_isDragging)
        setNeedsDisplay();
}

void SelectionOverlayView::cancelOperation() {
    const auto self = shared_from_this();
    if (const auto session = m_session.lock())
        session->finish(std::nullopt);
}

std::optional<ScreenRect> SelectionOverlayView::localRect(const ScreenRect& globalRect) const {
    if (!m_panel || isEmpty(globalRect))
        return std::nullopt;
    const auto origin = convertPointFromScreen({globalRect.x, globalRect.y});
    return ScreenRect{origin.x(), origin.y(), globalRect.width, globalRect.height};
}

OverlayDrawing SelectionOverlayView::drawing(const OverlayTextSize& textSize) const {
    return m_mode == CaptureMode::window ? windowModeDrawing(textSize) : areaModeDrawing(textSize);
}

OverlayDrawing SelectionOverlayView::windowModeDrawing(const OverlayTextSize& textSize) const {
    OverlayDrawing drawing;
    if (m_hoveredWindowFrameGlobal)
        drawing.hole = localRect(*m_hoveredWindowFrameGlobal);
    drawing.badges.push_back(
        hintPill(windowHint(textSize), {OverlayFill::Color::black, alphaOfWindowHint}, textSize));
    return drawing;
}

OverlayDrawing SelectionOverlayView::areaModeDrawing(const OverlayTextSize& textSize) const {
    OverlayDrawing drawing;
    if (m_showsFrozen)
        drawing.background = m_frozenImage;
    drawing.hole = localRect(m_selectionRectGlobal);
    if (const auto& selection = drawing.hole) {
        drawing.stroke =
            ScreenRect{selection->x - 0.5, selection->y - 0.5, selection->width + 1, selection->height + 1};
        drawing.badges.push_back(sizeBadge(*selection, textSize));
        return drawing;
    }
    if (!m_isDragging && m_hoverPoint)
        drawing.badges.push_back(coordinateBadge(*m_hoverPoint, textSize));
    drawing.badges.push_back(freezeHint(textSize));
    return drawing;
}

QString SelectionOverlayView::windowHint(const OverlayTextSize& textSize) const {
    const auto hint = QStringLiteral("윈도우 캡처 — Space 로 영역, ESC 취소");
    if (!m_hoveredWindowTitle || m_hoveredWindowTitle->isEmpty())
        return hint;
    const auto withTitle = [&](const QString& title) { return hint + QStringLiteral("   ·   ") + title; };
    const auto fits = [&](const QString& text) {
        return textSize(text, OverlayFont::medium12).width() + 2 * paddingOfPill.width() <= bounds().width;
    };
    if (auto whole = withTitle(*m_hoveredWindowTitle); fits(whole))
        return whole;
    // Browsers name windows after whole headlines; the hint itself would run off the display.
    const auto cut = [&](qsizetype end) {
        return withTitle(m_hoveredWindowTitle->first(end) + QStringLiteral("…"));
    };
    const auto ends = characterBoundaries(*m_hoveredWindowTitle);
    const auto tooLong = std::ranges::partition_point(ends, fits, cut);
    return tooLong == ends.begin() ? hint : cut(*std::prev(tooLong));
}

OverlayBadge SelectionOverlayView::freezeHint(const OverlayTextSize& textSize) const {
    return m_showsFrozen ? hintPill(QStringLiteral("화면 고정됨 — hover 카드 캡처 가능   ·   F 로 해제"),
                                    {OverlayFill::Color::systemBlue, alphaOfFrozenHint}, textSize)
                         : hintPill(QStringLiteral("F — 화면 고정 (hover 카드 · 메뉴 캡처)"),
                                    {OverlayFill::Color::black, alphaOfHint}, textSize);
}

OverlayBadge SelectionOverlayView::hintPill(const QString& text, const OverlayFill& fill,
                                            const OverlayTextSize& textSize) const {
    auto pill = makeBadge(text, OverlayFont::medium12, paddingOfPill, textSize);
    pill.cornerRadius = radiusOfPill;
    pill.fill = fill;
    const double textHeight = pill.frame.height - 2 * paddingOfPill.height();
    return movedTo(pill, (bounds().width - pill.frame.width) * 0.5, bounds().height - textHeight - 20 - 24);
}

OverlayBadge SelectionOverlayView::sizeBadge(const ScreenRect& selection,
                                             const OverlayTextSize& textSize) const {
    const auto text = rounded(selection.width) + QStringLiteral(" × ") + rounded(selection.height);
    const auto badge = makeBadge(text, OverlayFont::medium11, paddingOfSizeBadge, textSize);
    const double below = selection.y - badge.frame.height - 2;
    return movedTo(badge, selection.maxX() - badge.frame.width, below < 0 ? 0 : below);
}

OverlayBadge SelectionOverlayView::coordinateBadge(QPointF point, const OverlayTextSize& textSize) const {
    constexpr double toTheSide = 16;
    constexpr double vertically = 8;
    constexpr double margin = 4;
    const auto global = convertPointToScreen(point);
    const auto text = rounded(global.x()) + QStringLiteral(", ") + rounded(global.y());
    const auto badge =
        makeBadge(text, OverlayFont::medium11TabularDigits, paddingOfCoordinateBadge, textSize);
    double x = point.x() + toTheSide;
    double y = point.y() - badge.frame.height - vertically;
    if (x + badge.frame.width > bounds().maxX() - margin)
        x = point.x() - toTheSide - badge.frame.width;
    if (y < bounds().y + margin)
        y = point.y() + vertically;
    return movedTo(badge, x, y);
}

ScreenRect rectBetween(QPointF first, QPointF second) {
    return {std::min(first.x(), second.x()), std::min(first.y(), second.y()),
            std::abs(first.x() - second.x()), std::abs(first.y() - second.y())};
}

} // namespace kestrova
