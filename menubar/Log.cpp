#include "menubar/Log.h"

#include "menubar/ForeignText.h"

#include <cstdio>
#include <string>

namespace pelistra::menubar {

void log(std::string_view message) {
    std::string line = "pelistra-menubar: ";
    // One line, whatever it quotes.
    line.append(cleanText(message, message.size())).push_back('\n');
    std::fwrite(line.data(), 1, line.size(), stderr);
}

} // namespace pelistra::menubar
