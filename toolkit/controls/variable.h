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
        const auto take = [this]<class T>(T* bound) {
            if constexpr (std::is_integral_v<T>)
                number_ = bound;
            else
                throw std::bad_variant_access();
        };
        std::visit(take, variable);
    }
    explicit operator bool() const {
        return std::visit([](auto* n) { return n != nullptr; }, number_);
    }

    int get() const {
        return std::visit([](auto* n) { return static_cast<int>(*n); }, number_);
    }
    // The same bits as an unsigned number: 65535 for a 16-bit -1.
    unsigned getUnsigned() const {
        const auto bits = []<class T>(T* n) -> unsigned { return static_cast<std::make_unsigned_t<T>>(*n); };
        return std::visit(bits, number_);
    }
    // Stores as many of the low bits as the variable has.
    void set(unsigned value) {
        std::visit([value]<class T>(T* n) { *n = static_cast<T>(value); }, number_);
    }

  private:
    std::variant<int*, unsigned*, std::int16_t*> number_;
};
