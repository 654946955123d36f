#include "bench/Figure.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string_view>
#include <thread>
#include <utility>

namespace kestrova::bench {
namespace {

std::string inUnit(double value, const std::string& unit) {
    const int decimals = value >= 100 ? 0 : value >= 10 ? 1 : 2;
    char text[64];
    std::snprintf(text, sizeof text, "%.*f %s", decimals, value, unit.c_str());
    return text;
}

std::string verdict(const Figure& figure) {
    if (!figure.budget)
        return "-";
    return inUnit(*figure.budget, figure.unit) + (figure.measured <= *figure.budget ? "  met" : "  MISSED");
}

} // namespace

void printHead(const char* program) {
    double load = 0;
    if (getloadavg(&load, 1) != 1)
        load = -1;
    std::printf("%s, build type %s, %u processors, load %.2f\n", program, KESTROVA_BUILD_TYPE,
                std::thread::hardware_concurrency(), load);
    if (std::string_view(KESTROVA_BUILD_TYPE) != "Release")
        std::printf("This is no release build: the figures say nothing.\n");
    std::printf("\n%-54s %12s %12s %7s  %-20s %s\n", "what (median)", "measured", "floor", "ratio", "budget",
                "floor is; remarks");
    std::fflush(stdout);
}

void print(const Figure& figure) {
    std::printf("%-54s %12s %12s %6.2fx  %-20s %s%s%s\n", figure.name.c_str(),
                inUnit(figure.measured, figure.unit).c_str(), inUnit(figure.floor, figure.unit).c_str(),
                figure.measured / figure.floor, verdict(figure).c_str(), figure.floorName.c_str(),
                figure.remark.empty() ? "" : "; ", figure.remark.c_str());
    std::fflush(stdout);
}

double median(std::vector<double> samples) {
    return quantile(std::move(samples), 0.5);
}

double quantile(std::vector<double> samples, double share) {
    if (samples.empty())
        throw std::logic_error("no samples");
    const auto last = static_cast<double>(samples.size() - 1);
    const auto place = samples.begin() + static_cast<std::ptrdiff_t>(last * share + 0.5);
    std::ranges::nth_element(samples, place);
    return *place;
}

} // namespace kestrova::bench
