#include "modules/ModuleWorld.h"
#include "modules/caches/CachesScanController.h"
#include "modules/logs/LogsController.h"
#include "platform/Workspace.h"

#include <gmock/gmock.h>
#include <random>

namespace sweeply {
namespace {

/// Whole runs of two modules over a random volume.
class RunSumsTest : public ModuleTest {
  protected:
    RunSumsTest() { start(); }
    void start() {
        restart();
        m_world.add(1, std::make_unique<CachesScanController>(services(), *m_world.coordinator, m_workspace, ""));
        m_world.add(2, std::make_unique<LogsController>(services(), *m_world.coordinator));
    }
    Workspace m_workspace{m_world.files(), "/Applications"};
};

TEST_F(RunSumsTest, FreedIsWhatTheItemsSayAndWhatTheTotalGrowsByWhateverFails) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    for (int round = 0; round < 12; ++round) {
        SCOPED_TRACE(round);
        for (int i = 0; i < 60; ++i) {
            const std::string folder = random() % 3 == 0 ? "/Users/sam/Library/Logs" : "/Users/sam/Library/Caches";
            const std::string item = folder + "/item" + std::to_string(random() % 40);
            if (!m_world.exists(item))
                write(item + (random() % 2 ? "" : "/inner" + std::to_string(random() % 3)),
                      std::string(random() % 30000, 'x'));
        }
        write("/Users/sam/Library/Caches/busy/old");
        start();
        const auto totalBefore = m_world.statistics->numberTotalSizeSaved();
        m_world.scan();
        write("/Users/sam/Library/Caches/busy/new" + std::to_string(round)); // somebody goes on writing
        const unsigned failing = 2 + static_cast<unsigned>(random() % 20);
        unsigned calls = 0;
        m_world.target.calls.whenCalled = [&](const char* call) {
            return call == std::string("unlinkat") && ++calls % failing == 0 ? EACCES : 0;
        };
        m_world.remove();
        m_world.target.calls.whenCalled = {};

        std::uint64_t sum = 0;
        std::uint64_t failed = 0;
        for (const auto& report : m_world.gate.reports()) {
            sum += report.outcome.frees() ? report.size : 0;
            failed += report.outcome.isDone() ? 0U : 1U;
            if (report.outcome.kind == OutcomeKind::Removed) {
                EXPECT_FALSE(m_world.exists(report.path)) << report.path;
            }
        }
        EXPECT_EQ(m_world.gate.sums().freed, sum);
        EXPECT_EQ(m_world.statistics->currentRemovedAmountOfSpace(), sum);
        EXPECT_EQ(m_world.statistics->numberTotalSizeSaved(), totalBefore + sum);
        ASSERT_TRUE(m_world.runs->run());
        const auto record = m_world.runs->record(*m_world.runs->run()).value();
        EXPECT_TRUE(record.ended);
        EXPECT_EQ(record.sums.freed, sum);
        EXPECT_EQ(record.sums.failed, failed);
        std::uint64_t recorded = 0;
        for (const auto& item : record.items)
            recorded += item.outcome == "removed" || item.outcome == "emptied" ? item.size : 0;
        EXPECT_EQ(recorded, sum);
        EXPECT_EQ(record.items.size(), m_world.gate.reports().size());
    }
}

} // namespace
} // namespace sweeply
