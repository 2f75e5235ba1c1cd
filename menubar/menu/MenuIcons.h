#pragma once

#include "menubar/notifier/IconReader.h"

#include <functional>
#include <map>
#include <memory>
#include <string>

#include <QIcon>
#include <QSocketNotifier>
#include <QTimer>

namespace pelistra::menubar {

// The icons that entries of one menu name. They are read by the program that reads those of the
// bar, in the menu's own colours, while the menu is open already.
class MenuIcons {
public:
    struct Place {
        std::string theme;
        // A folder that is searched first; may be empty.
        std::string themePath;
    };

    // Calls `read` with the name of each icon once it is there.
    MenuIcons(Place place, std::function<void(const std::string&)> read);

    // The icon; one of the same size that shows nothing until it has been read, or when there is
    // none.
    [[nodiscard]] QIcon named(const std::string& name);

private:
    void work();
    [[nodiscard]] IconRequest requestFor(const std::string& name) const;

    Place place_;
    std::function<void(const std::string&)> read_;
    std::map<std::string, QIcon> icons_;
    IconReader reader_;
    std::unique_ptr<QSocketNotifier> notifier_;
    QTimer timer_;
};

} // namespace pelistra::menubar
