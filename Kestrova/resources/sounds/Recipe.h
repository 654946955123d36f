#pragma once

#include <string>
#include <variant>
#include <vector>

namespace kestrova::sounds {

/// How loud a voice is while it sounds: up within `attack`, then falling to 1/e within every `decay`, and
/// down to nothing in the last moments of its length. Times in seconds, `level` against the other voices.
struct Envelope {
    double start = 0;
    double length = 0;
    double level = 1;
    double attack = 0.003;
    double decay = 0.1;
};

/// A voice that swells and ebbs, `depth` being 0 for not at all and 1 for down to silence.
struct Tremolo {
    double hertz = 0;
    double depth = 0;
};

/// A pitched voice. The pitch moves from `from` to `to` hertz, most of the way within `glide` seconds. Each
/// overtone is one level of `overtones`, the fundamental not counted; the higher one is, the faster it dies
/// away if there is `damping`, as in a plucked string.
struct Tone {
    Envelope envelope;
    double from = 440;
    double to = 440;
    double glide = 0.02;
    std::vector<double> overtones = {};
    double damping = 0;
    Tremolo tremolo = {};
};

/// Noise around a pitch that moves like that of a tone. `width` is the width of the band as a part of the
/// pitch: small whistles, large rushes.
struct Noise {
    Envelope envelope;
    double from = 1000;
    double to = 1000;
    double glide = 0.1;
    double width = 0.5;
    Tremolo tremolo = {};
};

using Voice = std::variant<Tone, Noise>;

/// One sound: its name and what sounds in it.
struct Recipe {
    std::string name;
    std::vector<Voice> voices;
};

} // namespace kestrova::sounds
