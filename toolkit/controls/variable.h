// What a control can be bound to.
#pragma once

#include <cstdint>
#include <string>
#include <type_traits>
#include <variant>

using zVariable = std::variant<int*, unsigned*, std::int16_t*, std::string*>;

// The number that a control is bound to; none at first. Inside the toolkit only.
class zBoundNumber {
  public:
    // Throws std::bad_variant_access for a text.
    void bind(const zVariable& variable) {
        std::visit(
            [this](auto* bound) {
                if constexpr (std::is_same_v<decltype(bound), std::string*>)
                    throw std::bad_variant_access();
                else
                    number_ = bound;
            },
            variable);
    }
    explicit operator bool() const {
        return std::visit([](auto* number) { return number != nullptr; }, number_);
    }

    int get() const {
        return std::visit([](auto* number) { return static_cast<int>(*number); }, number_);
    }
    // The same bits as an unsigned number: 65535 for a 16-bit -1.
    unsigned getUnsigned() const {
        return std::visit(
            [](auto* number) -> unsigned {
                return static_cast<std::make_unsigned_t<std::remove_pointer_t<decltype(number)>>>(*number);
            },
            number_);
    }
    // Stores as many of the low bits as the variable has.
    void set(unsigned value) {
        std::visit(
            [value](auto* number) { *number = static_cast<std::remove_pointer_t<decltype(number)>>(value); },
            number_);
    }

  private:
    std::variant<int*, unsigned*, std::int16_t*> number_;
};
