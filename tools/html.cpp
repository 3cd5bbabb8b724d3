// SPDX-License-Identifier: MIT
#include "tools/html.h"

#include <fmt/format.h>

#include <array>
#include <cstdint>

namespace kalorfix::tool::html {
namespace {

constexpr std::string_view replacement = "\xEF\xBF\xBD";

// The character that begins a text, and its bytes; 0 bytes where it is no UTF-8.
std::pair<std::uint32_t, std::size_t> first_character(std::string_view text) {
    const auto byte = [&](std::size_t k) { return static_cast<unsigned char>(text[k]); };
    const unsigned char lead = byte(0);
    if (lead < 0x80U) return {lead, 1};
    const std::size_t length = lead >= 0xF0U ? 4 : lead >= 0xE0U ? 3 : 2;
    if (lead < 0xC2U || lead > 0xF4U || text.size() < length) return {0, 0};
    std::uint32_t code = lead & (0x7FU >> length);
    for (std::size_t k = 1; k < length; ++k) {
        if ((byte(k) & 0xC0U) != 0x80U) return {0, 0};
        code = (code << 6U) | (byte(k) & 0x3FU);
    }
    constexpr std::array<std::uint32_t, 5> least{0, 0, 0x80, 0x800, 0x10000};
    const bool surrogate = code >= 0xD800U && code <= 0xDFFFU;
    if (code < least[length] || code > 0x10FFFFU || surrogate) return {0, 0};
    return {code, length};
}

// Turns the direction of writing, or is none of XML's characters.
bool is_unfit(std::uint32_t c) {
    return c == 0x061CU || c == 0x200EU || c == 0x200FU || (c >= 0x2028U && c <= 0x202EU) ||
           (c >= 0x2066U && c <= 0x2069U) || c == 0xFEFFU || c == 0xFFFEU || c == 0xFFFFU;
}

}  // namespace

std::string escape(std::string_view text) {
    constexpr std::string_view special = "&<>\"'";
    constexpr std::array<std::string_view, special.size()> entities{"&amp;", "&lt;", "&gt;", "&quot;", "&#39;"};
    std::string out;
    while (!text.empty()) {
        const auto [code, length] = first_character(text);
        const bool control = code < 0x20U || (code >= 0x7FU && code <= 0x9FU);
        if (length == 0 || is_unfit(code))
            out += replacement;
        else if (control)
            out += ' ';
        else if (const std::size_t found = special.find(text[0]);
                 length == 1 && found != std::string_view::npos)
            out += entities[found];
        else
            out += text.substr(0, length);
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return out;
}

Table::Table(const std::vector<Column>& columns, std::string_view kind) {
    for (const Column& column : columns) {
        constexpr std::string_view classes[] = {"", " class=\"name\"", " class=\"screen\"",
                                                " class=\"name screen\""};
        attributes_.emplace_back(classes[(column.left ? 1 : 0) + (column.screen_only ? 2 : 0)]);
        head_ += fmt::format("<th{}>{}{}</th>", attributes_.back(), escape(column.title),
                             column.unit.empty() ? "" : " <small>" + escape(column.unit) + "</small>");
    }
    head_ = fmt::format("<div class=\"scroll\"><table{}><thead><tr>{}</tr></thead><tbody>\n",
                        kind.empty() ? "" : fmt::format(" class=\"{}\"", kind), head_);
}

void Table::row(const std::vector<Cell>& cells) {
    rows_ += "<tr>";
    for (std::size_t k = 0; k < cells.size(); ++k)
        rows_ += fmt::format("<td{}>{}</td>", attributes_[k], cells[k].html);
    rows_ += "</tr>\n";
}

std::string Table::html() const { return rows_.empty() ? rows_ : head_ + rows_ + "</tbody></table></div>\n"; }

std::string facts_table(const Facts& facts, std::string_view kind) {
    std::string out = fmt::format("<table class=\"{}\">\n", kind);
    for (const auto& [name, cell] : facts)
        if (!cell.html.empty())
            out += fmt::format("<tr><th>{}</th><td>{}</td></tr>\n", escape(name), cell.html);
    return out + "</table>\n";
}

std::string page(std::string_view language, std::string_view title, std::string_view style,
                 std::string_view body) {
    return fmt::format(
        "<!DOCTYPE html>\n<html lang=\"{}\">\n<head>\n<meta charset=\"utf-8\">\n"
        "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
        "<title>{}</title>\n<style>{}</style>\n</head>\n<body>\n{}</body>\n</html>\n",
        language, escape(title), style, body);
}

}  // namespace kalorfix::tool::html
