#pragma once
// A glTF 2.0 file, .gltf or .glb: its JSON, and bytes of its buffers on demand.
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "io/json_document.h"

namespace zam::io::gltf {

// Buffers are opened only when bytes of them are asked for: a file whose geometry is missing still shows its
// lights. Buffer files are looked for in the scene's own folder and never outside of it.
class Container {
  public:
    // Throws SceneError for unreadable files, for other versions than 2.x, and for required extensions that
    // this reader does not know.
    explicit Container(const std::string& file);
    Container(const Container&) = delete;
    Container& operator=(const Container&) = delete;

    [[nodiscard]] const JsonDocument& document() const { return document_; }
    [[nodiscard]] const JsonValue& root() const { return document_.root; }

    // SceneError at a value, its message led by the value's JSON pointer.
    [[nodiscard]] SceneError error(const JsonValue& value, const std::string& text,
                                   const std::string& hint) const;

    // Element `index` of the root array `array` ("nodes"), which `user` refers to; throws when there is none.
    [[nodiscard]] const JsonValue& element(const char* array, const JsonValue& user) const;
    // A whole number >= 0 of an object; `fallback` when the member is missing.
    [[nodiscard]] std::uint64_t whole(const JsonValue& object, const char* member,
                                      std::uint64_t fallback) const;

    // `length` bytes of buffer `user` (an index) from `offset`. Throws SceneError when they are not there.
    [[nodiscard]] std::string bytes(const JsonValue& user, std::uint64_t offset, std::uint64_t length) const;

  private:
    void read_binary(const std::string& header);
    void check_version() const;
    void check_extensions() const;
    [[nodiscard]] std::string file_bytes(const JsonValue& user, const JsonValue& uri, std::uint64_t offset,
                                         std::uint64_t length) const;

    [[nodiscard]] const std::string& embedded(const JsonValue& uri) const;

    JsonDocument document_;
    bool binary_ = false;
    std::uint64_t chunk_offset_ = 0, chunk_length_ = 0;         // the binary chunk of a .glb; length 0: none
    mutable std::map<const JsonValue*, std::string> embedded_;  // data URIs, decoded once
};

}  // namespace zam::io::gltf
