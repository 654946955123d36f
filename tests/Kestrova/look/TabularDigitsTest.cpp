#include "Kestrova/look/TabularDigits.h"

#include <QApplication>
#include <QFontMetricsF>
#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

namespace kestrova {
namespace {

TEST(TabularDigitsTest, NumbersOfAsManyDigitsAreAsWide) {
    const auto font = QApplication::font();
    EXPECT_EQ(tabularWidth(u"111"_qs, font), tabularWidth(u"888"_qs, font));
    EXPECT_EQ(tabularWidth({}, font), 0);
    EXPECT_GE(tabularWidth(u"111"_qs, font), QFontMetricsF(font).horizontalAdvance(u"111"_qs));
}

TEST(TabularDigitsTest, OtherCharactersKeepTheirWidth) {
    const auto font = QApplication::font();
    EXPECT_EQ(tabularWidth(u"111, 11"_qs, font), tabularWidth(u"888, 88"_qs, font));
    EXPECT_EQ(tabularWidth(u"-,"_qs, font),
              QFontMetricsF(font).horizontalAdvance(u'-') + QFontMetricsF(font).horizontalAdvance(u','));
}

TEST(TabularDigitsTest, WhatFollowsDigitsStaysWhereItIsAsTheyChange) {
    const auto drawn = [](const QString& text) {
        QImage image(200, 40, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        drawTabular(painter, {10, 30}, text);
        painter.end();
        // A digit may reach a pixel into the blank that follows it.
        const int after = 11 + static_cast<int>(tabularWidth(u"111"_qs, QApplication::font()));
        return image.copy(after, 0, 200 - after, 40);
    };
    EXPECT_EQ(drawn(u"111 ,"_qs), drawn(u"808 ,"_qs));
    EXPECT_NE(drawn(u"111 ,"_qs), drawn(u"111"_qs));
}

TEST(TabularDigitsTest, TheyEndAtTheRightEdge) {
    QImage image(200, 40, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    drawTabularAtRight(painter, QRectF(0, 0, 160, 40), u"888"_qs);
    painter.end();
    int last = -1;
    for (int x = 0; x < image.width(); ++x)
        for (int y = 0; y < image.height(); ++y)
            if (image.pixelColor(x, y).lightness() < 128)
                last = x;
    EXPECT_LE(last, 160);
    EXPECT_GE(last, 155);
}

} // namespace
} // namespace kestrova
