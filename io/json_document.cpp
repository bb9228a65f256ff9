#include "io/json_document.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <nlohmann/json.hpp>
#include <numeric>
#include <unordered_set>

#include "host/text.h"

namespace zam::io {
namespace {

using Json = nlohmann::json;

constexpr std::size_t kLongestName = 100;     // bytes of a name in a pointer before it is cut
constexpr std::size_t kMembersToSearch = 32;  // above this find() goes by order

// Follows the characters that the parser consumes and remembers where the last token of each sort began. A
// number ends only at the character after it, which may already open the next token: hence one place for each
// sort.
class PlaceTracker {
  public:
    void consume(char c) {
        if (started_) {
            const bool inside_character = (static_cast<unsigned char>(c) & 0xC0) == 0x80;
            if (last_ == '\n') {
                ++here_.line;
                here_.column = 1;
            } else if (!inside_character) {
                ++here_.column;
            }
        }
        started_ = true;
        last_ = c;
        if (in_string_) {
            if (escaped_) {
                escaped_ = false;
            } else if (c == '\\') {
                escaped_ = true;
            } else if (c == '"') {
                in_string_ = false;
            }
            return;
        }
        const bool structural = std::strchr("{}[]:,", c) != nullptr && c != '\0';
        const bool blank = c == ' ' || c == '\t' || c == '\n' || c == '\r';
        if (c == '"') {
            string = here_;
            in_string_ = true;
        } else if (structural) {
            bracket = here_;
        } else if (!blank && !in_word_) {
            word = here_;
        }
        in_word_ = !structural && !blank && c != '"';
    }
    [[nodiscard]] Place here() const { return here_; }

    Place string, bracket, word;  // where the last string, bracket or number (or true, false, null) began

  private:
    Place here_{1, 1};  // of the last consumed character
    char last_ = '\0';
    bool started_ = false, in_string_ = false, escaped_ = false, in_word_ = false;
};

// What the parser reads from; tells the tracker of every character that it leaves behind.
class TrackedIterator {
  public:
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = const char&;

    TrackedIterator(const char* at, PlaceTracker* tracker) : at_(at), tracker_(tracker) {}
    reference operator*() const { return *at_; }
    TrackedIterator& operator++() {
        tracker_->consume(*at_++);
        return *this;
    }
    TrackedIterator operator++(int) {
        TrackedIterator before = *this;
        ++*this;
        return before;
    }
    friend bool operator!=(const TrackedIterator& a, const TrackedIterator& b) { return a.at_ != b.at_; }

  private:
    const char* at_;
    PlaceTracker* tracker_;
};

// Builds the tree out of the parser's events.
class TreeBuilder {
  public:
    TreeBuilder(const std::string& file, const PlaceTracker& tracker, JsonValue& root)
        : file_(file), tracker_(tracker), root_(root) {}

    bool null() { return add(JsonValue::Kind::null, tracker_.word) != nullptr; }
    bool boolean(bool value) {
        add(JsonValue::Kind::boolean, tracker_.word)->truth = value;
        return true;
    }
    bool number_integer(Json::number_integer_t value) { return number(static_cast<double>(value)); }
    bool number_unsigned(Json::number_unsigned_t value) { return number(static_cast<double>(value)); }
    bool number_float(Json::number_float_t value, const std::string&) { return number(value); }
    bool string(std::string& value) {
        add(JsonValue::Kind::string, tracker_.string)->text = std::move(value);
        return true;
    }
    bool binary(Json::binary_t&) { return false; }
    bool start_object(std::size_t) { return open(JsonValue::Kind::object); }
    bool start_array(std::size_t) { return open(JsonValue::Kind::array); }
    bool end_object() { return close(); }
    bool end_array() { return close(); }
    bool key(std::string& name) {
        if (!open_.back().names.insert(name).second)
            throw SceneError(file_, tracker_.string, "the name " + quote(name) + " stands here twice",
                             "keep one of the two");
        name_ = std::move(name);
        name_place_ = tracker_.string;
        return true;
    }
    bool parse_error(std::size_t, const std::string&, const Json::exception& error) {
        // The library's text begins with its own code and place.
        std::string text = error.what();
        if (const auto at = text.find("] "); at != std::string::npos) text.erase(0, at + 2);
        if (text.starts_with("parse error"))
            if (const auto at = text.find(": "); at != std::string::npos) text.erase(0, at + 2);
        // What it read last may be long and may end inside of a character.
        const auto read = text.find("; last read: '");
        if (read != std::string::npos) text.erase(read, text.rfind('\'') + 1 - read);
        text = shorten(text, 200);
        throw SceneError(file_, tracker_.here(), "not valid JSON: " + text,
                         "look for a missing comma, quote or bracket just before this place; comments are "
                         "not part of JSON");
    }

  private:
    struct Level {
        JsonValue value;
        std::unordered_set<std::string> names;
    };

    JsonValue* add(JsonValue::Kind kind, Place place) {
        JsonValue value = begin(kind, place);
        return put(std::move(value));
    }
    JsonValue begin(JsonValue::Kind kind, Place place) {
        if (++count_ > kMostJsonValues)
            throw SceneError(file_, place, "the file holds more than 2 million values",
                             "a scene needs only lights, cameras and the nodes that carry them");
        JsonValue value;
        value.kind = kind;
        value.place = place;
        value.name = std::move(name_);
        value.name_place = name_place_;
        name_.clear();
        return value;
    }
    JsonValue* put(JsonValue value) {
        if (open_.empty()) {
            root_ = std::move(value);
            return &root_;
        }
        return &open_.back().value.children.emplace_back(std::move(value));
    }
    bool number(double value) {
        add(JsonValue::Kind::number, tracker_.word)->number = value;
        return true;
    }
    bool open(JsonValue::Kind kind) {
        if (open_.size() >= static_cast<std::size_t>(kDeepestJson))
            throw SceneError(file_, tracker_.bracket,
                             "objects and arrays are nested deeper than " + std::to_string(kDeepestJson),
                             "check the brackets; no scene needs this depth");
        open_.push_back({begin(kind, tracker_.bracket), {}});
        return true;
    }
    bool close() {
        JsonValue value = std::move(open_.back().value);
        open_.pop_back();
        // Searched one by one, an object with a million members would take hours.
        if (value.is(JsonValue::Kind::object) && value.children.size() > kMembersToSearch) {
            value.by_name.resize(value.children.size());
            std::iota(value.by_name.begin(), value.by_name.end(), 0u);
            std::sort(value.by_name.begin(), value.by_name.end(), [&](std::uint32_t a, std::uint32_t b) {
                return value.children[a].name < value.children[b].name;
            });
        }
        put(std::move(value));
        return true;
    }

    const std::string& file_;
    const PlaceTracker& tracker_;
    JsonValue& root_;
    std::vector<Level> open_;
    std::string name_;
    Place name_place_;
    std::size_t count_ = 0;
};

std::string escaped(const std::string& name) {
    std::string result;
    for (const char c : printable(shorten(name, kLongestName)))
        result += c == '~' ? "~0" : c == '/' ? "~1" : std::string(1, c);
    return result;
}

bool append_pointer(const JsonValue& from, const JsonValue& wanted, std::string& path) {
    if (&from == &wanted) return true;
    for (std::size_t i = 0; i < from.children.size(); ++i) {
        const std::size_t length = path.size();
        const JsonValue& child = from.children[i];
        path += '/' + (from.is(JsonValue::Kind::object) ? escaped(child.name) : std::to_string(i));
        if (append_pointer(child, wanted, path)) return true;
        path.resize(length);
    }
    return false;
}

}  // namespace

const JsonValue* JsonValue::find(std::string_view member) const {
    if (kind != Kind::object) return nullptr;
    if (!by_name.empty()) {
        const auto at = std::lower_bound(
            by_name.begin(), by_name.end(), member,
            [&](std::uint32_t index, std::string_view wanted) { return children[index].name < wanted; });
        return at != by_name.end() && children[*at].name == member ? &children[*at] : nullptr;
    }
    for (const JsonValue& child : children)
        if (child.name == member) return &child;
    return nullptr;
}

const char* JsonValue::kind_name() const {
    switch (kind) {
        case Kind::null:
            return "null";
        case Kind::boolean:
            return "true or false";
        case Kind::number:
            return "a number";
        case Kind::string:
            return "a text";
        case Kind::array:
            return "an array";
        case Kind::object:
            return "an object";
    }
    return "";
}

std::string JsonDocument::pointer(const JsonValue& value) const {
    std::string path;
    append_pointer(root, value, path);
    return path.empty() ? "/" : path;
}

JsonDocument parse_json(const std::string& file, std::string_view text) {
    // The parser would take it for the text's end.
    if (const auto zero = text.find('\0'); zero != std::string_view::npos) {
        PlaceTracker tracker;
        for (const char c : text.substr(0, zero + 1)) tracker.consume(c);
        throw SceneError(file, tracker.here(), "a zero byte stands in the text",
                         "JSON is plain text in UTF-8; save or copy the file again");
    }
    JsonDocument document;
    document.file = file;
    PlaceTracker tracker;
    TreeBuilder builder(document.file, tracker, document.root);
    Json::sax_parse(TrackedIterator(text.data(), &tracker),
                    TrackedIterator(text.data() + text.size(), &tracker), &builder);
    return document;
}

}  // namespace zam::io
