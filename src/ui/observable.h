#pragma once

#include <functional>
#include <utility>
#include <vector>

namespace ui {

/// One field of a window's state. Observers are told of every write, also of one that leaves the value as it
/// was, in the order in which they subscribed. Nothing may be written once an observer is gone.
template <typename Value>
class Observable {
 public:
    using Observer = std::function<void(const Value &)>;

    explicit Observable(Value initial) : value_(std::move(initial)) {}
    Observable(const Observable &) = delete;
    Observable &operator=(const Observable &) = delete;

    Observable &operator=(Value value) {
        value_ = std::move(value);
        for (const auto &observer : observers_) observer(value_);
        return *this;
    }

    [[nodiscard]] const Value &get() const { return value_; }
    operator const Value &() const { return value_; }

    void observe(Observer observer) { observers_.push_back(std::move(observer)); }

 private:
    Value value_;
    std::vector<Observer> observers_;
};

}  // namespace ui
