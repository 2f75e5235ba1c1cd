// Texts around the icons of the session bus: what the bar and its two helpers tell each other, the
// file of items to come back to, and the addresses that programs register. Input: any text; what it
// is made of also makes a proper request.

#include "menubar/icons/IconRequest.h"
#include "menubar/menu/MenuRequest.h"
#include "menubar/notifier/ItemAddress.h"
#include "menubar/notifier/RememberedItems.h"
#include "tests/fuzz/Check.h"

#include <algorithm>

namespace pelistra::fuzz {
namespace {

// Whatever is understood is said again in the same words.
template <class Request>
void checkForeign(const std::string& text) {
    if (const auto request = Request::parse(text)) {
        check(Request::parse(request->text()) == request);
    }
}

std::string takePart(Input& input) {
    std::string part = input.line();
    std::erase(part, '\0');
    return part;
}

void checkRoundTrips(Input input) {
    const menubar::MenuRequest menu{.service = takePart(input),
                                    .item = takePart(input),
                                    .menu = takePart(input),
                                    .x = static_cast<int>(input.word()),
                                    .y = static_cast<int>(input.word()),
                                    .dark = input.byte() % 2 == 0,
                                    .iconTheme = takePart(input),
                                    .iconThemePath = takePart(input)};
    check(menubar::MenuRequest::parse(menu.text()) == menu);
    const menubar::IconRequest icon{.side = 1 + input.byte() % menubar::longestIconSide,
                                    .theme = takePart(input),
                                    .foreground = "#010203",
                                    .error = "#040506",
                                    .warning = "#070809",
                                    .success = "#0a0b0c",
                                    .themePath = takePart(input),
                                    .name = takePart(input)};
    const auto again = menubar::IconRequest::parse(icon.text());
    check(!again || *again == icon);
}

void checkAddresses(const std::string& text) {
    constexpr auto bus = "0123456789abcdef0123456789abcdef";
    const auto items = menubar::RememberedItems::parse(text, bus);
    check(menubar::RememberedItems::parse(menubar::RememberedItems::text(bus, items), bus) ==
          items);
    if (const auto address = menubar::addressIn(text, ":1.7")) {
        check(!address->service.empty() && address->path.starts_with('/'));
        check(menubar::addressIn(address->text(), "") == address);
    }
}

} // namespace
} // namespace pelistra::fuzz

void pelistra::fuzz::tryInput(Input input) {
    checkRoundTrips(input);
    const std::string text = input.restAsText();
    checkForeign<menubar::MenuRequest>(text);
    checkForeign<menubar::IconRequest>(text);
    checkAddresses(text);
}
