#pragma once

#include "menubar/menu/MenuIcons.h"
#include "menubar/menu/MenuLayout.h"
#include "menubar/menu/MenuRequest.h"
#include "menubar/notifier/BusListener.h"

#include <functional>
#include <memory>
#include <vector>

#include <QMenu>
#include <QTimer>

namespace pelistra::menubar {

// One menu of a program, from the question for it to its closing: shows what the program describes,
// follows what changes while it is open, and tells the program what the user chooses.
class ShownMenu {
public:
    // Asks for the menu and shows it as soon as the answer is there. A program without entries is
    // asked to show a menu of its own. `closed` is called once nothing is shown any more.
    ShownMenu(sd_bus& bus, MenuRequest request, std::function<void()> closed);
    ShownMenu(const ShownMenu&) = delete;
    ShownMenu& operator=(const ShownMenu&) = delete;
    ~ShownMenu();

private:
    void askForLayout();
    void answered(sd_bus_message& message);
    void show();
    void showSilence();
    void askProgramItself();
    void fill(QMenu& menu, const std::vector<MenuEntry>& entries);
    void addEntry(QMenu& menu, const MenuEntry& entry);
    void update(QAction& action, const MenuEntry& entry);
    // Menus below that are filled only when they are about to be shown.
    void aboutToShow(int id);
    void tell(int id, const char* event);
    [[nodiscard]] MessagePtr newMenuCall(const char* member) const;
    [[nodiscard]] QIcon iconOf(const MenuEntry& entry);
    // An icon of that name has been read.
    void showIcon(const std::string& name);

    sd_bus* bus_;
    MenuRequest request_;
    std::function<void()> closed_;
    std::unique_ptr<QMenu> menu_;
    MenuIcons icons_;
    // A program that says nothing, and one that says too much.
    QTimer silence_;
    QTimer refresh_;
    BusListener layout_;
    BusListener changes_;
    std::vector<BusListener> prepared_;
    int questions_ = 0;
};

} // namespace pelistra::menubar
