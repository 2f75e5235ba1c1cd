#pragma once

#include "ui/Arrangement.h"
#include "ui/Measuring.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace pelistra::ui {

// While a view is being placed: where its elements go, and what they inherit.
struct Placing {
    std::optional<Alert>& alert;
    double coveredTop = 0;
    std::vector<Placed>* into = nullptr;
    // The way from the element around what is being placed.
    std::string path = {};
    const std::string* help = nullptr;
    const std::string* accessibilityLabel = nullptr;
};

enum class Axis : std::uint8_t { None, Horizontal, Vertical };

// A view while it is measured and placed. Sizes are never negative and always numbers; only where
// an endless length is offered may one be endless.
class Box {
public:
    // The axis is that of the nearest stack; the step leads here from the box around.
    Box(View view, const Measuring& measuring, Axis axis = Axis::None, std::string step = {});

    [[nodiscard]] Size measure(const Proposal& offered);
    void place(const Area& area, Placing& placing);

private:
    // A stack asks its children several times, so what is costly to say is kept.
    struct Known {
        Proposal offered;
        Size size;
    };

    // Goes on to what is inside of modifiers that change no place.
    void unwrap();
    // What is inside; the step of each is how it differs from the others.
    void contain(const View& view, Axis axis, std::string step = {});
    void containBoth(const View& content, const View& layer);
    void containAll(const std::vector<View>& views, Axis axis, const std::string& step = {});
    void containForm(const GroupedForm& form);

    // Whether its size is the same whatever it is offered.
    [[nodiscard]] bool isRigid() const;
    [[nodiscard]] Size fit(const Proposal& offered);
    [[nodiscard]] Size fitPicture(const ImagePtr& image, const Proposal& offered) const;
    [[nodiscard]] Size fitInside(const Edges& edges, const Proposal& offered);
    [[nodiscard]] Size fitFrame(const FrameLimits& limits, const Proposal& offered);
    [[nodiscard]] Size fitStack(double spacing, const Proposal& offered);
    [[nodiscard]] Size fitPile(const Proposal& offered);
    [[nodiscard]] Size fitButton(const Button& button, const Proposal& offered);
    [[nodiscard]] Size fitToggle(const Proposal& offered);
    [[nodiscard]] Size fitForm(const GroupedForm& form, const Proposal& offered);
    [[nodiscard]] std::vector<Size> stacked(double spacing, const Proposal& offered);
    // In which order the children of a stack are served: the less one gives way, the earlier.
    [[nodiscard]] std::vector<std::size_t> byRigidity(const std::optional<double>& across);
    [[nodiscard]] Edges buttonInsets(const Button& button) const;

    void placeAligned(Box& box, const Size& size, const Area& area, const Alignment& alignment,
                      Placing& placing) const;
    void placeCentred(Box& box, const Area& area, Placing& placing) const;
    void placeFrame(const FrameLimits& limits, const Area& area, Placing& placing);
    void placeStack(double spacing, int alignment, const Area& area, Placing& placing);
    void placeBackground(const Background& background, const Area& area, Placing& placing);
    void placeButton(const Button& button, const Area& area, Placing& placing);
    void placeToggle(const Area& area, Placing& placing);
    void placeScroll(const Area& area, Placing& placing);
    void placeForm(const GroupedForm& form, const Area& area, Placing& placing);
    // The height of a form as wide as that; places what is in it where there is a placing.
    double layOutForm(const GroupedForm& form, double width, Placing* placing,
                      std::vector<Card>& cards);

    // An element for this very view, with what the block places inside of it.
    template <class Block>
    Placed& add(const Area& area, Placing& placing, const Block& block);
    // The same of a control: what is said for it is not said for its label.
    template <class Block>
    Placed& addControl(const Area& area, Placing& placing, const Block& label);

    View view_;
    const Measuring& measuring_;
    Axis axis_;
    std::string step_;
    const std::string* help_ = nullptr;
    const std::string* accessibilityLabel_ = nullptr;
    const Alert* alert_ = nullptr;
    bool isFormRow_ = false;
    std::optional<Size> rigidSize_;
    std::vector<Box> contents_;
    std::vector<Known> known_;
};

template <class... Cases>
struct Overloaded : Cases... {
    using Cases::operator()...;
};

} // namespace pelistra::ui
