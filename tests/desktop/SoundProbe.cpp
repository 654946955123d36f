#include "Platform/x11/CanberraSoundPlayer.h"

#include <iostream>
#include <string>

/// Plays the sounds whose names it reads, a line each, until its input ends. The first argument is the folder
/// of the program whose sounds they are.
int main(int argc, char* argv[]) {
    if (argc != 2)
        return 2;
    kestrova::CanberraSoundPlayer player(QString::fromLocal8Bit(argv[1]),
                                         QStringLiteral("org.kestrova.SoundProbe"));
    for (std::string name; std::getline(std::cin, name);)
        player.play(QString::fromStdString(name));
    return 0;
}
