#include "play/transcript.h"

#include <algorithm>
#include <utility>

#include "play/script.h"

namespace kaunter {
namespace {

std::string_view KindName(MessageKind kind) {
  switch (kind) {
    case MessageKind::critical:
      return "critical";
    case MessageKind::warning:
      return "warning";
    case MessageKind::question:
      return "question";
    case MessageKind::information:
      return "information";
    case MessageKind::plain:
      break;
  }
  return "plain";
}

}  // namespace

std::string TranscriptEntry::Line() const {
  std::string line = "[" + std::string(KindName(kind)) + "] " + title + ": " + text;
  if (is_question) line += " -> " + answer;
  return line;
}

void Transcript::Add(TranscriptEntry entry) {
  out_ << SameBreaks(entry.Line()) << '\n' << std::flush;
  entries_.push_back(std::move(entry));
}

TranscriptEntry* Transcript::OldestUnexpected(bool question) {
  const auto found =
      std::find_if(entries_.begin(), entries_.end(), [question](const TranscriptEntry& entry) {
        return !entry.expected && entry.is_question == question;
      });
  return found == entries_.end() ? nullptr : &*found;
}

void Transcript::Note(std::string_view line) { out_ << line << '\n' << std::flush; }

}  // namespace kaunter
