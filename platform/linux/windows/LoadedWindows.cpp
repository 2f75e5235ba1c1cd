#include "platform/linux/windows/LoadedWindows.h"

#include <future>
#include <system_error>
#include <utility>

#include <dlfcn.h>
#include <fontconfig/fontconfig.h>

namespace pelistra::linux {

namespace {

constexpr auto fileName = "pelistra-windows.so";

// Says in the log what a window would have shown.
class Complaint {
public:
    Complaint(Logger logger, const std::string& failure)
        : logger_(std::move(logger)), message_("Cannot show a window: " + failure) {}

    void log() const { logger_.error(message_); }

private:
    Logger logger_;
    std::string message_;
};

class AbsentWindow final : public Window {
public:
    explicit AbsentWindow(Complaint complaint) : complaint_(std::move(complaint)) {}

    void setTitle(std::string_view /*title*/) override {}
    void setTitleVisibility(TitleVisibility /*visibility*/) override {}
    void setTitlebarAppearsTransparent(bool /*transparent*/) override {}
    void setMovableByWindowBackground(bool /*movable*/) override {}
    void setReleasedWhenClosed(bool /*released*/) override {}
    void setContentMinSize(Size /*size*/) override {}
    void setContent(std::shared_ptr<ui::Content> /*content*/) override {}
    void center() override {}
    void showWindow() override { complaint_.log(); }
    void close() override {}

private:
    Complaint complaint_;
};

class AbsentPanel final : public Panel {
public:
    explicit AbsentPanel(Complaint complaint) : complaint_(std::move(complaint)) {}

    void setContent(std::shared_ptr<ui::Content> /*content*/) override {}
    void setContentSize(Size /*size*/) override {}
    void setFrameOrigin(ScreenPoint /*origin*/) override {}
    void orderFrontRegardless() override { complaint_.log(); }
    void orderOut() override {}
    [[nodiscard]] bool isVisible() const override { return false; }

private:
    Complaint complaint_;
};

// Null with the reason in `failure`. The library stays: toolkits do not like to be unloaded.
WindowsModuleEntry entryOf(const std::filesystem::path& file, std::string& failure) {
    void* const library = ::dlopen(file.c_str(), RTLD_LAZY | RTLD_LOCAL | RTLD_NODELETE);
    void* const entry = library != nullptr ? ::dlsym(library, windowsModuleEntry) : nullptr;
    if (entry == nullptr) {
        const char* const reason = ::dlerror();
        failure = reason != nullptr ? reason : "no reason is known";
    }
    return reinterpret_cast<WindowsModuleEntry>(entry);
}

} // namespace

std::filesystem::path windowsModuleFor(const std::filesystem::path& program) {
    const auto folder = program.parent_path();
    std::error_code error;
    const auto beside = folder / fileName;
    return std::filesystem::is_regular_file(beside, error)
               ? beside
               : folder.parent_path() / PELISTRA_LIBRARY_FOLDER / fileName;
}

LoadedWindows::LoadedWindows(WindowServices services, std::filesystem::path file, LogSink& log)
    : services_(std::move(services)), file_(std::move(file)), logger_(log, "windows") {}

std::unique_ptr<Window> LoadedWindows::window(Size contentSize, std::uint32_t styleMask) {
    if (WindowsModule* const module = load()) {
        return module->windows().window(contentSize, styleMask);
    }
    return std::make_unique<AbsentWindow>(Complaint(logger_, failure_));
}

std::unique_ptr<Panel> LoadedWindows::panel(const PanelConfiguration& configuration) {
    if (WindowsModule* const module = load()) {
        return module->panels().panel(configuration);
    }
    return std::make_unique<AbsentPanel>(Complaint(logger_, failure_));
}

WindowsModule* LoadedWindows::load() {
    if (module_ == nullptr) {
        // Qt needs the fonts' configuration, and reading it takes as long as loading Qt.
        const auto fonts = std::async(std::launch::async, ::FcInit);
        const auto enter = entryOf(file_, failure_);
        // What follows changes the environment, which the other thread reads.
        fonts.wait();
        if (enter != nullptr) {
            module_.reset(enter(services_, failure_));
        } else {
            ::FcFini();
        }
    }
    return module_.get();
}

} // namespace pelistra::linux
