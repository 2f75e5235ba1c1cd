#include "platform/macos/SkyLightLibrary.h"

#import <CoreGraphics/CoreGraphics.h>

#include <dlfcn.h>

namespace pelistra::macos {

namespace {

static_assert(library_mode::lazy == RTLD_LAZY && library_mode::local == RTLD_LOCAL);

// The functions as the library has them; a CGError of 0 is success.
using MainConnection = std::int32_t (*)();
using WindowCount = std::int32_t (*)(std::int32_t, std::int32_t, std::int32_t*);
using MenuBarWindowList = std::int32_t (*)(std::int32_t, std::int32_t, std::int32_t, std::uint32_t*,
                                           std::int32_t*);
using WindowFrame = std::int32_t (*)(std::int32_t, std::uint32_t, CGRect*);

template <class Function> Function resolve(LibraryHandle handle, const std::string& symbol) {
    return reinterpret_cast<Function>(dlsym(handle, symbol.c_str()));
}

} // namespace

LibraryHandle SkyLightLibrary::open(const std::string& path, int mode) {
    return dlopen(path.c_str(), mode);
}

void SkyLightLibrary::close(LibraryHandle handle) { dlclose(handle); }

MainConnectionFunction SkyLightLibrary::resolveMainConnection(LibraryHandle handle,
                                                              const std::string& symbol) {
    return resolve<MainConnection>(handle, symbol);
}

WindowCountFunction SkyLightLibrary::resolveWindowCount(LibraryHandle handle,
                                                        const std::string& symbol) {
    return resolve<WindowCount>(handle, symbol);
}

MenuBarWindowListFunction SkyLightLibrary::resolveMenuBarWindowList(LibraryHandle handle,
                                                                    const std::string& symbol) {
    return resolve<MenuBarWindowList>(handle, symbol);
}

WindowFrameFunction SkyLightLibrary::resolveWindowFrame(LibraryHandle handle,
                                                        const std::string& symbol) {
    const auto function = resolve<WindowFrame>(handle, symbol);
    if (function == nullptr) {
        return {};
    }
    return [function](ConnectionId connection, WindowId window, Rect* outRect) {
        CGRect rect = CGRectMake(outRect->origin.x, outRect->origin.y, outRect->size.width,
                                 outRect->size.height);
        const std::int32_t error = function(connection, window, &rect);
        *outRect =
            makeRect<GlobalSpace>(rect.origin.x, rect.origin.y, rect.size.width, rect.size.height);
        return error;
    };
}

} // namespace pelistra::macos
