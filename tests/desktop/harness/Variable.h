#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace pelistra::testing {

// A variable of this process's environment, which is as it was before once this object is gone.
class Variable {
public:
    // Null takes the variable away.
    Variable(const char* name, const char* value) : name_(name) {
        const char* old = std::getenv(name);
        if (old != nullptr) {
            old_ = old;
        }
        set(value);
    }
    Variable(const char* name, const std::string& value) : Variable(name, value.c_str()) {}
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;
    ~Variable() { set(old_ ? old_->c_str() : nullptr); }

private:
    void set(const char* value) const {
        if (value != nullptr) {
            ::setenv(name_, value, 1);
        } else {
            ::unsetenv(name_);
        }
    }

    const char* name_;
    std::optional<std::string> old_;
};

} // namespace pelistra::testing
