#pragma once

#include "platform/linux/loop/Source.h"
#include "platform/posix/Environment.h"

#include <array>
#include <optional>
#include <string>

#include <QApplication>

namespace pelistra::linux {

// What Qt is made in: its windows that much larger than the resource database says, its events on
// GLib's main context, and no question to the desktop portals, which would start them for what is
// never used here. The environment is as before when this object dies, so that programs started
// from here find it so. A factor that the user has set is left alone.
class QtEnvironment {
public:
    explicit QtEnvironment(double scaleBeyondResources);

private:
    posix::Variable glib_{"QT_NO_GLIB", nullptr};
    posix::Variable portals_{"QT_NO_XDG_DESKTOP_PORTAL", "1"};
    std::optional<posix::Variable> factor_;
};

// The QApplication, with the arguments that it keeps references to. Whoever runs GLib's default
// main context runs it. Platform themes of desktops load whole toolkits of their own; the generic
// one is enough for what is shown here.
class QtRuntime {
public:
    // Why Qt cannot begin; empty when it can. It would end the process.
    [[nodiscard]] static std::string obstacle();

    explicit QtRuntime(double scaleBeyondResources);

private:
    std::array<std::string, 5> texts_{"pelistra", "-platform", "xcb", "-platformtheme", "generic"};
    std::array<char*, 6> arguments_{texts_[0].data(), texts_[1].data(), texts_[2].data(),
                                    texts_[3].data(), texts_[4].data(), nullptr};
    int count_ = static_cast<int>(texts_.size());
    // In force while the next member is made.
    std::optional<QtEnvironment> environment_;
    QApplication application_;
    SourcePtr deferredDeletion_;
};

} // namespace pelistra::linux
