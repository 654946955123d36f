#include "Kestrova/detail/TextLength.h"

#include "Platform/x11/QtMainQueue.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>

#include <gtest/gtest.h>

namespace kestrova {
namespace {

class TextLengthTest : public testing::Test {
protected:
    /// Until the count is there.
    bool waitForCount() {
        QElapsedTimer time;
        time.start();
        constexpr qint64 deadline = 20'000;
        while (counted == 0 && time.elapsed() < deadline)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
        return counted > 0;
    }
    static QString hugeText(QChar letter) { return QString(TextLength::longestCountedAtOnce + 1, letter); }

    QtMainQueue m_queue;
    int counted = 0;
    TextLength m_length{m_queue, [this] { ++counted; }};
};

TEST_F(TextLengthTest, AnOrdinaryTextIsCountedAtOnce) {
    EXPECT_EQ(m_length.of(u"twelve chars"_qs), 12);
    EXPECT_EQ(m_length.of(QString()), 0);
}

TEST_F(TextLengthTest, AHugeTextIsCountedBesideTheMainThread) {
    const auto text = hugeText(u'가');
    EXPECT_EQ(m_length.of(text), std::nullopt);
    ASSERT_TRUE(waitForCount());
    EXPECT_EQ(m_length.of(text), text.size());
    EXPECT_EQ(counted, 1);
}

TEST_F(TextLengthTest, ACountGoesOnWhileTheTextIsTheSame) {
    const auto text = hugeText(u'a');
    m_length.of(text);
    auto copy = text;
    copy.detach();
    EXPECT_EQ(m_length.of(copy), std::nullopt);
    ASSERT_TRUE(waitForCount());
    EXPECT_EQ(m_length.of(text), text.size());
}

TEST_F(TextLengthTest, TheCountOfATextThatIsShownNoMoreIsGivenUp) {
    m_length.of(hugeText(u'a'));
    EXPECT_EQ(m_length.of(u"short"_qs), 5);
    const auto second = hugeText(u'b') + u'b';
    m_length.of(second);
    ASSERT_TRUE(waitForCount());
    EXPECT_EQ(m_length.of(second), second.size());
    EXPECT_EQ(counted, 1);
}

TEST_F(TextLengthTest, NothingIsToldOnceItHasForgotten) {
    m_length.of(hugeText(u'a'));
    m_length.forget();
    const auto second = hugeText(u'b');
    m_length.of(second);
    ASSERT_TRUE(waitForCount());
    QCoreApplication::processEvents();
    EXPECT_EQ(counted, 1);
}

TEST_F(TextLengthTest, ItMayGoWhileItCounts) {
    int told = 0;
    {
        TextLength going(m_queue, [&told] { ++told; });
        going.of(hugeText(u'a'));
    }
    m_length.of(hugeText(u'a'));
    ASSERT_TRUE(waitForCount());
    EXPECT_EQ(told, 0);
}

} // namespace
} // namespace kestrova
