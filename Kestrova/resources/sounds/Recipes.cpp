#include "Kestrova/resources/sounds/Recipes.h"

namespace kestrova::sounds {

namespace {

/// One mode of a struck body: a sine that begins at once and rings.
Tone ring(double hertz, double level, double decay, double length) {
    return {.envelope = {.length = length, .level = level, .attack = 0.002, .decay = decay},
            .from = hertz,
            .to = hertz};
}

Tone note(double start, double hertz, double length, double decay) {
    return {.envelope = {.start = start, .length = length, .attack = 0.006, .decay = decay},
            .from = hertz,
            .to = hertz,
            .overtones = {0.35, 0.18, 0.08},
            .damping = 0.6};
}

Tone blip(double start, double length) {
    return {.envelope = {.start = start, .length = length, .attack = 0.006, .decay = 0.15},
            .from = 830,
            .to = 830,
            .overtones = {0, 0.08}};
}

Tone croak(double start, double length, double hertz) {
    return {.envelope = {.start = start, .length = length, .attack = 0.015, .decay = 0.09},
            .from = hertz * 0.8,
            .to = hertz,
            .glide = 0.04,
            .overtones = {0.8, 0.7, 0.9, 0.5, 0.3, 0.15},
            .tremolo = {.hertz = 42, .depth = 0.85}};
}

Tone pluck(double start, double hertz, double length) {
    return {.envelope = {.start = start, .length = length, .attack = 0.002, .decay = 0.13},
            .from = hertz * 1.06,
            .to = hertz,
            .glide = 0.012,
            .overtones = {0.9, 0.8, 0.6, 0.5, 0.35, 0.25, 0.15},
            .damping = 0.55};
}

/// Two voices a little apart in pitch, which beat like two players.
std::vector<Voice> together(double start, double hertz, double length) {
    Tone one{.envelope = {.start = start, .length = length, .attack = 0.03, .decay = 0.22},
             .from = hertz,
             .to = hertz,
             .overtones = {0.5, 0.25, 0.12},
             .damping = 0.3};
    Tone other = one;
    other.from = other.to = hertz * 1.006;
    return {one, other};
}

std::vector<Voice> joined(std::vector<Voice> first, const std::vector<Voice>& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

} // namespace

std::vector<Recipe> recipes() {
    return {
        {"Basso",
         {Tone{.envelope = {.length = 0.55, .attack = 0.012, .decay = 0.17},
               .from = 104,
               .to = 98,
               .glide = 0.05,
               .overtones = {0.6, 0.35, 0.2, 0.1},
               .damping = 0.4}}},
        {"Blow",
         {Noise{.envelope = {.length = 0.5, .attack = 0.14, .decay = 0.13},
                .from = 420,
                .to = 1100,
                .glide = 0.25,
                .width = 0.7}}},
        {"Bottle",
         {Tone{.envelope = {.length = 0.45, .attack = 0.035, .decay = 0.16},
               .from = 268,
               .to = 294,
               .glide = 0.03,
               .overtones = {0.06, 0.1}},
          Noise{.envelope = {.length = 0.3, .level = 0.5, .attack = 0.02, .decay = 0.06},
                .from = 588,
                .to = 588,
                .width = 0.4}}},
        {"Frog", {croak(0, 0.15, 165), croak(0.17, 0.2, 196)}},
        {"Funk", {pluck(0, 98, 0.14), pluck(0.13, 147, 0.1), pluck(0.22, 131, 0.3)}},
        {"Glass",
         {ring(1865, 1, 0.24, 0.8), ring(1869, 0.5, 0.24, 0.8), ring(4290, 0.45, 0.12, 0.6),
          ring(7460, 0.2, 0.05, 0.3), ring(11190, 0.1, 0.02, 0.12)}},
        {"Hero", {note(0, 392, 0.2, 0.12), note(0.1, 494, 0.2, 0.12), note(0.2, 784, 0.55, 0.2)}},
        {"Morse", {blip(0, 0.06), blip(0.11, 0.16)}},
        {"Ping",
         {Tone{.envelope = {.length = 0.5, .attack = 0.002, .decay = 0.12},
               .from = 1245,
               .to = 1245,
               .overtones = {0.25, 0.06},
               .damping = 1}}},
        {"Pop",
         {Tone{.envelope = {.length = 0.11, .attack = 0.003, .decay = 0.025},
               .from = 320,
               .to = 950,
               .glide = 0.03},
          Noise{.envelope = {.length = 0.03, .level = 0.3, .attack = 0.001, .decay = 0.005},
                .from = 2400,
                .to = 2400,
                .width = 0.8}}},
        {"Purr",
         {Tone{.envelope = {.length = 0.6, .attack = 0.1, .decay = 0.35},
               .from = 88,
               .to = 82,
               .glide = 0.3,
               .overtones = {0.8, 0.5, 0.35, 0.2},
               .tremolo = {.hertz = 24, .depth = 0.8}},
          Noise{.envelope = {.length = 0.6, .level = 0.6, .attack = 0.1, .decay = 0.35},
                .from = 300,
                .to = 300,
                .width = 0.9,
                .tremolo = {.hertz = 24, .depth = 0.9}}}},
        {"Sosumi", joined(together(0, 880, 0.3), together(0.15, 587, 0.5))},
        {"Submarine",
         {Tone{.envelope = {.length = 0.55, .attack = 0.03, .decay = 0.2},
               .from = 350,
               .to = 343,
               .glide = 0.2,
               .overtones = {0.12}},
          Tone{.envelope = {.start = 0.34, .length = 0.46, .level = 0.3, .attack = 0.03, .decay = 0.18},
               .from = 343,
               .to = 338,
               .glide = 0.2}}},
        {"Tink", {ring(3520, 1, 0.025, 0.15), ring(5870, 0.6, 0.02, 0.12), ring(9490, 0.35, 0.012, 0.08)}},
    };
}

} // namespace kestrova::sounds
