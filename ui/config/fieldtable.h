// The fields of a configuration page as data: which control shows which variable of the page, and which field of
// the transfer buffer the variable mirrors.
#pragma once

#include "toolkit/controls/board.h"

#include <cstdint>
#include <span>
#include <string>
#include <type_traits>
#include <variant>

template <class Page, class Buffer> struct FieldRow {
    zBindingRow<Page> binding;
    std::variant<std::monostate, std::int16_t Buffer::*, std::string Buffer::*> field =
        {};  // none: the page's own
};

// Record to page variables. Unsigned variables show the 16 bits as such.
template <class Page, class Buffer>
void fieldsFromBuffer(Page& page, const Buffer& buffer, std::span<const FieldRow<Page, Buffer>> rows) {
    for (const auto& row : rows)
        std::visit(
            [&](auto variable, auto field) {
                using Variable = std::remove_reference_t<decltype(page.*variable)>;
                if constexpr (std::is_same_v<decltype(field), std::int16_t Buffer::*>) {
                    if constexpr (std::is_same_v<Variable, unsigned>)
                        page.*variable = static_cast<std::uint16_t>(buffer.*field);
                    else if constexpr (std::is_same_v<Variable, int>)
                        page.*variable = buffer.*field;
                } else if constexpr (std::is_same_v<decltype(field), std::string Buffer::*>) {
                    if constexpr (std::is_same_v<Variable, std::string>) page.*variable = buffer.*field;
                }
            },
            row.binding.variable, row.field);
}

// Page variables to record.
template <class Page, class Buffer>
void fieldsToBuffer(const Page& page, Buffer& buffer, std::span<const FieldRow<Page, Buffer>> rows) {
    for (const auto& row : rows)
        std::visit(
            [&](auto variable, auto field) {
                using Variable = std::remove_cvref_t<decltype(page.*variable)>;
                if constexpr (std::is_same_v<decltype(field), std::int16_t Buffer::*>) {
                    if constexpr (std::is_integral_v<Variable>)
                        buffer.*field = static_cast<std::int16_t>(page.*variable);
                } else if constexpr (std::is_same_v<decltype(field), std::string Buffer::*>) {
                    if constexpr (std::is_same_v<Variable, std::string>) buffer.*field = page.*variable;
                }
            },
            row.binding.variable, row.field);
}

template <class Page, class Buffer>
void bindFields(Page& page, zBoard& board, std::span<const FieldRow<Page, Buffer>> rows) {
    for (const auto& row : rows) board.bind<Page>(page, std::span(&row.binding, 1));
}
