#include "tests/desktop/CommandConnection.h"
#include "tests/desktop/DesktopTest.h"
#include "tests/desktop/ProcessorTime.h"
#include "tests/desktop/ResponseProbe.h"

#include <QRegularExpression>

#include <thread>

namespace kestrova::test {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

class FloodTest : public DesktopTest {
protected:
    void SetUp() override { ASSERT_TRUE(program.start()); }

    /// One client after the other copies a text of its own, `interval` apart. Answers the texts, oldest
    /// first.
    QStringList copyMany(int count, std::chrono::milliseconds interval,
                         const QString& label = u"copy number"_s) {
        // A person's clients stay a while after another one has copied.
        constexpr std::size_t kStaying = 16;
        QStringList texts;
        std::deque<SelectionOwner> owners;
        for (int number = 0; number < count; ++number) {
            texts.append(u"%1 %2"_s.arg(label).arg(number));
            owners.emplace_back(session.display(), plainText(texts.last().toUtf8()));
            // Counted from the copy, so that on a busy machine no two come closer together than that.
            const auto next = std::chrono::steady_clock::now() + interval;
            if (owners.size() > kStaying)
                owners.pop_front();
            std::this_thread::sleep_until(next);
        }
        m_owners.swap(owners);
        return texts;
    }

    void startBusyLoops(int count) {
        for (int number = 0; number < count; ++number)
            session.start({.program = u"sh"_s, .arguments = {u"-c"_s, u"while :; do :; done"_s}});
    }

    /// Which of `texts`, all of which should have a row in this order, have none. If none is missing the rows
    /// with that label are exactly these.
    QStringList missing(QStringList texts, const QString& label = u"copy number"_s) {
        const QStringList recorded = oldestFirst().filter(QRegularExpression(u'^' + label));
        if (recorded == texts)
            return {};
        texts.removeIf([&recorded](const QString& text) { return recorded.contains(text); });
        return texts.isEmpty() ? QStringList{u"none, but the order differs"_s} : texts;
    }

    QStringList oldestFirst() {
        QStringList contents = program.contents();
        std::reverse(contents.begin(), contents.end());
        return contents;
    }

private:
    std::deque<SelectionOwner> m_owners;
};

TEST_F(FloodTest, TwoHundredOwnersTwentyMillisecondsApartMakeTwoHundredRows) {
    const QStringList texts = copyMany(200, 20ms);
    EXPECT_TRUE(program.waitForNewest(texts.last()));
    EXPECT_EQ(missing(texts), QStringList());
}

TEST_F(FloodTest, TwoHundredOwnersMakeTwoHundredRowsWhileBothCoresAreBusy) {
    startBusyLoops(2);
    // Work that is none of the test's can take the processors from the clients themselves, which then have
    // gone before they were asked: one round of three in which they had their turn is proof.
    QStringList lost;
    for (const QString& label : {u"first"_s, u"second"_s, u"third"_s}) {
        const QStringList texts = copyMany(200, 20ms, label);
        ASSERT_TRUE(program.waitForNewest(texts.last()));
        lost = missing(texts, label);
        if (lost.isEmpty())
            break;
    }
    EXPECT_EQ(lost, QStringList());
}

TEST_F(FloodTest, FiveHundredOwnersInFiveSecondsAreTakenInStride) {
    ResponseProbe probe(session.busAddress());
    const QStringList texts = copyMany(500, 10ms);
    EXPECT_TRUE(program.waitForNewest(texts.last()));
    expectPrompt(probe.stop());
    EXPECT_TRUE(becomesQuiet(program.process().pid(), 1s));

    // An owner that was replaced before anybody could ask it may be missing; nothing is out of order or
    // invented.
    const QStringList recorded = oldestFirst();
    RecordProperty("recorded", static_cast<int>(recorded.size()));
    qsizetype at = -1;
    for (const QString& text : recorded) {
        const qsizetype position = texts.indexOf(text, at + 1);
        ASSERT_GT(position, at) << text.toStdString();
        at = position;
    }
}

} // namespace
} // namespace kestrova::test
