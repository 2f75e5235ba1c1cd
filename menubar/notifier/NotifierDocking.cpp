#include "menubar/notifier/NotifierDocking.h"

#include "menubar/notifier/NotifierArt.h"
#include "menubar/notifier/NotifierIcon.h"
#include "platform/x11/Properties.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>
#include <utility>

namespace pelistra::menubar {

namespace {

constexpr std::uint32_t ownEvents = XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE |
                                    XCB_EVENT_MASK_ENTER_WINDOW | XCB_EVENT_MASK_LEAVE_WINDOW;

std::string hexadecimal(const Color& color) {
    constexpr double most = 255;
    constexpr std::string_view digits = "0123456789abcdef";
    std::string result = "#";
    for (const double part : {color.red, color.green, color.blue}) {
        const auto value = static_cast<unsigned>(std::lround(part * most));
        result += {digits[value / digits.size()], digits[value % digits.size()]};
    }
    return result;
}

// What the program has sent for the icon itself.
const IconSource& pictureOf(const ItemProperties& properties) {
    const bool attention =
        properties.status == ItemStatus::NeedsAttention && !properties.attention.isEmpty();
    return attention ? properties.attention : properties.icon;
}

} // namespace

NotifierDocking::NotifierDocking(const Server& server, xcb_window_t bar, ItemList& items,
                                 OrderMemory& order, Painter& painter)
    : server_(&server), bar_(bar), items_(&items), order_(&order), painter_(&painter),
      toolTip_(server, painter) {}

NotifierDocking::~NotifierDocking() = default;

void NotifierDocking::start(RememberedItems memory) {
    host_ = std::make_unique<NotifierHost>(std::move(memory));
}

std::vector<pollfd> NotifierDocking::descriptors() const {
    return host_ ? std::vector{host_->descriptor(), reader_.descriptor(), menus_.descriptor()}
                 : std::vector<pollfd>{};
}

std::optional<NotifierDocking::Clock::time_point> NotifierDocking::due() const {
    std::optional<Clock::time_point> first;
    for (const auto& due :
         {host_ ? host_->due() : std::nullopt, reader_.due(), menus_.due(), toolTip_.due()}) {
        if (due && (!first || *due < *first)) {
            first = due;
        }
    }
    return first;
}

bool NotifierDocking::process() {
    if (!host_) {
        return false;
    }
    menus_.process();
    if (const auto due = toolTip_.due(); due && *due <= Clock::now()) {
        showToolTip();
    }
    const bool came = host_->process();
    return reader_.process() || came;
}

bool NotifierDocking::settle(const Look& look) {
    if (!host_) {
        return false;
    }
    const bool newLook = look != look_;
    look_ = look;
    host_->setIconSide(iconSide(look.metrics));
    constexpr double hundredths = 100;
    menus_.setDisplay(look.display, look.metrics.scaleHundredths() / hundredths);
    std::erase_if(icons_, [&](const auto& icon) {
        const bool known = host_->find(icon->number) != nullptr &&
                           (icon->window == XCB_NONE || items_->find(icon->window) != nullptr);
        if (!known) {
            undock(*icon);
        }
        return !known;
    });
    for (const auto& item : host_->items()) {
        if (!item->properties()) {
            continue;
        }
        auto icon = std::ranges::find(icons_, item->number(),
                                      [](const auto& known) { return known->number; });
        const bool isNew = icon == icons_.end();
        if (isNew) {
            icon = icons_.insert(icon, std::make_unique<Icon>(item->number()));
        }
        if (item->takeChange() || isNew || newLook) {
            update(**icon, *item);
        }
    }
    takeAnswers();
    return std::exchange(changed_, false);
}

void NotifierDocking::update(Icon& icon, NotifierItem& source) {
    const ItemProperties& properties = *source.properties();
    ask(icon, properties);
    show(icon, properties);
    if (toolTip_.isShown() && toolTip_.owner() == icon.window) {
        showToolTip();
    }
}

IconRequest NotifierDocking::requestFor(const std::string& name,
                                        const ItemProperties& properties) const {
    return {.side = iconSide(look_.metrics),
            .theme = look_.iconTheme,
            .foreground = hexadecimal(look_.palette.text),
            .error = hexadecimal(look_.palette.error),
            .warning = hexadecimal(look_.palette.warning),
            .success = hexadecimal(look_.palette.success),
            .themePath = properties.iconThemePath,
            .name = name};
}

void NotifierDocking::ask(Icon& icon, const ItemProperties& properties) {
    const auto askFor = [&](Icon::Part& part, const IconSource& source) {
        if (source.name.empty()) {
            part.request.reset();
            part.waiting = false;
            part.image = source.pixmap;
            return;
        }
        part.request = requestFor(source.name, properties);
        part.waiting = true;
        reader_.ask(part.asker, *part.request);
    };
    askFor(icon.picture, pictureOf(properties));
    askFor(icon.overlay, properties.overlay);
}

void NotifierDocking::takeAnswers() {
    const auto take = [](Icon::Part& part, const IconSource& sent, IconReader::Answer& answer) {
        if (part.asker != answer.asker || part.request != answer.request) {
            return false;
        }
        // Many programs send what no theme has as pixels too.
        if (answer.image.pixels.empty()) {
            part.image = sent.pixmap;
        } else {
            part.image = std::move(answer.image);
        }
        part.waiting = false;
        return true;
    };
    for (IconReader::Answer& answer : reader_.takeAnswers()) {
        for (const auto& icon : icons_) {
            const NotifierItem* const source = sourceOf(icon.get());
            if (source == nullptr) {
                continue;
            }
            const ItemProperties& properties = *source->properties();
            if (take(icon->picture, pictureOf(properties), answer) ||
                take(icon->overlay, properties.overlay, answer)) {
                show(*icon, properties);
            }
        }
    }
}

void NotifierDocking::show(Icon& icon, const ItemProperties& properties) {
    if (icon.picture.waiting || icon.overlay.waiting) {
        return;
    }
    if (icon.window == XCB_NONE) {
        dock(icon, *host_->find(icon.number));
    }
    DockedItem* const item = items_->find(icon.window);
    if (item == nullptr) {
        return;
    }
    const std::string& name = properties.title.empty() ? properties.id : properties.title;
    const ArgbImage image = slotImage({.icon = icon.picture.image,
                                       .overlay = icon.overlay.image,
                                       .label = properties.label,
                                       .name = name},
                                      look_.palette, look_.metrics);
    item->wish = {.source = WishSource::SizeHints,
                  .size = {.width = image.width, .height = image.height}};
    painter_->fill(item->client, item->depth, image);
    if (item->texts.title != properties.title) {
        item->texts.title = properties.title;
        x11::setText(server_->connection(), item->client, server_->atom(Atom::NetWmName),
                     server_->atom(Atom::Utf8String), properties.title);
    }
    const bool wanted = properties.status != ItemStatus::Passive;
    if (item->wantsMapped != wanted || item->state == ItemState::Arriving) {
        item->wantsMapped = wanted;
        item->state = wanted ? ItemState::Shown : ItemState::Waiting;
        for (const xcb_window_t window : {item->client, item->container.id()}) {
            if (wanted) {
                xcb_map_window(server_->xcb(), window);
            } else {
                xcb_unmap_window(server_->xcb(), window);
            }
        }
        item->picture.renew();
    }
    changed_ = true;
}

void NotifierDocking::dock(Icon& icon, const NotifierItem& source) {
    const x11::Connection& connection = server_->connection();
    xcb_connection_t* const x = server_->xcb();
    const x11::Connection::Visual alpha = connection.alphaVisual();
    const bool hasAlpha = alpha.type != nullptr;
    const xcb_visualid_t visual =
        hasAlpha ? alpha.type->visual_id : connection.screen().root_visual;
    if (!colormap_) {
        colormap_ = ColormapHandle(x, connection.newId());
        xcb_create_colormap(x, XCB_COLORMAP_ALLOC_NONE, colormap_.id(), connection.root(), visual);
    }
    auto item = std::make_unique<DockedItem>();
    item->depth = hasAlpha ? alpha.depth : connection.screen().root_depth;
    item->height = look_.metrics.barHeight();
    item->width = item->height;
    item->x = -item->width;
    const auto makeWindow = [&](xcb_window_t parent, int left, std::uint32_t events) {
        WindowHandle window(x, connection.newId());
        const std::array<std::uint32_t, 4> values{0, 0, events, colormap_.id()};
        const auto created = xcb_create_window(
            x, item->depth, window.id(), parent, static_cast<std::int16_t>(left), 0,
            static_cast<std::uint16_t>(item->width), static_cast<std::uint16_t>(item->height), 0,
            XCB_WINDOW_CLASS_INPUT_OUTPUT, visual,
            XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_EVENT_MASK | XCB_CW_COLORMAP,
            values.data());
        item->placeSequence = created.sequence;
        return window;
    };
    item->container = makeWindow(bar_, item->x, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
    item->own = makeWindow(item->container.id(), 0, ownEvents);
    item->client = item->own.id();
    icon.window = item->client;
    item->picture = ItemPicture(*server_, item->container.id(), server_->formatOf(visual));
    item->process = source.process();

    const ItemProperties& properties = *source.properties();
    item->texts = {.title = {}, .instance = properties.id, .className = source.program()};
    const std::string both = item->texts.instance + '\0' + item->texts.className + '\0';
    x11::setText(connection, item->client, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, both);
    item->identity = notifierIdentity(properties.id, source.program());
    item->identity.ordinal = items_->freeOrdinal(item->identity.instance, item->identity.className);
    const std::size_t index = order_->place(item->identity, items_->identities(), std::nullopt);
    items_->insert(index, std::move(item));
}

void NotifierDocking::undock(const Icon& icon) {
    for (const Icon::Part* const part : {&icon.picture, &icon.overlay}) {
        reader_.forget(part->asker);
    }
    if (toolTip_.owner() == icon.window) {
        toolTip_.hide();
    }
    if (const auto item = items_->take(icon.window)) {
        painter_->invalidate(*item);
        changed_ = true;
    }
}

void NotifierDocking::remember() {
    if (host_) {
        host_->remember();
    }
}

NotifierDocking::Icon* NotifierDocking::find(xcb_window_t window) const {
    const auto found =
        std::ranges::find(icons_, window, [](const auto& icon) { return icon->window; });
    return found == icons_.end() ? nullptr : found->get();
}

NotifierItem* NotifierDocking::sourceOf(const Icon* icon) const {
    return icon != nullptr ? host_->find(icon->number) : nullptr;
}

} // namespace pelistra::menubar
