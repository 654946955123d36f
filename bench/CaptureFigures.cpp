#include "bench/BareGrab.h"
#include "bench/BareStore.h"
#include "bench/Figure.h"
#include "bench/ProcessFigures.h"
#include "bench/Programs.h"
#include "bench/ScreenSamples.h"
#include "bench/Stopwatch.h"

#include "Platform/PngEncoder.h"

#include <QDir>

#include <stdexcept>
#include <thread>

namespace kestrova::bench {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

constexpr int captures = 15;
// Short beside a capture, and long enough to leave the processors to it.
constexpr auto pauseBetweenLooks = 500us;
constexpr double deadlineMilliseconds = 20'000;

struct DisplaySize {
    QSize pixels;
    double budgetMilliseconds;
};

/// Looks for all that a capture leaves: the picture on the pasteboard, its file, and its row.
class CaptureWatch {
public:
    CaptureWatch(const QByteArray& display, const QString& storeFile, const QString& folder)
        : m_x(display), m_store(storeFile), m_folder(folder) {}

    template<typename Act>
    double millisecondsToAllOfIt(Act act) {
        emptyPasteboard();
        const auto rowsVersion = m_store.dataVersion();
        const auto files = fileCount();
        const Stopwatch watch;
        act();
        while (watch.milliseconds() < deadlineMilliseconds) {
            if (m_store.dataVersion() != rowsVersion && m_store.newestIs("Screenshot"_ba) &&
                fileCount() == files + 1 && m_x.clipboardOwner() != XCB_NONE)
                return watch.milliseconds();
            std::this_thread::sleep_for(pauseBetweenLooks);
        }
        throw std::runtime_error("a capture was not recorded");
    }

    QByteArray newestFile() const {
        const auto names = QDir(m_folder).entryList(QDir::Files, QDir::Time);
        QFile file(m_folder + u'/' + names.value(0));
        if (!file.open(QIODevice::ReadOnly))
            throw std::runtime_error("a capture's file cannot be read");
        return file.readAll();
    }

private:
    qsizetype fileCount() const { return QDir(m_folder).entryList(QDir::Files).size(); }
    void emptyPasteboard() const {
        xcb_set_selection_owner(m_x.get(), XCB_NONE, m_x.atom("CLIPBOARD"), XCB_CURRENT_TIME);
        if (m_x.clipboardOwner() != XCB_NONE)
            throw std::runtime_error("the pasteboard cannot be emptied");
    }

    test::XConnection m_x;
    BareStore m_store;
    QString m_folder;
};

std::string inMilliseconds(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.1f ms", value);
    return text;
}

std::string inMegabytes(qsizetype bytes) {
    char text[32];
    std::snprintf(text, sizeof text, "%.3f MB", static_cast<double>(bytes) / 1e6);
    return text;
}

void measureSample(const ScreenSample& sample, double budget, const RunningProgram& program,
                   const BareGrab& bareGrab, CaptureWatch& watch) {
    bareGrab.showBehindAll(sample.picture);
    std::vector<double> times;
    std::vector<double> grabs;
    std::vector<double> encodings;
    for (int i = 0; i < captures; ++i) {
        times.push_back(watch.millisecondsToAllOfIt([&] { program.ask({u"capture"_s, u"screen"_s}); }));
        const Stopwatch grab;
        const auto picture = bareGrab.grab();
        grabs.push_back(grab.milliseconds());
        const Stopwatch encoding;
        if (pngData(picture).isEmpty())
            throw std::runtime_error("a picture cannot be encoded");
        encodings.push_back(encoding.milliseconds());
    }
    const auto png = watch.newestFile();
    const auto size = sample.picture.size();
    print({.name = "capture to row, file and pasteboard, " + std::to_string(size.width()) + "x" +
                   std::to_string(size.height()) + ", " + sample.name,
           .unit = "ms",
           .measured = median(times),
           .floor = median(grabs) + median(encodings),
           .floorName = "a bare grab, " + inMilliseconds(median(grabs)) + ", and the bare encoder, " +
                        inMilliseconds(median(encodings)),
           .budget = budget,
           .remark = inMegabytes(png.size()) + ", by the toolkit's default " +
                     inMegabytes(toolkitPng(sample.picture).size()) + "; 95% within " +
                     inMilliseconds(quantile(times, 0.95))});
}

} // namespace

// Each size wants a display of its own.
void measureCapture(Desktop& /*desktop*/) {
    for (const auto& [size, budget] : {DisplaySize{{1'920, 1'080}, 35}, DisplaySize{{3'840, 2'160}, 120}}) {
        test::DesktopSession session(test::DesktopSession::Bus::Own, test::DesktopSession::Accessibility::Off,
                                     size);
        const QString folder = session.path(u"screenshots"_s);
        session.writeFile(u"config/com.brelvane.Kestrova/defaults.json"_s,
                          R"({"screenshotFolder": ")" + folder.toUtf8() + R"("})");
        const QString dataHome = session.path(u"data"_s);
        const RunningProgram program(session, dataHome);
        const BareGrab bareGrab(session.display());
        CaptureWatch watch(session.display(), dataHome + u"/com.brelvane.Kestrova/store.sqlite"_s, folder);
        for (const auto& sample : screenSamples(size))
            measureSample(sample, budget, program, bareGrab, watch);
    }
}

} // namespace kestrova::bench
