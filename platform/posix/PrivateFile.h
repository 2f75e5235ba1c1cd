#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace pelistra::posix {

// Files that only the user may read (mode 0600) in folders that only the user may enter (0700). A
// folder that is there already keeps the rights that somebody gave it.

// The content of a file; empty when it cannot be read, is not a regular file, or is larger than
// `byteLimit`.
[[nodiscard]] std::optional<std::string> readFile(const std::filesystem::path& path,
                                                  std::size_t byteLimit);

// What a file is worth: whether it is to be there after a power cut, or means nothing by then.
enum class Worth { OutlivesPowerCut, OutlivesProcess };

// Replaces a file's content so that whoever reads it, also after a power cut, sees the whole old or
// the whole new content: a new file beside it, synced, renamed over it, the folder synced. Missing
// folders are made. What is worth less is not synced, which would wait for the disk. Returns an
// empty text on success, else the system's reason.
[[nodiscard]] std::string writeFileAtomically(const std::filesystem::path& path,
                                              std::string_view content,
                                              Worth worth = Worth::OutlivesPowerCut);

} // namespace pelistra::posix
