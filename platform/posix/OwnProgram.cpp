#include "platform/posix/OwnProgram.h"

#include <string>
#include <string_view>
#include <system_error>

namespace pelistra::posix {

std::filesystem::path ownProgram() {
    std::error_code error;
    std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
    // After an update the running program's file has gone, and the new one is in its place.
    constexpr std::string_view deleted = " (deleted)";
    std::string text = program.string();
    if (text.ends_with(deleted)) {
        text.resize(text.size() - deleted.size());
        program = text;
    }
    return program;
}

} // namespace pelistra::posix
