#include "tests/desktop/CommandConnection.h"
#include "tests/desktop/DesktopTest.h"
#include "tests/desktop/StoreFile.h"

#include <QMap>

#include <random>
#include <thread>

namespace kestrova::test {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
using Clock = std::chrono::steady_clock;

/// Rows by identifier, with all that `list` told of them.
using RowsById = QMap<QString, QJsonObject>;

class KillTest : public DesktopTest {
protected:
    static constexpr int kAll = 1'000'000;
    static constexpr int kNewest = 20;

    bool startAndConnect() {
        program.launch();
        m_commands.emplace(session.busAddress());
        return eventually([this] { return m_commands->rows(1).has_value(); });
    }
    RowsById listed(int limit) {
        RowsById rows;
        for (const QJsonValue row : m_commands->rows(limit).value_or(QJsonArray()))
            rows.insert(row[u"id"].toString(), row.toObject());
        return rows;
    }
    /// Clients copy one after the other, as fast as they can, and `list` is read in between, until `end`.
    void burst(Clock::time_point end, RowsById& shown) {
        std::deque<SelectionOwner> owners;
        while (Clock::now() < end) {
            owners.emplace_back(session.display(), plainText("copy " + QByteArray::number(++m_copies)));
            if (owners.size() > 4)
                owners.pop_front();
            shown.insert(listed(kNewest));
        }
        program.process().signal(SIGKILL);
    }

    int m_copies = 0;
    std::optional<CommandConnection> m_commands;
};

TEST_F(KillTest, AfterAHundredKillsNoRowThatWasListedIsMissing) {
    constexpr int kKills = 100;
    program.editDefault(u"historyLimit"_s, kAll);
    std::mt19937 random(20240501);
    std::uniform_int_distribution<int> moment(1, 120);
    RowsById shown;
    for (int kill = 0; kill < kKills; ++kill) {
        ASSERT_TRUE(startAndConnect())
            << "after kill " << kill << ": " << program.process().standardError().toStdString();
        const RowsById found = listed(kAll);
        for (const QString& id : shown.keys())
            ASSERT_EQ(found.value(id), shown.value(id))
                << "row " << id.toStdString() << " after kill " << kill;
        shown = found;
        burst(Clock::now() + std::chrono::milliseconds(moment(random)), shown);
        ASSERT_TRUE(program.process().waitForEnd(kGenerously));
        ASSERT_EQ(integrityOfCopy(program.storeFile(), session.path(u"scratch"_s)), u"ok"_s)
            << "kill " << kill;
    }
    ASSERT_TRUE(startAndConnect());
    EXPECT_GT(shown.size(), kKills);
    EXPECT_EQ(program.backups(), QStringList());
}

} // namespace
} // namespace kestrova::test
