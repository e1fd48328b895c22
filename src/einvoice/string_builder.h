// cStringBuilder: a text that grows at its end, and is changed in its middle now and then.
// Appending writes into the spare room of its block, so that a long text costs no copy for each
// piece.
//
// Lengths and places are bytes, places from 0. A place outside of the text is std::out_of_range.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace kaunter {

class cStringBuilder {
 public:
  std::size_t Length() const { return used_; }
  std::size_t Capacity() const { return block_.size(); }
  // The block grows by whole chunks of this size. Not 0 (std::invalid_argument).
  std::size_t ChunkSize() const { return chunk_; }
  void SetChunkSize(std::size_t bytes);

  std::string toString() const { return block_.substr(0, used_); }
  std::string_view View() const { return std::string_view(block_).substr(0, used_); }
  void SetTheString(std::string_view text);
  void Clear() { used_ = 0; }

  void AppendNL(std::string_view text);  // and a line end, "\r\n"
  void Append(std::string_view text);
  void AppendByVal(std::string text) { Append(text); }
  void Insert(std::size_t index, std::string_view text);
  void InsertByVal(std::size_t index, std::string text) { Insert(index, text); }
  void Remove(std::size_t index, std::size_t length);
  // Where `text` begins at or behind `from`.
  std::optional<std::size_t> Find(std::string_view text, std::size_t from = 0) const;
  // Gives back the spare room, but for what is left of the last chunk.
  void HeapMinimize();

 private:
  std::size_t WholeChunks(std::size_t bytes) const;
  void MakeRoom(std::size_t bytes);

  std::string block_;
  std::size_t used_ = 0;
  std::size_t chunk_ = 16384;
};

}  // namespace kaunter
