#include "bench/Figure.h"
#include "bench/InProcessFigures.h"
#include "bench/SampleHistory.h"
#include "bench/SampleTexts.h"
#include "bench/Stopwatch.h"

#include "KestrovaCore/FoldedText.h"
#include "KestrovaCore/RecordValues.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <memory>
#include <stdexcept>

namespace kestrova::bench {
namespace {

constexpr int runs = 21;

using Rows = std::vector<std::unique_ptr<const ClipboardItemValues>>;

struct LookedFor {
    const char* description;
    QString word;
};

Rows makeRows(int count) {
    Rows rows;
    for (int i = 0; i < count; ++i) {
        auto values = std::make_unique<ClipboardItemValues>();
        values->content = sampleText(i);
        rows.push_back(std::move(values));
    }
    return rows;
}

std::size_t countMatches(const Rows& rows, const SearchTerm& term) {
    std::size_t count = 0;
    for (const auto& values : rows)
        count += matches(*values, term) ? 1 : 0;
    return count;
}

/// The folded texts, end to end.
struct Plain {
    QByteArray bytes;
    std::vector<qsizetype> ends;
};

Plain plain(const Rows& rows) {
    Plain plain;
    for (const auto& values : rows) {
        plain.bytes += values->foldedContent.of(values->content);
        plain.ends.push_back(plain.bytes.size());
    }
    return plain;
}

std::size_t countMatches(const Plain& plain, const QByteArray& word) {
    std::size_t count = 0;
    qsizetype from = 0;
    for (const auto end : plain.ends) {
        count += memmem(plain.bytes.constData() + from, static_cast<std::size_t>(end - from),
                        word.constData(), static_cast<std::size_t>(word.size()))
                     ? 1
                     : 0;
        from = end;
    }
    return count;
}

void measureScan(const Rows& rows, const LookedFor& lookedFor, double budget) {
    const SearchTerm term(lookedFor.word);
    const QByteArray word = foldedForSearch(lookedFor.word);
    const Plain bytes = plain(rows);
    if (countMatches(rows, term) == 0)
        throw std::runtime_error("the sample texts lack the word");
    std::vector<double> scans;
    std::vector<double> floors;
    std::size_t found = 0;
    for (int run = 0; run < runs; ++run) {
        const Stopwatch scan;
        benchmark::DoNotOptimize(found = countMatches(rows, term));
        scans.push_back(scan.milliseconds());
        const Stopwatch bare;
        benchmark::DoNotOptimize(countMatches(bytes, word));
        floors.push_back(bare.milliseconds());
    }
    print({.name = "scan of " + std::to_string(rows.size()) + " rows, " + lookedFor.description,
           .unit = "ms",
           .measured = median(scans),
           .floor = median(floors),
           .floorName = "memmem over the same bytes",
           .budget = budget,
           .remark = std::to_string(found) + " found; the budget is for key to repainted list"});
}

void measureFirstScan(const Rows& rows, double budget) {
    const Stopwatch utf8;
    for (const auto& values : rows)
        benchmark::DoNotOptimize(values->content.toUtf8());
    const double floor = utf8.milliseconds();
    const SearchTerm term(SampleWord::rareKorean);
    const Stopwatch scan;
    benchmark::DoNotOptimize(countMatches(rows, term));
    print({.name = "first scan of " + std::to_string(rows.size()) + " rows, which folds",
           .unit = "ms",
           .measured = scan.milliseconds(),
           .floor = floor,
           .floorName = "the same texts to UTF-8",
           .budget = budget,
           .remark = "one sample: there is one first time"});
}

} // namespace

void measureSearch(const QString&) {
    const std::vector<LookedFor> words{{"rare, Korean", SampleWord::rareKorean},
                                       {"rare, English", SampleWord::rareEnglish},
                                       {"frequent, Korean", SampleWord::frequentKorean},
                                       {"frequent, English", SampleWord::frequentEnglish}};
    struct Size {
        int rows;
        double budget;
    };
    for (const auto& size : {Size{5'000, 8}, Size{100'000, 16}}) {
        const Rows rows = makeRows(size.rows);
        measureFirstScan(rows, size.budget);
        for (const auto& word : words)
            measureScan(rows, word, size.budget);
    }
}

} // namespace kestrova::bench
