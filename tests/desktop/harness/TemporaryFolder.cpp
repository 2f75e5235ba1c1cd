#include "tests/desktop/harness/TemporaryFolder.h"

#include <cerrno>
#include <cstdlib>
#include <string>
#include <system_error>

namespace pelistra::testing {

TemporaryFolder::TemporaryFolder() {
    std::string pattern =
        (std::filesystem::temp_directory_path() / "pelistra-test-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) {
        throw std::system_error(errno, std::generic_category(), "temporary folder");
    }
    path_ = pattern;
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

} // namespace pelistra::testing
