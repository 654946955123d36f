#include "Kestrova/look/Symbol.h"

#include <QImage>

#include <gtest/gtest.h>

namespace kestrova {
namespace {

class SymbolTest : public testing::TestWithParam<const char16_t*> {};

template<typename Predicate>
int count(const QImage& image, Predicate predicate) {
    int counted = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            counted += predicate(image.pixelColor(x, y)) ? 1 : 0;
    return counted;
}

TEST_P(SymbolTest, IsDrawnInTheColourThatIsAskedFor) {
    const Symbol symbol(QString::fromUtf16(GetParam()));
    ASSERT_TRUE(symbol.exists());
    const QColor orange(255, 128, 0);
    const auto image = symbol.pixmap(16, 2, orange).toImage().convertToFormat(QImage::Format_ARGB32);
    ASSERT_EQ(image.size(), QSize(32, 32));
    const int covered = count(image, [](const QColor& pixel) { return pixel.alpha() > 127; });
    EXPECT_GT(covered, 20);
    EXPECT_LT(covered, 900);
    EXPECT_EQ(count(image, [&](const QColor& pixel) { return pixel.alpha() == 255 && pixel != orange; }), 0);
}

INSTANTIATE_TEST_SUITE_P(Names, SymbolTest,
                         testing::Values(u"magnifyingglass", u"xmark.circle.fill", u"xmark", u"sidebar.left",
                                         u"sidebar.right", u"list.bullet", u"square.grid.2x2", u"doc",
                                         u"doc.text", u"doc.on.doc", u"link", u"photo", u"paperclip",
                                         u"paintpalette", u"pin.fill", u"command", u"option", u"control",
                                         u"tray", u"tray.full.fill", u"camera.viewfinder", u"folder",
                                         u"folder.fill", u"plus.circle.fill", u"delete.left",
                                         u"checkmark.square.fill", u"square", u"square.dashed",
                                         u"slash.circle", u"rectangle.stack.badge.minus", u"doc.on.doc.fill",
                                         u"doc.on.clipboard.fill", u"viewfinder", u"pencil.and.outline"));

TEST(UnknownSymbolTest, IsNothing) {
    const Symbol symbol(QStringLiteral("no.such.symbol"));
    EXPECT_FALSE(symbol.exists());
    EXPECT_TRUE(symbol.pixmap(16, 1, Qt::black).isNull());
}

} // namespace
} // namespace kestrova
