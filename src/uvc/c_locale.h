#pragma once

#include <locale.h>

namespace uvc {

/// Puts the calling thread into the "C" locale for its own life. The value strings have a decimal point
/// everywhere, while a windowing toolkit sets the process to the user's locale, where it may be a comma.
class ScopedCLocale {
 public:
    ScopedCLocale() : cLocale_(newlocale(LC_ALL_MASK, "C", locale_t{})), previous_(uselocale(cLocale_)) {}
    ~ScopedCLocale() {
        uselocale(previous_);
        if (cLocale_ != locale_t{}) freelocale(cLocale_);
    }
    ScopedCLocale(const ScopedCLocale &) = delete;
    ScopedCLocale &operator=(const ScopedCLocale &) = delete;

 private:
    locale_t cLocale_;  // none when memory is short: the thread then keeps the locale it has
    locale_t previous_;
};

}  // namespace uvc
