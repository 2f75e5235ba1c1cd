#pragma once

#include "menubar/ItemPicture.h"
#include "menubar/ItemTexts.h"
#include "menubar/OrderMemory.h"
#include "menubar/Retrieval.h"
#include "menubar/SizeWish.h"
#include "menubar/Straying.h"
#include "menubar/XResource.h"

#include <cstdint>
#include <optional>
#include <string>

namespace pelistra::menubar {

// The life of a docked window.
enum class ItemState {
    // It is being moved into its container. In the save-set; not mapped; no slot.
    Arriving,
    // Embedded, but its program does not want it shown. Not mapped; no slot.
    Waiting,
    // Embedded and mapped; has a slot, which may lie off the screen.
    Shown,
};

// A window in the bar. It belongs to its program, unless that has none and the bar lent it one; the
// container around it is ours.
struct DockedItem {
    xcb_window_t client = XCB_NONE;
    WindowHandle container;
    // The client itself, where it is the bar's: the icon of a program that has no window.
    WindowHandle own;
    // The process behind such an icon; 0 when the session bus does not know it.
    int process = 0;
    // The container's depth; equal to the client's.
    std::uint8_t depth = 0;
    ItemIdentity identity;
    // As last read.
    ItemTexts texts;
    ItemState state = ItemState::Arriving;
    SizeWish wish;
    std::optional<PixelSize> hintedSize;
    // Whether _XEMBED_INFO, as last read, asks for the window to be mapped.
    bool wantsMapped = true;
    std::uint32_t xembedVersion = 0;

    // Where it stands in the bar, in device pixels from the bar's left edge.
    int x = 0;
    int width = 0;
    int height = 0;
    // Whether the bar's picture shows it there.
    bool occupiesSlot = false;
    ItemPicture picture;

    // What the events of one batch left to be done.
    bool hintsStale = false;
    bool embedInfoStale = false;
    bool textsStale = false;
    // It moved or resized itself, and has to be put back.
    bool strayed = false;
    // It asked for a size and has to be told what it has, whether that changed or not.
    bool replyDue = false;

    // The first request of its docking: what fails before it was about another window, which had
    // the same number and is dead.
    std::uint32_t firstSequence = 0;
    // The request that moves it into its container, to know its failure by.
    std::uint32_t reparentSequence = 0;
    // The last request that gave it its place in its container: what the server tells of its place
    // before that is out of date.
    std::uint32_t placeSequence = 0;
    // It has asked to be docked while it was taken for docked.
    bool askedAgain = false;
    Straying straying;
    // Goes with the window when it has to be docked again.
    Retrieval retrieval;

    [[nodiscard]] bool isOwn() const { return static_cast<bool>(own); }
    [[nodiscard]] bool hasSlot() const { return state == ItemState::Shown; }
    // Its size hints were read again. Only a change counts as a wish, so that a program that sets
    // the same hints again and again does not undo its resize request.
    void noteHints(const std::optional<PixelSize>& size);
};

// How an item is named in the log.
[[nodiscard]] std::string describe(const DockedItem& item);
// 0x1a00003.
[[nodiscard]] std::string hexadecimal(xcb_window_t window);

} // namespace pelistra::menubar
