#include "ui/SettingsView.h"

#include "platform/Application.h"
#include "ui/Nodes.h"
#include "ui/Palette.h"

#include <utility>

namespace pelistra::ui {

namespace {

constexpr double badgeSize = 28;
constexpr double badgeDistance = 13;

View badge(int number) {
    return View(Text{.text = std::to_string(number),
                     .font = {.size = TextStyle::Headline},
                     .foreground = Color{.base = Role::White}})
        .frame({.width = badgeSize, .height = badgeSize})
        .background(FilledShape{.outline = Circle(), .fill = Color{.base = Role::Accent}});
}

std::vector<View> instructions() {
    return {
        SettingsView::instruction(
            1, "找到分隔线",
            "菜单栏中竖线左侧是隐藏区，右侧是常用区；最右边的箭头负责展开和折叠。"),
        SettingsView::instruction(2, "摆放图标",
                                  "按住 Command（⌘）拖动菜单栏图标。把不常用图标放到竖线左侧，"
                                  "把常用图标放到竖线与箭头之间。"),
        SettingsView::instruction(
            3, "点击箭头",
            "第一次点击会折叠竖线左侧图标；再次点击会在菜单栏下方打开可横向滚动的第二行。"
            "按住 Option 点击箭头可展开原图标重新整理。"),
        SettingsView::instruction(4, "使用第二行",
                                  "左键点击图标会打开所属应用；右键点击会打开原托盘菜单。"
                                  "右键操作后，点击菜单栏箭头即可重新折叠临时显示的图标。"),
    };
}

} // namespace

SettingsView::SettingsView(Application& application, LoginItem& loginItem,
                           std::function<void()> showOnboarding)
    : launchAtLogin(loginItem), application_(application),
      showOnboarding_(std::move(showOnboarding)) {}

std::vector<SubscriptionPtr> SettingsView::observeState(const std::function<void()>& changed) {
    std::vector<SubscriptionPtr> tokens;
    tokens.push_back(observeChanges(launchAtLogin.isEnabled, changed));
    tokens.push_back(observeChanges(launchAtLogin.errorMessage, changed));
    return tokens;
}

View SettingsView::body() {
    return View(GroupedForm{.sections = {{.title = "使用方法", .rows = instructions()},
                                         {.title = "通用", .rows = generalRows()}}})
        .frame({.minWidth = minimumWidth, .minHeight = minimumHeight});
}

View SettingsView::instruction(int number, const std::string& title, const std::string& detail) {
    const View texts =
        VStack{.alignment = HorizontalAlignment::Leading,
               .spacing = spacing::hairline,
               .children = {Text{.text = title, .font = {.size = TextStyle::Headline}},
                            Text{.text = detail,
                                 .font = {.size = TextStyle::Subheadline},
                                 .foreground = Color{.base = Role::Secondary}}}};
    return View(HStack{.alignment = VerticalAlignment::Top,
                       .spacing = badgeDistance,
                       .children = {badge(number), texts}})
        .padding(Edges::vertical(spacing::hairline));
}

std::vector<View> SettingsView::generalRows() {
    std::vector<View> rows = {
        Toggle{.label = "登录时启动 Pelistra",
               .isOn = launchAtLogin.isEnabled.get(),
               .action = lifetime_.guard([this](bool on) { launchAtLogin.setEnabled(on); })},
        Button{.label = Text{.text = "重新查看使用引导"}, .action = showOnboarding_},
        Button{.label = Text{.text = "退出 Pelistra"},
               .action = lifetime_.guard([this] { application_.terminate(); }),
               .role = ButtonRole::Destructive},
    };
    if (const auto& message = launchAtLogin.errorMessage.get()) {
        rows.emplace_back(Text{.text = *message,
                               .font = {.size = TextStyle::Caption},
                               .foreground = Color{.base = Role::Red}});
    }
    return rows;
}

} // namespace pelistra::ui
