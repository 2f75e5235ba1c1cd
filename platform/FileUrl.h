#pragma once

#include <string>

namespace pelistra {

// A file URL, by its absolute path: UTF-8 (or whatever bytes the file system has), nothing escaped.
struct FileUrl {
    std::string path;

    bool operator==(const FileUrl&) const = default;
};

} // namespace pelistra
