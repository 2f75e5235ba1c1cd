#include "menubar/BarWindow.h"

#include <array>
#include <string_view>

#include <unistd.h>

#include <xcb/xcb_ewmh.h>
#include <xcb/xcb_icccm.h>

namespace pelistra::menubar {

namespace {

constexpr std::string_view name = "Menu Bar";
// Instance and class, each with its final zero.
constexpr std::string_view windowClass{"pelistra-menubar\0Pelistra-menubar\0", 34};
constexpr std::uint32_t allDesktops = 0xFFFFFFFF;

class Ewmh {
public:
    explicit Ewmh(xcb_connection_t* connection)
        : ready_(xcb_ewmh_init_atoms_replies(&data_, xcb_ewmh_init_atoms(connection, &data_),
                                             nullptr) != 0) {}
    Ewmh(const Ewmh&) = delete;
    Ewmh& operator=(const Ewmh&) = delete;
    ~Ewmh() {
        // When the server does not answer, the library has freed it already.
        if (ready_) {
            xcb_ewmh_connection_wipe(&data_);
        }
    }
    xcb_ewmh_connection_t* get() { return &data_; }

private:
    xcb_ewmh_connection_t data_{};
    bool ready_;
};

} // namespace

BarWindow::BarWindow(const Server& server)
    : server_(&server), window_(server.xcb(), server.connection().newId()) {
    const xcb_screen_t& screen = server.connection().screen();
    const std::array<std::uint32_t, 2> values{
        XCB_BACK_PIXMAP_NONE, XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_STRUCTURE_NOTIFY};
    xcb_create_window(server.xcb(), XCB_COPY_FROM_PARENT, window_.id(), screen.root, 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, screen.root_visual,
                      XCB_CW_BACK_PIXMAP | XCB_CW_EVENT_MASK, values.data());
    // Its children are composed by the painter and do not clip it.
    xcb_composite_redirect_subwindows(server.xcb(), window_.id(), XCB_COMPOSITE_REDIRECT_MANUAL);
    describe();
}

void BarWindow::describe() const {
    xcb_connection_t* x = server_->xcb();
    Ewmh ewmh(x);
    xcb_ewmh_set_wm_name(ewmh.get(), id(), name.size(), name.data());
    xcb_icccm_set_wm_name(x, id(), XCB_ATOM_STRING, 8, name.size(), name.data());
    xcb_icccm_set_wm_class(x, id(), windowClass.size(), windowClass.data());
    xcb_ewmh_set_wm_pid(ewmh.get(), id(), static_cast<std::uint32_t>(::getpid()));
    std::array<char, 256> host{};
    if (::gethostname(host.data(), host.size() - 1) == 0) {
        const std::string_view machine(host.data());
        xcb_icccm_set_wm_client_machine(x, id(), XCB_ATOM_STRING, 8,
                                        static_cast<std::uint32_t>(machine.size()), machine.data());
    }
    xcb_atom_t type = ewmh.get()->_NET_WM_WINDOW_TYPE_DOCK;
    xcb_ewmh_set_wm_window_type(ewmh.get(), id(), 1, &type);
    // A dock is below full-screen windows by itself; asking for "above" would undo that.
    std::array<xcb_atom_t, 3> states{ewmh.get()->_NET_WM_STATE_STICKY,
                                     ewmh.get()->_NET_WM_STATE_SKIP_TASKBAR,
                                     ewmh.get()->_NET_WM_STATE_SKIP_PAGER};
    xcb_ewmh_set_wm_state(ewmh.get(), id(), states.size(), states.data());
    xcb_ewmh_set_wm_desktop(ewmh.get(), id(), allDesktops);
    xcb_icccm_wm_hints_t hints{};
    xcb_icccm_wm_hints_set_input(&hints, 0);
    xcb_icccm_set_wm_hints(x, id(), &hints);
}

void BarWindow::place(const PixelRect& frame, bool reserve) {
    if (frame == frame_ && reserve == reserve_) {
        return;
    }
    frame_ = frame;
    reserve_ = reserve;
    xcb_connection_t* x = server_->xcb();
    xcb_size_hints_t hints{};
    xcb_icccm_size_hints_set_position(&hints, 1, frame.x, frame.y);
    xcb_icccm_size_hints_set_size(&hints, 1, frame.width, frame.height);
    xcb_icccm_size_hints_set_min_size(&hints, frame.width, frame.height);
    xcb_icccm_size_hints_set_max_size(&hints, frame.width, frame.height);
    xcb_icccm_set_wm_normal_hints(x, id(), &hints);
    setStruts();
    const std::array<std::uint32_t, 4> values{
        static_cast<std::uint32_t>(frame.x), static_cast<std::uint32_t>(frame.y),
        static_cast<std::uint32_t>(frame.width), static_cast<std::uint32_t>(frame.height)};
    xcb_configure_window(x, id(),
                         XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH |
                             XCB_CONFIG_WINDOW_HEIGHT,
                         values.data());
}

void BarWindow::setStruts() const {
    // From the top edge of the whole screen, wherever the monitor lies on it.
    const auto top = reserve_ ? static_cast<std::uint32_t>(frame_.y + frame_.height) : 0;
    xcb_ewmh_wm_strut_partial_t strut{};
    strut.top = top;
    if (reserve_) {
        strut.top_start_x = static_cast<std::uint32_t>(frame_.x);
        strut.top_end_x = static_cast<std::uint32_t>(frame_.x + frame_.width - 1);
    }
    Ewmh ewmh(server_->xcb());
    xcb_ewmh_set_wm_strut(ewmh.get(), id(), 0, 0, top, 0);
    xcb_ewmh_set_wm_strut_partial(ewmh.get(), id(), strut);
}

void BarWindow::show() const {
    xcb_map_window(server_->xcb(), id());
}

} // namespace pelistra::menubar
