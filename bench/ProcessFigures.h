#pragma once

/// Each measures one thing of the whole program and prints its lines. They throw std::runtime_error if they
/// cannot.
namespace kestrova::bench {

class Desktop;

void measureStart(Desktop& desktop);
void measureMemory(Desktop& desktop);
void measureCopy(Desktop& desktop);
void measureShelf(Desktop& desktop);
void measureBrowsing(Desktop& desktop);
void measureDetails(Desktop& desktop);
void measureIdle(Desktop& desktop);
void measureCapture(Desktop& desktop);
void measureOverlay(Desktop& desktop);

} // namespace kestrova::bench
