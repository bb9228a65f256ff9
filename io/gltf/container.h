#pragma once
// A glTF 2.0 file, .gltf or .glb: its JSON, and bytes of its buffers on demand.
#include <cstdint>
#include <filesystem>
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
    // Throws unless the value is of that kind, an object or an array.
    void check_kind(const JsonValue& value, JsonValue::Kind wanted) const;
    // An object's member that is an object, or null when there is none. Throws when it is something else.
    [[nodiscard]] const JsonValue* object(const JsonValue& parent, const char* member) const;
    // The elements of an object's array, none when it is missing. Throws unless it is an array; of objects() all
    // elements must be such.
    [[nodiscard]] const std::vector<JsonValue>& list(const JsonValue& parent, const char* member) const;
    [[nodiscard]] const std::vector<JsonValue>& objects(const JsonValue& parent, const char* member) const;
    // A member that an object must have.
    [[nodiscard]] const JsonValue& required(const JsonValue& object, const char* member) const;
    // A whole number >= 0 of an object; `fallback` when the member is missing.
    [[nodiscard]] std::uint64_t whole(const JsonValue& object, const char* member,
                                      std::uint64_t fallback) const;

    // Counts the numbers of all animation that is read; throws SceneError at `user` when they become too many.
    void spend(const JsonValue& user, std::uint64_t numbers) const;
    // `length` bytes of the buffer that `index` names, from `offset`. Throws SceneError when they are not
    // there; messages name `user` as who needs them.
    [[nodiscard]] std::string bytes(const JsonValue& index, std::uint64_t offset, std::uint64_t length,
                                    const JsonValue& user) const;

  private:
    void read_binary(const std::string& header);
    void find_binary_chunk(std::uint64_t at, std::uint64_t end);
    [[nodiscard]] std::filesystem::path buffer_file(const JsonValue& user, const JsonValue& uri) const;
    void check_version() const;
    void check_extensions() const;
    [[nodiscard]] std::string file_bytes(const JsonValue& user, const JsonValue& uri, std::uint64_t offset,
                                         std::uint64_t length) const;

    [[nodiscard]] const std::string& embedded(const JsonValue& uri) const;

    JsonDocument document_;
    bool binary_ = false;
    std::uint64_t chunk_offset_ = 0, chunk_length_ = 0;         // the binary chunk of a .glb; length 0: none
    mutable std::map<const JsonValue*, std::string> embedded_;  // data URIs, decoded once
    mutable std::uint64_t spent_ = 0;
};

}  // namespace zam::io::gltf
