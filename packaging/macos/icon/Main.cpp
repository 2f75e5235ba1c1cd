#include "packaging/macos/icon/Files.h"

#include <cstdlib>
#include <exception>
#include <fstream>
#include <iostream>
#include <string>

// Writes the icon file: pelistra_icon OUTPUT.icns, or one size of it: pelistra_icon OUTPUT.png
// SIDE.
int main(int argc, char** argv) {
    if (argc != 2 && argc != 3) {
        std::cerr << "Usage: pelistra_icon OUTPUT.icns | pelistra_icon OUTPUT.png SIDE\n";
        return 2;
    }
    try {
        using namespace pelistra::icon;
        const Bytes bytes = argc == 2 ? icnsFile() : pngOf(drawIcon(std::stoi(argv[2])));
        std::ofstream file(argv[1], std::ios::binary);
        file.write(reinterpret_cast<const char*>(bytes.data()),
                   static_cast<std::streamsize>(bytes.size()));
        file.close();
        if (!file) {
            std::cerr << "pelistra_icon: cannot write " << argv[1] << '\n';
            return 1;
        }
    } catch (const std::exception& error) {
        std::cerr << "pelistra_icon: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
