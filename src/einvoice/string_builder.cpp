#include "einvoice/string_builder.h"

#include <algorithm>
#include <stdexcept>

namespace kaunter {

void cStringBuilder::SetChunkSize(std::size_t bytes) {
  if (bytes == 0) throw std::invalid_argument("a chunk of no bytes");
  chunk_ = bytes;
}

std::size_t cStringBuilder::WholeChunks(std::size_t bytes) const {
  return (bytes + chunk_ - 1) / chunk_ * chunk_;
}

// By half of what there is at least: a long text is not copied once for each chunk.
void cStringBuilder::MakeRoom(std::size_t bytes) {
  const std::size_t wanted = used_ + bytes;
  if (wanted <= block_.size()) return;
  block_.resize(WholeChunks(std::max(wanted, block_.size() + block_.size() / 2)), ' ');
}

void cStringBuilder::SetTheString(std::string_view text) {
  const std::string kept(text);  // it may be a part of this one
  used_ = 0;
  Append(kept);
}

void cStringBuilder::AppendNL(std::string_view text) {
  Append(text);
  Append("\r\n");
}

void cStringBuilder::Append(std::string_view text) { Insert(used_, text); }

void cStringBuilder::Insert(std::size_t index, std::string_view text) {
  if (index > used_) throw std::out_of_range("insert behind the end of the text");
  const bool own = text.data() >= block_.data() && text.data() < block_.data() + block_.size();
  if (own) return Insert(index, std::string(text));
  MakeRoom(text.size());
  std::copy_backward(block_.begin() + static_cast<std::ptrdiff_t>(index),
                     block_.begin() + static_cast<std::ptrdiff_t>(used_),
                     block_.begin() + static_cast<std::ptrdiff_t>(used_ + text.size()));
  std::copy(text.begin(), text.end(), block_.begin() + static_cast<std::ptrdiff_t>(index));
  used_ += text.size();
}

void cStringBuilder::Remove(std::size_t index, std::size_t length) {
  if (index > used_ || length > used_ - index) {
    throw std::out_of_range("remove behind the end of the text");
  }
  std::copy(block_.begin() + static_cast<std::ptrdiff_t>(index + length),
            block_.begin() + static_cast<std::ptrdiff_t>(used_),
            block_.begin() + static_cast<std::ptrdiff_t>(index));
  used_ -= length;
}

std::optional<std::size_t> cStringBuilder::Find(std::string_view text, std::size_t from) const {
  if (from > used_) throw std::out_of_range("find behind the end of the text");
  const std::size_t at = View().find(text, from);
  if (at == std::string_view::npos) return std::nullopt;
  return at;
}

void cStringBuilder::HeapMinimize() {
  block_.resize(WholeChunks(used_));
  block_.shrink_to_fit();
}

}  // namespace kaunter
