#include "ui/Content.h"

#include <memory>
#include <utility>

namespace pelistra::ui {

namespace {

class SubscriptionGroup final : public Subscription {
public:
    explicit SubscriptionGroup(std::vector<SubscriptionPtr> members)
        : members_(std::move(members)) {}

private:
    std::vector<SubscriptionPtr> members_;
};

} // namespace

SubscriptionPtr Content::observe(const std::function<void()>& changed) {
    auto members = observeState(changed);
    members.push_back(observeChanges(environment_, changed));
    return std::make_unique<SubscriptionGroup>(std::move(members));
}

void Content::setEnvironment(const Environment& environment) {
    if (environment != environment_.get()) {
        environment_.set(environment);
    }
}

} // namespace pelistra::ui
