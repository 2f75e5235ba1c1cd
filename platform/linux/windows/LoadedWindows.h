#pragma once

#include "base/Logger.h"
#include "platform/linux/windows/WindowsModule.h"

#include <filesystem>
#include <memory>

namespace pelistra::linux {

// The file of the module for a program in that place: beside it in the build's folder, else in the
// private folder for libraries of the same installation.
[[nodiscard]] std::filesystem::path windowsModuleFor(const std::filesystem::path& program);

// Windows and panels by the module, which is loaded when the first of them is asked for and stays.
// Without it, each showing of a window is an error in the log and nothing else.
class LoadedWindows final : public Windows, public Panels {
public:
    LoadedWindows(WindowServices services, std::filesystem::path file, LogSink& log);
    LoadedWindows(const LoadedWindows&) = delete;
    LoadedWindows& operator=(const LoadedWindows&) = delete;
    ~LoadedWindows() override = default;

    [[nodiscard]] std::unique_ptr<Window> window(Size contentSize,
                                                 std::uint32_t styleMask) override;
    [[nodiscard]] std::unique_ptr<Panel> panel(const PanelConfiguration& configuration) override;

    // Null while nothing has asked for it.
    [[nodiscard]] WindowsModule* loaded() const { return module_.get(); }
    // Loads it if need be. Null when it cannot be had.
    [[nodiscard]] WindowsModule* load();
    // Ends all windows, and what still shows in them.
    void unload() { module_.reset(); }

private:
    WindowServices services_;
    std::filesystem::path file_;
    Logger logger_;
    std::unique_ptr<WindowsModule> module_;
    std::string failure_;
};

} // namespace pelistra::linux
