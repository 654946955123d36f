#pragma once

#include <QString>

/// Each measures one thing within this process and prints its lines. They throw std::runtime_error if they
/// cannot.
namespace kestrova::bench {

void measurePoll(const QString& directory);
void measureInsertion(const QString& directory);
void measureSearch(const QString& directory);
void measureBytesOnDisk(const QString& directory);
void measureEncoding(const QString& directory);

} // namespace kestrova::bench
