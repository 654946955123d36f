#pragma once

#include "KestrovaCore/Sqlite.h"

/// The tables of the store and how a file comes to have them.
namespace kestrova::Schema {

/// Makes the file ready for use: an empty one gets the tables, one of an older build the columns that it
/// lacks. A file that cannot be adapted fails as unusable and has not been written to.
void prepare(sqlite::Connection& connection);

} // namespace kestrova::Schema
