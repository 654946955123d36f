#include "bench/BareStore.h"
#include "bench/Figure.h"
#include "bench/InProcessFigures.h"
#include "bench/MonitorUnderMeasure.h"
#include "bench/SampleHistory.h"
#include "bench/SampleTexts.h"
#include "bench/Stopwatch.h"

#include "KestrovaCore/ModelContext.h"

#include <QFile>

#include <stdexcept>

namespace kestrova::bench {
namespace {

constexpr int insertions = 200;

struct Samples {
    std::vector<double> measured;
    std::vector<double> oneCommit;
};

std::size_t rowsIn(ModelContainer& container) {
    ModelContext context(container);
    const auto count = context.fetchCount({});
    if (!count)
        throw std::runtime_error("the rows cannot be counted");
    return count.value();
}

Samples insertAt(const QString& directory, int rows) {
    const FilledStore filled = fillStore(directory, {.texts = rows});
    const QString bareFile = directory + QStringLiteral("/bare.sqlite");
    if (!QFile::copy(filled.file, bareFile))
        throw std::runtime_error("the store cannot be copied");
    BareStore bare(bareFile);
    MonitorUnderMeasure measured(directory, rows);

    Samples samples;
    for (int i = 0; i < insertions; ++i) {
        const QString text = sampleText(rows + i);
        const QByteArray utf8 = text.toUtf8();
        measured.pasteboard().copyElsewhere(text);
        const Stopwatch poll;
        measured.monitor().poll();
        samples.measured.push_back(poll.microseconds());
        const Stopwatch commit;
        bare.insert(utf8);
        samples.oneCommit.push_back(commit.microseconds());
    }
    if (rowsIn(measured.container()) != static_cast<std::size_t>(rows))
        throw std::runtime_error("not every copy was recorded, or the limit did not hold");
    return samples;
}

} // namespace

void measureInsertion(const QString& directory) {
    for (const int rows : {500, 5'000, 50'000}) {
        const Samples samples = insertAt(QStringLiteral("%1/insertion-%2").arg(directory).arg(rows), rows);
        print({.name = "poll that records, " + std::to_string(rows) + " rows at their limit",
               .unit = "µs",
               .measured = median(samples.measured),
               .floor = median(samples.oneCommit),
               .floorName = "one insertion and its commit by bare SQLite",
               .remark = "two commits: the new row, then the row beyond the limit; 95% within " +
                         std::to_string(static_cast<int>(quantile(samples.measured, 0.95))) + ", floor " +
                         std::to_string(static_cast<int>(quantile(samples.oneCommit, 0.95)))});
    }
}

} // namespace kestrova::bench
