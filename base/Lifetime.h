#pragma once

#include <memory>
#include <utility>

namespace pelistra {

// A member through which an object hands out closures that do nothing once the object is gone.
// Declare it last, so that it dies first. Everything runs on the main thread, so a closure that has
// started cannot lose its target half way.
class Lifetime {
public:
    // Wraps a callable with void result. The wrapper may be called any number of times; after this
    // Lifetime died, a call does nothing.
    template <class Callable>
    [[nodiscard]] auto guard(Callable callable) const {
        return [alive = std::weak_ptr<const char>(token_),
                callable = std::move(callable)](auto&&... arguments) mutable {
            if (!alive.expired()) {
                callable(std::forward<decltype(arguments)>(arguments)...);
            }
        };
    }

private:
    std::shared_ptr<const char> token_ = std::make_shared<const char>('\0');
};

} // namespace pelistra
