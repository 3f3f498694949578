#include "Host/Edit/Document.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <fstream>
#include <iostream>
#include <iterator>
#include <system_error>

#include "Host/CommandLine/JSON.h"
#include "Platform/Foundation/Log.h"
#include "Platform/Foundation/OutputFile.h"

#include <nlohmann/json.hpp>

namespace qv::host {

namespace {

constexpr std::size_t kDeepest = 64;

/// Tells how much of the text has been read, which the parser keeps to itself.
class CountedText {
  public:
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = const char&;

    CountedText(const char* at, std::size_t* read) : at_(at), read_(read) {}
    reference operator*() const { return *at_; }
    CountedText& operator++() {
        ++at_;
        ++*read_;
        return *this;
    }
    bool operator==(const CountedText& other) const { return at_ == other.at_; }

  private:
    const char* at_;
    std::size_t* read_;
};

/// Builds the document as it is read.
class Builder : public nlohmann::json_sax<Json> {
  public:
    Builder(const std::string& file, const std::string& text, const std::size_t& read)
        : file_(file), text_(text), read_(read) {}

    DocumentValue take() { return std::move(root_); }

    bool null() override { return add({}); }
    bool boolean(bool value) override {
        return add({.kind = DocumentValue::Kind::boolean, .text = value ? "true" : "false"});
    }
    bool number_integer(number_integer_t value) override {
        return addNumber(double(value), fmt::format("{}", value));
    }
    bool number_unsigned(number_unsigned_t value) override {
        return addNumber(double(value), fmt::format("{}", value));
    }
    bool number_float(number_float_t value, const string_t& digits) override {
        return addNumber(value, digits);
    }
    bool string(string_t& value) override { return add({.kind = DocumentValue::Kind::text, .text = value}); }
    bool binary(binary_t&) override { return false; }
    bool key(string_t& name) override {
        const auto& members = open_.back()->members;
        const bool isNew = std::none_of(members.begin(), members.end(),
                                        [&](const auto& each) { return each.first == name; });
        if (!isNew) stop("'" + name + "' is given twice");
        open_.back()->members.emplace_back(name, DocumentValue());
        return true;
    }
    bool start_object(std::size_t) override { return begin(DocumentValue::Kind::object); }
    bool start_array(std::size_t) override { return begin(DocumentValue::Kind::list); }
    bool end_object() override { return end(); }
    bool end_array() override { return end(); }
    bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception& error) override {
        // What went wrong stands after the parser's own way of telling what it is and where.
        std::string_view cause = error.what();
        if (const std::size_t end = cause.find("] "); end != std::string_view::npos)
            cause.remove_prefix(end + 2);
        const bool tellsPlace = cause.starts_with("parse error at");
        if (const std::size_t colon = cause.find(": "); tellsPlace && colon != std::string_view::npos)
            cause.remove_prefix(colon + 2);
        stop(std::string(cause));
    }

  private:
    [[noreturn]] void stop(const std::string& cause) const {
        fail(ExitCode::input, "{}:{}: {}", file_, line(), oneLine(cause));
    }
    /// Of what was read last: a number is known to have ended one character later.
    int line() const {
        const std::size_t end = std::min(std::max<std::size_t>(read_, 1) - 1, text_.size());
        return 1 + int(std::count(text_.begin(), text_.begin() + std::ptrdiff_t(end), '\n'));
    }
    bool addNumber(double value, const std::string& digits) {
        if (!std::isfinite(value)) stop("the number " + digits + " is too large");
        return add({.kind = DocumentValue::Kind::number, .text = digits, .number = value});
    }
    bool add(DocumentValue value) {
        place(std::move(value));
        return true;
    }
    DocumentValue& place(DocumentValue value) {
        if (open_.empty()) {
            value.place = {file_, line(), ""};
            return root_ = std::move(value);
        }
        DocumentValue& parent = *open_.back();
        if (parent.is(DocumentValue::Kind::object)) {
            auto& [name, member] = parent.members.back();
            value.place = {file_, line(), parent.place.path + (parent.place.path.empty() ? "" : ".") + name};
            return member = std::move(value);
        }
        value.place = {file_, line(), fmt::format("{}[{}]", parent.place.path, parent.items.size())};
        return parent.items.emplace_back(std::move(value));
    }
    bool begin(DocumentValue::Kind kind) {
        if (open_.size() == kDeepest) stop(fmt::format("lists and objects lie more than {} deep", kDeepest));
        open_.push_back(&place({.kind = kind}));
        return true;
    }
    bool end() {
        open_.pop_back();
        return true;
    }

    const std::string &file_, &text_;
    const std::size_t& read_;
    DocumentValue root_;
    std::vector<DocumentValue*> open_;  ///< the lists and objects that have not ended
};

}  // namespace

const DocumentValue* DocumentValue::member(std::string_view name) const {
    const auto found =
        std::find_if(members.begin(), members.end(), [&](const auto& each) { return each.first == name; });
    return found == members.end() ? nullptr : &found->second;
}

std::string DocumentValue::textOf(std::string_view name) const {
    const DocumentValue* value = member(name);
    return value && value->is(Kind::text) ? value->text : std::string();
}

std::string_view DocumentValue::kindName() const {
    switch (kind) {
        case Kind::null:
            return "null";
        case Kind::boolean:
            return "true or false";
        case Kind::number:
            return "a number";
        case Kind::text:
            return "a text";
        case Kind::list:
            return "a list";
        case Kind::object:
            return "an object";
    }
    return "";
}

std::string readDocumentText(const std::string& file) {
    // A folder opens, and fails only when it is read.
    std::error_code cause;
    const auto lines = [](std::istream& stream) {
        return std::string(std::istreambuf_iterator<char>(stream), {});
    };
    if (file == kStandardInput) return lines(std::cin);
    if (std::filesystem::is_directory(file, cause)) cause = std::make_error_code(std::errc::is_a_directory);
    std::ifstream stream;
    if (!cause) {
        stream.open(file, std::ios::binary);
        if (!stream) cause = {errno, std::generic_category()};
    }
    if (cause) fail(ExitCode::input, "{}", fileErrorLine("read", file, cause.message()));
    return lines(stream);
}

DocumentValue parseDocument(const std::string& file, const std::string& text) {
    std::size_t read = 0;
    Builder builder(file, text, read);
    const char *begin = text.data(), *end = text.data() + text.size();
    Json::sax_parse(CountedText(begin, &read), CountedText(end, &read), &builder,
                    nlohmann::detail::input_format_t::json, true, true);
    return builder.take();
}

}  // namespace qv::host
