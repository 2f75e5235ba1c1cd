#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>

namespace pelistra::testing {

// The system refuses what a fault is made of, so that it cannot be tried.
class NotPossibleHere : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Gives this process, and all that it starts, mounts that nobody else sees. Call it once, first of
// all. Where the system refuses that, what follows throws NotPossibleHere.
void enterPrivateMounts();

// Something mounted over a folder, as long as this object lives.
class Mounted {
public:
    Mounted(const Mounted&) = delete;
    Mounted& operator=(const Mounted&) = delete;
    ~Mounted();

protected:
    explicit Mounted(std::filesystem::path folder);

private:
    std::filesystem::path folder_;
};

// A folder on a disk of its own without a free byte; the files that it held can be read.
class FullDisk : public Mounted {
public:
    explicit FullDisk(const std::filesystem::path& folder);
};

// A folder in which nothing can be made, changed or removed, by root neither.
class ReadOnly : public Mounted {
public:
    explicit ReadOnly(const std::filesystem::path& folder);
};

} // namespace pelistra::testing
