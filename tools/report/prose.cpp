#include "tools/report/prose.h"

#include <fmt/format.h>

#include <vector>

#include "tools/svg.h"

namespace kalorfix::tool::report {
namespace {

// Toggles a pair of tags at each mark.
std::string toggled(const std::string& text, const std::string& mark, const std::string& tag) {
    std::string out;
    bool open = false;
    std::size_t begin = 0;
    for (std::size_t found; (found = text.find(mark, begin)) != std::string::npos;
         begin = found + mark.size()) {
        out += text.substr(begin, found - begin) + (open ? "</" : "<") + tag + ">";
        open = !open;
    }
    out += text.substr(begin);
    return open ? out + "</" + tag + ">" : out;
}

std::string inline_forms(const std::string& text) {
    return toggled(toggled(svg::escape(text), "`", "code"), "**", "b");
}

class Converter {
public:
    explicit Converter(bool named_entries) : named_entries_(named_entries) {}

    void line(const std::string& text) {
        if (text.starts_with("|")) {
            row(text);
        } else if (text.empty()) {
            // A table goes on behind an empty line if a row follows.
            if (form_ != Form::table) close();
        } else if (text.starts_with("# ")) {
            close();
        } else if (text.starts_with("## ")) {
            close();
            out_ += "<h3>" + inline_forms(text.substr(3)) + "</h3>\n";
        } else if (text.starts_with("* ")) {
            if (form_ == Form::item)
                end_item();
            else {
                close();
                out_ += "<ul>\n";
            }
            form_ = Form::item;
            text_ = text.substr(2);
        } else {
            if (form_ == Form::table) close();
            if (form_ == Form::none) form_ = Form::paragraph;
            text_ += (text_.empty() ? "" : " ") + text.substr(text.find_first_not_of(' '));
        }
    }

    std::string finish() {
        close();
        return std::move(out_);
    }

private:
    enum class Form { none, paragraph, item, table };

    // The id of an entry that begins with its name in bold.
    std::string id(std::string_view entry) const {
        const std::size_t begin = entry.find_first_not_of(' ');
        if (!named_entries_ || begin == std::string_view::npos || !entry.substr(begin).starts_with("**"))
            return {};
        const std::string_view name = entry.substr(begin + 2, entry.find("**", begin + 2) - begin - 2);
        return fmt::format(" id=\"{}\"", entry_id(name));
    }

    void end_item() {
        out_ += "<li" + id(text_) + ">" + inline_forms(text_) + "</li>\n";
        text_.clear();
    }

    void close() {
        if (form_ == Form::paragraph) out_ += "<p>" + inline_forms(text_) + "</p>\n";
        if (form_ == Form::item) {
            end_item();
            out_ += "</ul>\n";
        }
        if (form_ == Form::table) out_ += "</tbody></table>\n";
        text_.clear();
        form_ = Form::none;
    }

    void row(const std::string& text) {
        const bool head = form_ != Form::table;
        if (text.starts_with("|--") || text.starts_with("| --")) return;
        if (head) {
            close();
            out_ += "<table><thead>";
            form_ = Form::table;
        }
        out_ += "<tr" + id(std::string_view(text).substr(1)) + ">";
        for (std::size_t begin = 1; begin < text.size();) {
            std::size_t end = text.find(" |", begin);
            if (end == std::string::npos) end = text.size();
            const std::string cell = text.substr(begin, end - begin);
            out_ += fmt::format("<{0}>{1}</{0}>", head ? "th" : "td", inline_forms(cell));
            begin = end + 2;
        }
        out_ += head ? "</tr></thead><tbody>\n" : "</tr>\n";
    }

    bool named_entries_;
    std::string out_, text_;
    Form form_ = Form::none;
};

}  // namespace

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

std::string prose(std::istream& in, bool named_entries) {
    Converter converter(named_entries);
    for (std::string text; std::getline(in, text);) converter.line(text);
    return converter.finish();
}

}  // namespace kalorfix::tool::report
