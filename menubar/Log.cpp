#include "menubar/Log.h"

#include <cstdio>
#include <string>

namespace pelistra::menubar {

void log(std::string_view message) {
    std::string line = "pelistra-menubar: ";
    line.append(message).push_back('\n');
    std::fwrite(line.data(), 1, line.size(), stderr);
}

} // namespace pelistra::menubar
