#pragma once

#include <locale.h>

namespace uvc {

/// Puts the calling thread into the "C" locale for its own life. The value strings have a decimal point
/// everywhere, while a windowing toolkit sets the process to the user's locale, where it may be a comma.
class ScopedCLocale {
 public:
    ScopedCLocale() : previous_(uselocale(cLocale())) {}
    ~ScopedCLocale() { uselocale(previous_); }
    ScopedCLocale(const ScopedCLocale &) = delete;
    ScopedCLocale &operator=(const ScopedCLocale &) = delete;

 private:
    /// Made once, for the life of the process: to make it takes longer than to read a number. None when
    /// memory was short: the thread then keeps the locale it has.
    static locale_t cLocale() {
        static const locale_t locale = newlocale(LC_ALL_MASK, "C", locale_t{});
        return locale;
    }

    locale_t previous_;
};

}  // namespace uvc
