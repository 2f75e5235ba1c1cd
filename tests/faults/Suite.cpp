#include "tests/faults/Suite.h"

#include "tests/faults/Check.h"
#include "tests/faults/Mounts.h"

#include <chrono>
#include <exception>
#include <iostream>

namespace pelistra::testing {

void Suite::tryOut(const std::vector<Fault>& faults) {
    for (const Fault& fault : faults) {
        tryAlone(fault.name, [&]() -> std::vector<std::string> {
            if (!bench_ || bench_->server() != fault.server) {
                bench_.reset();
                bench_ = std::make_unique<Bench>(fault.server);
            }
            std::vector<std::string> complaints;
            try {
                fault.happen(*bench_);
                complaints = complaintsOf(*bench_);
            } catch (const NotPossibleHere&) {
                bench_.reset();
                throw;
            } catch (const std::exception& failure) {
                complaints.emplace_back(failure.what());
            }
            if (!complaints.empty()) {
                complaints.push_back(bench_->description());
                // What comes next begins with a desktop that works.
                bench_.reset();
            }
            return complaints;
        });
    }
}

void Suite::tryAlone(const std::string& name,
                     const std::function<std::vector<std::string>()>& happenAndCheck) {
    const auto begin = std::chrono::steady_clock::now();
    ++tried_;
    std::vector<std::string> complaints;
    try {
        complaints = happenAndCheck();
    } catch (const NotPossibleHere& reason) {
        --tried_;
        ++notPossible_;
        std::cout << "NOT TRIED " << name << ": " << reason.what() << "\n";
        std::cout.flush();
        return;
    } catch (const std::exception& failure) {
        complaints.emplace_back(failure.what());
    }
    survived_ += complaints.empty() ? 1 : 0;
    const auto time = std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::steady_clock::now() - begin);
    std::cout << (complaints.empty() ? "survived  " : "FAILED    ") << name << " (" << time.count()
              << " ms)\n";
    for (const std::string& complaint : complaints) {
        std::cout << "          " << complaint << "\n";
    }
    std::cout.flush();
}

bool Suite::finish() const {
    if (notPossible_ > 0) {
        std::cout << "faults that this system does not let happen: " << notPossible_ << "\n";
    }
    std::cout << "faults tried " << tried_ << ", survived " << survived_ << "\n";
    return survived_ == tried_;
}

} // namespace pelistra::testing
