// SPDX-License-Identifier: MIT
// Results as JSON text, for the page.
#pragma once

#include <fmt/format.h>

#include <cmath>
#include <string>
#include <string_view>

#include "tools/calc_sheet.h"

namespace kalorfix::page {

/// An object or array that grows; what is no finite number is null.
class Json {
public:
    explicit Json(char open) : text_(1, open), close_(open == '{' ? '}' : ']') {}

    Json& add(double value) { return raw(std::isfinite(value) ? fmt::format("{}", value) : "null"); }
    Json& add(std::string_view value) { return raw(tool::json_text(value)); }
    Json& add(const char* value) { return add(std::string_view(value)); }
    Json& add(bool value) { return raw(value ? "true" : "false"); }
    Json& add(const Json& value) { return raw(value.text()); }
    template <class Value>
    Json& add(std::string_view name, const Value& value) {
        key(name);
        named_ = true;
        return add(value);
    }

    [[nodiscard]] std::string text() const { return text_ + close_; }

private:
    void key(std::string_view name) {
        separate();
        text_ += tool::json_text(name) + ":";
    }
    void separate() {
        if (text_.size() > 1 && !named_) text_ += ',';
        named_ = false;
    }
    Json& raw(std::string_view value) {
        separate();
        text_ += value;
        return *this;
    }

    std::string text_;
    char close_;
    bool named_ = false;
};

}  // namespace kalorfix::page
