// What a person before the screen would have been told: message boxes and questions, printed as
// they come and kept for the expectations.
#pragma once

#include <deque>
#include <ostream>
#include <string>
#include <string_view>

#include "screen/desk.h"

namespace kaunter {

struct TranscriptEntry {
  MessageKind kind = MessageKind::plain;
  std::string title;
  std::string text;
  bool is_question = false;  // it was answered
  std::string answer;
  bool expected = false;  // an expectation has looked at it

  // "[kind] Title: text", for a question followed by " -> answer".
  std::string Line() const;
};

class Transcript {
 public:
  explicit Transcript(std::ostream& out) : out_(out) {}

  void Add(TranscriptEntry entry);
  const std::deque<TranscriptEntry>& entries() const { return entries_; }
  // The oldest message box (or question) that nobody has expected yet; null when none is left.
  TranscriptEntry* OldestUnexpected(bool question);
  // Anything else that a person would notice: a line of its own.
  void Note(std::string_view line);

 private:
  std::ostream& out_;
  std::deque<TranscriptEntry> entries_;
};

}  // namespace kaunter
