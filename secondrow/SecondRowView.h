#pragma once

#include "overflow/OverflowItem.h"
#include "ui/Content.h"

#include <functional>
#include <memory>
#include <vector>

namespace pelistra {

class OverflowStore;

// The content of the second row: every hidden icon as a small button, the row's own two buttons and
// a line of text. A function of the store's published properties, without state of its own.
class SecondRowView final : public ui::Content {
public:
    // The height of the panel's content, in points.
    static constexpr double preferredHeight = 78;
    // How much of the panel's width each icon is counted with, in points.
    static constexpr double itemWidth = 48;

    using ItemAction = std::function<void(const OverflowItem&)>;

    // onActivate is the left click on an icon, onOriginalMenu the right click, onArrange the button
    // at the end of the row.
    SecondRowView(std::shared_ptr<OverflowStore> store, ItemAction onActivate,
                  ItemAction onOriginalMenu, std::function<void()> onArrange);

    [[nodiscard]] ui::View body() override;

    // The picture of one icon: as captured, else its application's icon, else a symbol.
    [[nodiscard]] static ui::View overflowIcon(const OverflowItem& item);

protected:
    [[nodiscard]] std::vector<SubscriptionPtr>
    observeState(const std::function<void()>& changed) override;

private:
    [[nodiscard]] ui::View itemRow() const;
    [[nodiscard]] ui::View itemStrip() const;
    [[nodiscard]] ui::View emptyText() const;
    [[nodiscard]] ui::View cell(const OverflowItem& item) const;
    [[nodiscard]] ui::View permissionButton() const;
    [[nodiscard]] ui::View arrangeButton() const;

    std::shared_ptr<OverflowStore> store_;
    ItemAction onActivate_;
    ItemAction onOriginalMenu_;
    std::function<void()> onArrange_;
};

} // namespace pelistra
