// The pages of the onboarding and their pictures.
#include "ui/Nodes.h"
#include "ui/OnboardingView.h"
#include "ui/Palette.h"

namespace pelistra::ui {

namespace {

constexpr double hiddenOpacity = 0.3;
constexpr double visibleOpacity = 0.85;

View title(const char* text, double size) {
    return Text{.text = text,
                .font = {.size = size, .weight = Weight::Semibold},
                .multilineAlignment = TextAlignment::Center};
}

View explanation(const char* text, const Font& font, double maxWidth) {
    return View(Text{.text = text,
                     .font = font,
                     .foreground = Color{.base = Role::Secondary},
                     .multilineAlignment = TextAlignment::Center})
        .frame({.maxWidth = maxWidth});
}

// Picture, title and text from top to bottom; what a page has besides comes last.
VStack page(const View& picture, const View& title, const View& text) {
    const View words = VStack{.spacing = spacing::medium, .children = {title, text}};
    return {.spacing = spacing::section, .children = {picture, words}};
}

View dividerLine(double height) {
    return View(FilledShape{.outline = Capsule(), .fill = Color{.opacity = visibleOpacity}})
        .frame({.width = 3, .height = height});
}

// The hidden section, on a tint that sets it off from the rest of the bar.
View hiddenSection() {
    const RoundedRectangle tint = {.cornerRadius = 10};
    return OnboardingView::sampleIcons(5, hiddenOpacity)
        .padding(Edges::all(spacing::medium))
        .background(
            FilledShape{.outline = tint, .fill = Color{.base = Role::Accent, .opacity = 0.12}});
}

View menuBarIllustration() {
    const View arrow = Symbol{.name = "chevron.right", .font = {.size = TextStyle::Headline}};
    const RoundedRectangle card = {.cornerRadius = 16};
    return View(HStack{.spacing = spacing::medium,
                       .children = {hiddenSection(), dividerLine(26),
                                    OnboardingView::sampleIcons(3, visibleOpacity)
                                        .padding({.leading = spacing::small,
                                                  .trailing = spacing::small}),
                                    arrow}})
        .padding({.top = spacing::medium,
                  .leading = spacing::medium,
                  .bottom = spacing::medium,
                  .trailing = spacing::large})
        .background(FilledShape{.outline = card, .fill = Color{.base = palette::card}})
        .overlay(StrokedShape{.outline = card, .color = {.opacity = 0.1}});
}

} // namespace

View OnboardingView::sampleIcons(int count, double opacity) {
    constexpr double diameter = 12;
    const View icon = View(FilledShape{.outline = Circle(), .fill = Color{.opacity = opacity}})
                          .frame({.width = diameter, .height = diameter});
    return HStack{.spacing = spacing::small,
                  .children = std::vector<View>(static_cast<std::size_t>(count), icon)};
}

View OnboardingView::welcomeStep() {
    auto content =
        page(logo(), title("给菜单栏留出空间", 34),
             explanation("Pelistra 用一个分隔线划出隐藏区，折叠后可在菜单栏下方打开第二行溢出栏。",
                         {.size = TextStyle::Title3}, 560));
    content.children.emplace_back(
        HStack{.spacing = spacing::small,
               .children = {Symbol{.name = "checkmark.shield.fill",
                                   .foreground = Color{.base = Role::Green}},
                            Text{.text = "无需辅助功能权限，不会移动鼠标"}}});
    return content;
}

View OnboardingView::dividerStep() {
    return page(menuBarIllustration(), title("竖线左侧就是隐藏区", 28),
                explanation("不常用图标放在竖线左边；经常使用的图标放在竖线和箭头之间。", {}, 520));
}

View OnboardingView::arrangeStep() {
    auto content = page(
        Symbol{
            .name = "command", .font = {.size = 54.0}, .foreground = Color{.base = Role::Accent}},
        title("按住 ⌘ 拖动图标", 28),
        explanation("先保持箭头为展开状态，然后按住 Command 键，把菜单栏图标拖到分隔线左右两侧。"
                    "这个拖动由你亲自完成，Pelistra 不会代替你操作鼠标。",
                    {}, 570));
    content.children.push_back(
        View(Toggle{.label = "登录时启动 Pelistra",
                    .isOn = launchAtLogin.isEnabled.get(),
                    .action = lifetime_.guard([this](bool on) { launchAtLogin.setEnabled(on); })})
            .frame({.maxWidth = 280}));
    return content;
}

View OnboardingView::readyStep() {
    constexpr double diameter = 104;
    const View picture =
        View(Symbol{.name = "checkmark",
                    .font = {.size = 42.0},
                    .foreground = Color{.base = Role::Accent}})
            .frame({.width = diameter, .height = diameter})
            .background(FilledShape{.outline = Circle(),
                                    .fill = Color{.base = Role::Accent, .opacity = 0.14}});
    return page(picture, title("Pelistra 已准备好", 32),
                explanation("点击箭头先折叠图标，再次点击打开第二行。左键点击第二行图标可打开应用；"
                            "右键点击可尝试原托盘菜单。",
                            {.size = TextStyle::Title3}, 550));
}

View OnboardingView::logo() {
    constexpr double side = 112;
    const RoundedRectangle outline = {.cornerRadius = 28};
    return View(HStack{.spacing = spacing::small,
                       .children = {sampleIcons(2, hiddenOpacity), dividerLine(44),
                                    sampleIcons(2, visibleOpacity)}})
        .frame({.width = side, .height = side})
        .background(FilledShape{.outline = outline,
                                .fill = LinearGradient{.colors = {{.base = palette::logoStart},
                                                                  {.base = palette::logoEnd}}}})
        .overlay(StrokedShape{.outline = outline, .color = {.base = Role::White, .opacity = 0.25}});
}

View OnboardingView::background() {
    return ZStack{
        .children = {
            FilledShape{.outline = Rectangle(), .fill = Color{.base = palette::window}},
            FilledShape{
                .outline = Rectangle(),
                .fill = LinearGradient{
                    .colors = {{.base = palette::washStart, .opacity = palette::washOpacity},
                               {.base = palette::washEnd, .opacity = palette::washOpacity / 3}}}}}};
}

} // namespace pelistra::ui
