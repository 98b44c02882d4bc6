#pragma once

#include <deque>
#include <functional>
#include <utility>

namespace selfcheck {

/// Work in pieces, so that a window stays alive between them. A piece may add others.
class Steps {
 public:
    using Step = std::function<void()>;

    void addFirst(Step step) { steps_.push_front(std::move(step)); }
    void addLast(Step step) { steps_.push_back(std::move(step)); }

    /// Does the next piece. False when there is none left.
    bool run() {
        if (steps_.empty()) return false;
        const Step next = std::move(steps_.front());
        steps_.pop_front();
        next();
        return !steps_.empty();
    }

 private:
    std::deque<Step> steps_;
};

}  // namespace selfcheck
