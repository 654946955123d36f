#pragma once

namespace kestrova {

/// Makes large blocks go back to the system as soon as they are freed. Left to itself the allocator comes to
/// keep them after the first few, and a program that is passed a picture now and then would stay as large as
/// the largest. Before the first thread starts.
void returnLargeBlocksAtOnce();

} // namespace kestrova
