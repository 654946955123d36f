#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace kestrova::bench {

/// Asks the program that listens at `socketFile`, or soon will, and waits for its whole answer; gives what it
/// would print. Throws std::runtime_error if it refuses or stays silent.
QByteArray request(const QString& socketFile, const QStringList& arguments);

} // namespace kestrova::bench
