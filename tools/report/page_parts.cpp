#include "tools/report/page_parts.h"

#include <fmt/format.h>
#include <md4c-html.h>

#include "tools/text.h"

namespace kalorfix::tool::report {
namespace {

void replace_all(std::string& text, std::string_view what, std::string_view by) {
    for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += by.size())
        text.replace(at, what.size(), by);
}

// The documents that a text leads to do not come with the page; their names stay.
void drop_links(std::string& text) {
    for (std::size_t at = 0; (at = text.find("<a href=", at)) != std::string::npos;)
        text.erase(at, text.find('>', at) - at + 1);
    replace_all(text, "</a>", "");
}

// An id for what begins with a bold name: behind `tag`, which the name follows.
void name_entries(std::string& text, std::string_view tag) {
    const std::string mark = std::string(tag) + "<strong>";
    for (std::size_t at = 0; (at = text.find(mark, at)) != std::string::npos; at += mark.size()) {
        const std::size_t name = at + mark.size();
        const std::string id =
            entry_id(std::string_view(text).substr(name, text.find("</strong>", name) - name));
        text.insert(at + tag.size() - 1, fmt::format(" id=\"{}\"", id));
    }
}

}  // namespace

Table::Table(std::string_view headings, std::string_view kind) {
    for (std::string_view heading : split(headings, ',')) {
        left_.push_back(heading.starts_with('<'));
        if (left_.back()) heading.remove_prefix(1);
        const std::vector<std::string_view> parts = split(heading, '|');
        const bool unit = parts.size() > 1 && !parts[1].empty();
        head_ += fmt::format("<th{}>{}{}</th>", left_.back() ? " class=\"name\"" : "", escape(parts[0]),
                             unit ? fmt::format(" <small>{}</small>", escape(parts[1])) : "");
    }
    head_ = fmt::format("<table{}><thead><tr>{}</tr></thead><tbody>\n",
                        kind.empty() ? "" : fmt::format(" class=\"{}\"", kind), head_);
}

void Table::row(const std::vector<Cell>& cells) {
    rows_ += "<tr>";
    for (std::size_t k = 0; k < cells.size(); ++k)
        rows_ += fmt::format("<td{}>{}</td>", left_[k] ? " class=\"name\"" : "", cells[k].html);
    rows_ += "</tr>\n";
}

std::string Table::html() const { return rows_.empty() ? rows_ : head_ + rows_ + "</tbody></table>\n"; }

std::string facts_table(const std::vector<std::pair<std::string, Cell>>& facts) {
    std::string out = "<table class=\"facts\">\n";
    for (const auto& [name, cell] : facts)
        if (!cell.html.empty())
            out += fmt::format("<tr><th>{}</th><td>{}</td></tr>\n", escape(name), cell.html);
    return out + "</table>\n";
}

Html verdict(bool passed) {
    return {passed ? "<span class=\"met\">met</span>" : "<b class=\"failed\">FAILED</b>"};
}

Html verdict(const Statistics& s) {
    Html outcome = verdict(s.failed == 0);
    if (s.differing > 0)
        outcome.text +=
            fmt::format("; <a class=\"declared\" href=\"#declared\">{} differ as declared</a>", s.differing);
    return outcome;
}

std::string entry_id(std::string_view name) {
    std::string out = "d";
    bool apart = true;
    for (const char c : name) {
        const bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
        if (letter && apart) out += '-';
        if (letter) out += c;
        apart = !letter;
    }
    return out;
}

std::string markdown(const std::string& file, bool named_entries) {
    const std::optional<std::string> text = content_of(file);
    if (!text) throw InputError(file + ": cannot read this part of the report: " + why_unreadable(file));
    std::string out;
    const auto append = [](const MD_CHAR* piece, MD_SIZE size, void* to) {
        static_cast<std::string*>(to)->append(piece, size);
    };
    if (md_html(text->data(), static_cast<MD_SIZE>(text->size()), append, &out, MD_FLAG_TABLES, 0) != 0)
        throw InputError(file + ": cannot be shown in the report");
    if (const std::size_t end = out.find("</h1>"); out.starts_with("<h1>")) out.erase(0, end + 5);
    replace_all(out, "<h2>", "<h3>");
    replace_all(out, "</h2>", "</h3>");
    drop_links(out);
    if (named_entries)
        for (const std::string_view tag : {"<li>", "<tr>\n<td>"}) name_entries(out, tag);
    return "<div class=\"prose\">\n" + out + "</div>\n";
}

}  // namespace kalorfix::tool::report
