#include "bench/Figure.h"
#include "bench/ProcessFigures.h"
#include "bench/Programs.h"
#include "bench/Selection.h"

#include <QGuiApplication>

#include <array>
#include <exception>

using namespace kestrova::bench;

namespace {

struct Measurement {
    const char* name;
    void (*measure)(Desktop& desktop);
};

constexpr std::array measurements{
    Measurement{"start", measureStart},     Measurement{"memory", measureMemory},
    Measurement{"copy", measureCopy},       Measurement{"shelf", measureShelf},
    Measurement{"browse", measureBrowsing}, Measurement{"details", measureDetails},
    Measurement{"idle", measureIdle},       Measurement{"capture", measureCapture},
    Measurement{"overlay", measureOverlay}};

} // namespace

/// What the whole program costs on a desktop of its own. Stores lie below TMPDIR, which should be on the disk
/// to measure.
int main(int argc, char* argv[]) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    printHead("process_bench");
    try {
        Desktop desktop;
        const bool known = runSelected<Measurement>(argc, argv, measurements,
                                                    [&](const Measurement& each) { each.measure(desktop); });
        return known ? 0 : 2;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
}
