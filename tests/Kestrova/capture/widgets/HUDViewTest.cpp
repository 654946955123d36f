#include "Kestrova/capture/widgets/HUDView.h"

#include "Kestrova/look/Symbol.h"

#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QApplication>
#include <QFontMetricsF>
#include <QPainter>
#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

struct Face {
    HUDEvent event;
    const char16_t* symbol;
    const char16_t* text;
};
class HUDViewFaceTest : public testing::TestWithParam<Face> {};

TEST_P(HUDViewFaceTest, EachEventHasItsSymbolAndItsText) {
    const auto& [event, symbol, text] = GetParam();
    EXPECT_EQ(HUDView::symbolName(event), symbol);
    EXPECT_TRUE(Symbol(HUDView::symbolName(event)).exists());
    EXPECT_EQ(HUDView::text(event), text);
    HUDView view;
    view.setEvent(event);
    EXPECT_EQ(view.accessibleName(), text);
    const double words = QFontMetricsF(view.font()).horizontalAdvance(QString::fromUtf16(text));
    // The symbol, a gap and the padding on both sides.
    EXPECT_EQ(view.sizeHint().width(), std::ceil(12 + 12 + 6 + words + 12));
}

INSTANTIATE_TEST_SUITE_P(Events, HUDViewFaceTest,
                         testing::Values(Face{HUDEvent::copied, u"doc.on.doc.fill", u"복사 완료"},
                                         Face{HUDEvent::pasted, u"doc.on.clipboard.fill", u"붙여넣기 완료"},
                                         Face{HUDEvent::captured, u"viewfinder", u"캡처 완료"},
                                         Face{HUDEvent::edited, u"pencil.and.outline", u"수정본 저장"}));

QImage drawnOver(HUDView& view, const QColor& desktop) {
    view.resize(view.sizeHint());
    QImage picture(view.size() * 2, QImage::Format_RGB32);
    picture.setDevicePixelRatio(2);
    picture.fill(desktop);
    view.render(&picture, {}, {}, QWidget::DrawChildren);
    return picture;
}

double luminance(const QColor& colour) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

class HUDViewGroundTest : public testing::TestWithParam<QColor> {};

TEST_P(HUDViewGroundTest, TextAndSymbolHaveContrastOverEveryDesktop) {
    HUDView view;
    const auto picture = drawnOver(view, GetParam());
    // In the padding, where only the ground is.
    const double ground = luminance(picture.pixelColor(16, picture.height() / 2));
    const auto brightest = [&](int fromX, int toX) {
        double found = 0;
        for (int x = fromX; x < toX; ++x)
            for (int y = 8; y < picture.height() - 8; ++y)
                found = std::max(found, luminance(picture.pixelColor(x, y)));
        return found;
    };
    const auto contrast = [&](double light) { return (light + 0.05) / (ground + 0.05); };
    EXPECT_GE(contrast(brightest(24, 48)), 4.5) << "symbol";
    EXPECT_GE(contrast(brightest(60, picture.width() - 24)), 4.5) << "text";
}

INSTANTIATE_TEST_SUITE_P(Desktops, HUDViewGroundTest,
                         testing::Values(QColor(Qt::white), QColor(Qt::black), QColor(255, 200, 0)));

TEST(HUDViewTest, TheGroundIsDarkAndLetsALittleOfTheDesktopThrough) {
    HUDView view;
    const auto over = [&](const QColor& desktop) {
        const auto picture = drawnOver(view, desktop);
        return picture.pixelColor(16, picture.height() / 2);
    };
    // 0.92 of (0.12, 0.12, 0.14), and 0.08 of what lies behind.
    const QColor overBlack = over(Qt::black);
    EXPECT_NEAR(overBlack.red(), 28, 1);
    EXPECT_NEAR(overBlack.blue(), 33, 1);
    EXPECT_NEAR(over(Qt::white).red(), 49, 1);
    view.setGround(HUDView::Ground::opaque);
    EXPECT_NEAR(over(Qt::white).red(), 31, 1);
    EXPECT_EQ(over(Qt::white), over(Qt::black));
}

TEST(HUDViewTest, TheCornersAreCutOffAndTheMiddlesOfTheEdgesAreNot) {
    HUDView view;
    const auto picture = drawnOver(view, Qt::white);
    EXPECT_EQ(picture.pixelColor(0, 0), QColor(Qt::white));
    EXPECT_EQ(picture.pixelColor(picture.width() - 1, picture.height() - 1), QColor(Qt::white));
    EXPECT_LT(picture.pixelColor(picture.width() / 2, 0).lightness(), 60);
    EXPECT_LT(picture.pixelColor(0, picture.height() / 2).lightness(), 128);
}

TEST(HUDViewTest, ContentIsCentredVertically) {
    HUDView view;
    const auto picture = drawnOver(view, Qt::black);
    int first = picture.height();
    int last = 0;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 24; x < 48; ++x)
            if (picture.pixelColor(x, y).lightness() > 128) {
                first = std::min(first, y);
                last = std::max(last, y);
            }
    EXPECT_NEAR((first + last) / 2.0, picture.height() / 2.0, 2.5);
}

TEST(HUDViewTest, TheWholeShapeTakesTaps) {
    HUDView view;
    view.resize(view.sizeHint());
    int taps = 0;
    view.onTap = [&] { ++taps; };
    for (const QPoint place : {view.rect().center(), QPoint(view.width() / 2, 1),
                               QPoint(1, view.height() / 2), QPoint(view.width() - 2, view.height() / 2)})
        QTest::mouseClick(&view, Qt::LeftButton, {}, place);
    EXPECT_EQ(taps, 4);
}

TEST(HUDViewTest, OtherButtonsAndAPressThatIsLetGoElsewhereAreNoTaps) {
    HUDView view;
    view.resize(view.sizeHint());
    int taps = 0;
    view.onTap = [&] { ++taps; };
    QTest::mouseClick(&view, Qt::RightButton);
    QTest::mouseClick(&view, Qt::MiddleButton);
    QTest::mousePress(&view, Qt::LeftButton);
    QTest::mouseRelease(&view, Qt::LeftButton, {}, QPoint(-20, 5));
    EXPECT_EQ(taps, 0);
}

TEST(HUDViewTest, ATapMayReplaceTheCallback) {
    HUDView view;
    int taps = 0;
    view.onTap = [&, kept = std::make_shared<int>(1)] {
        view.onTap = nullptr;
        taps += *kept;
    };
    view.tap();
    view.tap();
    EXPECT_EQ(taps, 1);
}

TEST(HUDViewTest, GrowsWithTheFontOfTheDesktop) {
    HUDView view;
    const auto before = view.sizeHint();
    const auto ordinary = QApplication::font();
    auto large = ordinary;
    large.setPointSizeF(2 * ordinary.pointSizeF());
    QApplication::setFont(large);
    QCoreApplication::sendPostedEvents();
    EXPECT_GT(view.sizeHint().width(), before.width());
    EXPECT_GT(view.sizeHint().height(), before.height());
    QApplication::setFont(ordinary);
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(view.sizeHint(), before);
}

TEST(HUDViewTest, IsANotificationThatCanBePressed) {
    HUDView view;
    view.setEvent(HUDEvent::pasted);
    int taps = 0;
    view.onTap = [&] { ++taps; };
    auto* const seen = QAccessible::queryAccessibleInterface(&view);
    ASSERT_NE(seen, nullptr);
    EXPECT_EQ(seen->role(), QAccessible::Notification);
    EXPECT_EQ(seen->text(QAccessible::Name), u"붙여넣기 완료");
    ASSERT_NE(seen->actionInterface(), nullptr);
    seen->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(taps, 1);
}

} // namespace
} // namespace kestrova
