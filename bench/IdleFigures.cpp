#include "bench/Figure.h"
#include "bench/ProcessFigures.h"
#include "bench/ProcessUse.h"
#include "bench/Programs.h"

#include "Kestrova/clipboard/ClipboardMonitor.h"

#include <chrono>
#include <thread>

namespace kestrova::bench {

void measureIdle(Desktop& desktop) {
    constexpr std::chrono::seconds idle{20};
    constexpr double perMinute = std::chrono::minutes{1} / idle;
    const RunningProgram program(desktop, desktop.textsAndPictures());
    const RunningProgram bare(desktop, ClipboardMonitor::pollInterval);
    // What a start puts off until after the first answer, such as the first drawing of the panel, is done
    // once.
    constexpr std::chrono::seconds restOfTheStart{3};
    std::this_thread::sleep_for(restOfTheStart);
    const double programBefore = processorMillisecondsOf(program.pid());
    const double bareBefore = processorMillisecondsOf(bare.pid());
    // Not a wait for something: the time itself is what is measured.
    std::this_thread::sleep_for(idle);
    print({.name = "processor time a minute, idle",
           .unit = "ms",
           .measured = (processorMillisecondsOf(program.pid()) - programBefore) * perMinute,
           .floor = (processorMillisecondsOf(bare.pid()) - bareBefore) * perMinute,
           .floorName = "a bare Qt Widgets program with the same timer, at the same time",
           .budget = 20,
           .remark = "over 20 s, beginning 3 s after the first answer"});
}

} // namespace kestrova::bench
