#include "bench/Figure.h"
#include "bench/ProcessFigures.h"
#include "bench/Programs.h"

#include <array>

namespace kestrova::bench {

void measureStart(Desktop& desktop) {
    constexpr int runs = 15;
    const std::array histories{desktop.empty(), desktop.texts(), desktop.textsAndPictures()};
    std::array<std::vector<double>, histories.size()> starts;
    std::vector<double> bareStarts;
    // In turn, so that whatever else the machine does meets all of them.
    for (int run = 0; run < runs; ++run) {
        bareStarts.push_back(RunningProgram(desktop).millisecondsToReady());
        for (std::size_t i = 0; i < histories.size(); ++i)
            starts[i].push_back(RunningProgram(desktop, histories[i]).millisecondsToReady());
    }
    for (std::size_t i = 0; i < histories.size(); ++i)
        print({.name = "start to first answer: " + histories[i].name,
               .unit = "ms",
               .measured = median(starts[i]),
               .floor = median(bareStarts),
               .floorName = "a bare Qt Widgets program to its first answer",
               .budget = 75,
               .remark = "of 15; fastest " + std::to_string(static_cast<int>(quantile(starts[i], 0))) +
                         ", slowest " + std::to_string(static_cast<int>(quantile(starts[i], 1))) +
                         ", first " + std::to_string(static_cast<int>(starts[i].front()))});
}

} // namespace kestrova::bench
