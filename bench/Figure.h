#pragma once

#include <optional>
#include <string>
#include <vector>

namespace kestrova::bench {

/// One line of the table: what was measured, beside the least that the same work can cost on this machine
/// now.
struct Figure {
    std::string name;
    /// Of `measured`, `floor` and `budget` alike.
    std::string unit;
    double measured = 0;
    double floor = 0;
    /// What the floor is.
    std::string floorName;
    /// Absent where none was set; the ratio alone speaks then.
    std::optional<double> budget = std::nullopt;
    std::string remark = {};
};

/// Says what is measured, how it was built and how busy the machine is, then heads the table.
void printHead(const char* program);
/// Prints at once, so that a long run can be watched.
void print(const Figure& figure);

/// Of an even number of samples the upper one. There must be samples.
double median(std::vector<double> samples);
/// The value that `share` of the samples do not exceed.
double quantile(std::vector<double> samples, double share);

} // namespace kestrova::bench
