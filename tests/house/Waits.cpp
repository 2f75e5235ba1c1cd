#include "tests/house/Waits.h"

#include "tests/house/Sources.h"

#include <regex>

namespace pelistra::testing {

std::vector<std::string> endlessWaits(const std::string& sourceText) {
    static const std::regex call(R"(\bxcb_(wait_for_\w+|request_check|aux_sync|get_extension_data|)"
                                 R"(render_util_query_formats|(?!discard_|poll_for_))"
                                 R"(\w+_reply(_from_fds)?)\s*\()");
    std::vector<std::string> calls;
    for (std::sregex_iterator found(sourceText.begin(), sourceText.end(), call), end; found != end;
         ++found) {
        calls.push_back("xcb_" + found->str(1));
    }
    return calls;
}

std::vector<std::string> endlessWaitsOfTree(const std::filesystem::path& top) {
    std::vector<std::string> all;
    for (const char* folder : {"app", "menubar", "platform"}) {
        for (const auto& file : sourcesBelow(top / folder)) {
            if (file == top / "platform" / "x11" / "Connection.cpp") {
                continue;
            }
            for (const std::string& call : endlessWaits(contentOf(file))) {
                all.push_back(file.lexically_relative(top).string() + ": " + call);
            }
        }
    }
    return all;
}

} // namespace pelistra::testing
