#include "bench/Figure.h"
#include "bench/InProcessFigures.h"
#include "bench/Selection.h"

#include <QGuiApplication>
#include <QTemporaryDir>

#include <array>
#include <exception>

using namespace kestrova::bench;

namespace {

struct Measurement {
    const char* name;
    void (*measure)(const QString& directory);
};

constexpr std::array measurements{Measurement{"poll", measurePoll}, Measurement{"search", measureSearch},
                                  Measurement{"insertion", measureInsertion},
                                  Measurement{"bytes", measureBytesOnDisk},
                                  Measurement{"encode", measureEncoding}};

} // namespace

/// What the program's parts cost within one process. Stores lie below TMPDIR, which should be on the disk to
/// measure.
int main(int argc, char* argv[]) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    printHead("kestrova_bench");
    try {
        const bool known = runSelected<Measurement>(argc, argv, measurements, [](const Measurement& each) {
            const QTemporaryDir directory;
            each.measure(directory.path());
        });
        return known ? 0 : 2;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
}
