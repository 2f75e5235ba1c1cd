#pragma once

#include "base/Geometry.h"
#include "platform/WindowList.h"

#include <cstdint>
#include <functional>
#include <string>

namespace pelistra {

// A connection to the window server, as the server numbers it.
using ConnectionId = std::int32_t;
// 0 means success; no other code is interpreted.
using WindowServerError = std::int32_t;

inline constexpr WindowServerError windowServerSuccess = 0;

// The out parameters point to memory that the caller owns and has initialised. A rectangle has the
// memory layout of a CGRect: four 64-bit floats, in points, with the origin at the top left of the
// main display.
static_assert(sizeof(Rect) == 4 * sizeof(double));

using MainConnectionFunction = std::function<ConnectionId()>;
using WindowCountFunction = std::function<WindowServerError(
    ConnectionId connection, ConnectionId targetConnection, std::int32_t* outCount)>;
using MenuBarWindowListFunction = std::function<WindowServerError(
    ConnectionId connection, ConnectionId targetConnection, std::int32_t capacity,
    WindowId* outList, std::int32_t* outCount)>;
using WindowFrameFunction =
    std::function<WindowServerError(ConnectionId connection, WindowId window, Rect* outRect)>;

// What dlopen returned, or what stands for it; null when there is no library.
using LibraryHandle = void*;

// Bits of the mode that a library is opened with, by the values of macOS's dlfcn.h.
namespace library_mode {
inline constexpr int lazy = 1;
inline constexpr int local = 4;
} // namespace library_mode

// The window server's private functions, found at run time by library path and symbol name. Each
// resolving operation takes a handle that is open and answers an empty function when the library
// has no such symbol. Resolved functions may be called until the handle is closed.
class PrivateLibrary {
public:
    PrivateLibrary() = default;
    PrivateLibrary(const PrivateLibrary&) = delete;
    PrivateLibrary& operator=(const PrivateLibrary&) = delete;
    virtual ~PrivateLibrary() = default;

    // Null when the library cannot be opened. `mode` is a set of library_mode bits.
    [[nodiscard]] virtual LibraryHandle open(const std::string& path, int mode) = 0;
    // Gives up a handle that open() answered, once.
    virtual void close(LibraryHandle handle) = 0;

    // Answers this process's connection to the window server.
    [[nodiscard]] virtual MainConnectionFunction
    resolveMainConnection(LibraryHandle handle, const std::string& symbol) = 0;
    // Writes how many windows there are; a target connection of 0 means those of every process.
    [[nodiscard]] virtual WindowCountFunction resolveWindowCount(LibraryHandle handle,
                                                                 const std::string& symbol) = 0;
    // Writes the menu-bar windows' ids, at most `capacity` of them, and how many there are.
    [[nodiscard]] virtual MenuBarWindowListFunction
    resolveMenuBarWindowList(LibraryHandle handle, const std::string& symbol) = 0;
    // Writes where one window is.
    [[nodiscard]] virtual WindowFrameFunction resolveWindowFrame(LibraryHandle handle,
                                                                 const std::string& symbol) = 0;
};

} // namespace pelistra
