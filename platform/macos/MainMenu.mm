#include "platform/macos/MainMenu.h"

namespace pelistra::macos {

namespace {

Owned<NSMenu*> makeMenu(NSString* title) {
    return Owned<NSMenu*>::adopt([[NSMenu alloc] initWithTitle:title]);
}

Owned<NSMenuItem*> makeItem(NSString* title, SEL action, NSString* keyEquivalent) {
    return Owned<NSMenuItem*>::adopt([[NSMenuItem alloc] initWithTitle:title
                                                                action:action
                                                         keyEquivalent:keyEquivalent]);
}

void addSubmenu(NSMenu* bar, NSMenu* menu) {
    const auto item = makeItem([menu title], nullptr, @"");
    [item.get() setSubmenu:menu];
    [bar addItem:item.get()];
}

} // namespace

Owned<NSMenu*> makeMainMenu(id settingsTarget, SEL settingsAction) {
    const auto application = makeMenu(@"Pelistra");
    const auto settings = makeItem(@"设置…", settingsAction, @",");
    [settings.get() setTarget:settingsTarget];
    [application.get() addItem:settings.get()];
    [application.get() addItem:makeItem(@"退出 Pelistra", @selector(terminate:), @"q").get()];

    const auto window = makeMenu(@"窗口");
    [window.get() addItem:makeItem(@"关闭", @selector(performClose:), @"w").get()];
    [window.get() addItem:makeItem(@"最小化", @selector(performMiniaturize:), @"m").get()];

    auto bar = makeMenu(@"");
    addSubmenu(bar.get(), application.get());
    addSubmenu(bar.get(), window.get());
    return bar;
}

} // namespace pelistra::macos
