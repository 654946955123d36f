#include "bench/BareStore.h"
#include "bench/CopySource.h"
#include "bench/Figure.h"
#include "bench/ProcessFigures.h"
#include "bench/Programs.h"
#include "bench/SampleTexts.h"
#include "bench/Stopwatch.h"

#include <QFile>

#include <stdexcept>
#include <utility>

namespace kestrova::bench {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

constexpr int copies = 200;
constexpr auto lookEvery = 50us;
// A commit that follows another one at once waits for the file system's journal; people do not copy that
// fast.
constexpr auto pauseBefore = 20ms;
constexpr double deadlineMilliseconds = 20'000;

double millisecondsToSavedRow(CopySource& source, BareStore& onlooker, const QByteArray& text) {
    source.prepare(text);
    auto version = onlooker.dataVersion();
    const Stopwatch watch;
    source.take();
    while (watch.milliseconds() < deadlineMilliseconds) {
        source.serve(lookEvery);
        const auto now = onlooker.dataVersion();
        if (std::exchange(version, now) != now && onlooker.newestIs(text))
            return watch.milliseconds();
    }
    throw std::runtime_error("a copy was not recorded");
}

QString storeIn(const Desktop::History& history) {
    return history.dataHome + u"/com.brelvane.Kestrova/store.sqlite"_s;
}

} // namespace

void measureCopy(Desktop& desktop) {
    const auto& history = desktop.textsAndPictures();
    const QString bareFile = desktop.session().path(u"bare.sqlite"_s);
    if (!QFile::copy(storeIn(desktop.texts()), bareFile))
        throw std::runtime_error("the store cannot be copied");
    BareStore bare(bareFile);
    const RunningProgram program(desktop, history);
    BareStore onlooker(storeIn(history));
    CopySource source(desktop.session().display());
    std::vector<double> saved;
    std::vector<double> commits;
    std::vector<double> roundTrips;
    for (int i = 0; i < copies; ++i) {
        const QByteArray text = sampleText(10'000 + i).toUtf8();
        source.serve(pauseBefore);
        saved.push_back(millisecondsToSavedRow(source, onlooker, text));
        source.serve(pauseBefore);
        const Stopwatch commit;
        bare.insert(text);
        commits.push_back(commit.milliseconds());
        const Stopwatch trip;
        source.roundTrip();
        roundTrips.push_back(trip.milliseconds());
    }
    // The notice, then what is offered, then the text; each of the latter passes the server twice.
    constexpr int tripsOfACopy = 5;
    print({.name = "owner change to saved row, " + history.name,
           .unit = "ms",
           .measured = median(saved),
           .floor = median(commits) + tripsOfACopy * median(roundTrips),
           .floorName =
               "a bare commit and " + std::to_string(tripsOfACopy) + " bare round trips to the X server",
           .budget = 5,
           .remark = "commit " + std::to_string(static_cast<int>(median(commits) * 1000)) +
                     " µs, round trip " + std::to_string(static_cast<int>(median(roundTrips) * 1000)) +
                     " µs; 95% within " + std::to_string(static_cast<int>(quantile(saved, 0.95) * 1000)) +
                     " µs"});
}

} // namespace kestrova::bench
