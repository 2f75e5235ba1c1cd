#include "platform/linux/statusitem/TrayIconWindow.h"

#include "platform/posix/Environment.h"
#include "platform/x11/Atoms.h"
#include "platform/x11/Properties.h"

#include <string_view>

#include <unistd.h>

namespace pelistra::linux {

namespace {

// Of XEmbed: the version that we speak, and the flag that asks the embedder to map the window.
constexpr std::uint32_t xembedVersion = 0;
constexpr std::uint32_t xembedMapped = 1;

// Of WM_NORMAL_HINTS: which members count, and where they stand.
constexpr std::uint32_t hasMinimumSize = 1U << 4U;
constexpr std::uint32_t hasBaseSize = 1U << 8U;
constexpr std::size_t hintWords = 18;
constexpr std::size_t minimumWidth = 5;
constexpr std::size_t baseWidth = 15;

} // namespace

TrayIconAtoms::TrayIconAtoms(const x11::Connection& connection)
    : atoms_(x11::internAtoms(
          connection, std::array<std::string_view, NameCount>{
                          "_XEMBED_INFO", "_XEMBED", "_NET_WM_NAME", "_NET_WM_PID", "UTF8_STRING",
                          "_PELISTRA_PREFERRED_POSITION", "_PELISTRA_MENUBAR_POSITION"})) {}

TrayIconWindow::TrayIconWindow(const x11::Connection& connection, const TrayIconAtoms& atoms,
                               const Traits& traits)
    : connection_(connection), atoms_(atoms), window_(connection.newId()),
      visual_(traits.visual.type->visual_id), colormap_(connection.newId()) {
    createWindow(traits);
    describe(traits);
}

TrayIconWindow::~TrayIconWindow() {
    xcb_destroy_window(connection_.get(), window_);
    xcb_free_colormap(connection_.get(), colormap_);
}

void TrayIconWindow::createWindow(const Traits& traits) {
    xcb_create_colormap(connection_.get(), XCB_COLORMAP_ALLOC_NONE, colormap_, connection_.root(),
                        visual_);
    const bool hasAlpha = traits.visual.depth == x11::Connection::alphaDepth;
    xcb_create_window_value_list_t values{};
    values.background_pixel = 0;
    values.background_pixmap = XCB_BACK_PIXMAP_PARENT_RELATIVE;
    values.border_pixel = 0;
    values.event_mask = XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_STRUCTURE_NOTIFY |
                        XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_BUTTON_PRESS |
                        XCB_EVENT_MASK_BUTTON_RELEASE | XCB_EVENT_MASK_ENTER_WINDOW |
                        XCB_EVENT_MASK_LEAVE_WINDOW;
    values.colormap = colormap_;
    // Without an alpha channel, the tray's own background shows behind the picture. Such a window
    // can only be made where its parent has the same depth, which the root may not have: it gets
    // that background once it is embedded.
    const bool asRoot = traits.visual.depth == connection_.screen().root_depth;
    const std::uint32_t background = hasAlpha || !asRoot ? XCB_CW_BACK_PIXEL : XCB_CW_BACK_PIXMAP;
    xcb_create_window_aux(
        connection_.get(), traits.visual.depth, window_, connection_.root(), 0, 0,
        static_cast<std::uint16_t>(traits.width), static_cast<std::uint16_t>(traits.height), 0,
        XCB_WINDOW_CLASS_INPUT_OUTPUT, visual_,
        background | XCB_CW_BORDER_PIXEL | XCB_CW_EVENT_MASK | XCB_CW_COLORMAP, &values);
}

void TrayIconWindow::describe(const Traits& traits) {
    using namespace std::string_view_literals;
    x11::setText(connection_, window_, XCB_ATOM_WM_NAME, atoms_[TrayIconAtoms::Utf8String],
                 traits.sortingName);
    x11::setText(connection_, window_, atoms_[TrayIconAtoms::NetWmName],
                 atoms_[TrayIconAtoms::Utf8String], traits.name);
    x11::setText(connection_, window_, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING,
                 traits.sortingName + std::string("\0Pelistra\0"sv));
    // Whoever cannot ask the server whose window it is has to know on which machine the process
    // runs.
    x11::setText(connection_, window_, XCB_ATOM_WM_CLIENT_MACHINE, XCB_ATOM_STRING,
                 posix::hostName());
    const auto processId = static_cast<std::uint32_t>(::getpid());
    x11::setWords(connection_, window_, atoms_[TrayIconAtoms::NetWmPid], XCB_ATOM_CARDINAL,
                  std::array{processId});
    x11::setWords(connection_, window_, atoms_[TrayIconAtoms::XembedInfo],
                  atoms_[TrayIconAtoms::XembedInfo], std::array{xembedVersion, xembedMapped});
    if (traits.preferredPosition) {
        x11::setWords(connection_, window_, atoms_[TrayIconAtoms::PreferredPosition],
                      XCB_ATOM_CARDINAL, std::array{*traits.preferredPosition});
    }
    setSizeHints(traits.width, traits.height);
}

void TrayIconWindow::requestSize(int width, int height) {
    setSizeHints(width, height);
    const std::array<std::uint32_t, 2> size{static_cast<std::uint32_t>(width),
                                            static_cast<std::uint32_t>(height)};
    xcb_configure_window(connection_.get(), window_,
                         XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, size.data());
}

void TrayIconWindow::setSizeHints(int width, int height) {
    std::array<std::uint32_t, hintWords> hints{};
    hints[0] = hasMinimumSize | hasBaseSize;
    hints[minimumWidth] = static_cast<std::uint32_t>(width);
    hints[minimumWidth + 1] = static_cast<std::uint32_t>(height);
    hints[baseWidth] = static_cast<std::uint32_t>(width);
    hints[baseWidth + 1] = static_cast<std::uint32_t>(height);
    x11::setWords(connection_, window_, XCB_ATOM_WM_NORMAL_HINTS, XCB_ATOM_WM_SIZE_HINTS, hints);
}

} // namespace pelistra::linux
