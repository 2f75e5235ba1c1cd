#pragma once

#include "platform/PrivateLibrary.h"

namespace pelistra::macos {

// Private libraries by the dynamic loader: nothing of them is linked.
class SkyLightLibrary final : public PrivateLibrary {
public:
    [[nodiscard]] LibraryHandle open(const std::string& path, int mode) override;
    void close(LibraryHandle handle) override;
    [[nodiscard]] MainConnectionFunction resolveMainConnection(LibraryHandle handle,
                                                               const std::string& symbol) override;
    [[nodiscard]] WindowCountFunction resolveWindowCount(LibraryHandle handle,
                                                         const std::string& symbol) override;
    [[nodiscard]] MenuBarWindowListFunction
    resolveMenuBarWindowList(LibraryHandle handle, const std::string& symbol) override;
    [[nodiscard]] WindowFrameFunction resolveWindowFrame(LibraryHandle handle,
                                                         const std::string& symbol) override;
};

} // namespace pelistra::macos
