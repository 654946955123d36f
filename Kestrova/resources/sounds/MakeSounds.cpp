#include "Kestrova/resources/sounds/Recipes.h"
#include "Kestrova/resources/sounds/Synthesizer.h"
#include "Kestrova/resources/sounds/WaveFile.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

/// Writes every sound into the folder that it is given.
int main(int argc, char* argv[]) {
    using namespace kestrova::sounds;
    if (argc != 2) {
        std::fputs("usage: make_sounds FOLDER\n", stderr);
        return 2;
    }
    for (const Recipe& recipe : recipes()) {
        const auto path = std::filesystem::path(argv[1]) / (recipe.name + ".wav");
        std::ofstream file(path, std::ios::binary);
        file << waveFile(synthesized(recipe), samplesPerSecond);
        file.close();
        if (!file) {
            std::fprintf(stderr, "make_sounds: %s cannot be written\n", path.c_str());
            return 1;
        }
    }
    return 0;
}
