// The lines of a listing, word by word: column, group, chart and the others.
#pragma once

#include <string>
#include <vector>

#include "reports/report_file.h"

namespace kaunter {

// What it refuses is thrown as std::invalid_argument that says what is wrong; file and line are the
// caller's.
class LineWords {
 public:
  explicit LineWords(std::vector<ReportWord> words) : words_(std::move(words)) {}

  const std::vector<ReportWord>& all() const { return words_; }
  const std::string& key() const { return words_[0].text; }
  const std::string& Word(std::size_t at) const { return words_[at].text; }
  std::size_t size() const { return words_.size(); }
  void Need(std::size_t count) const;

  // The caption that begins here: a text, and behind it perhaps the Chinese one. The second form
  // tells where the words go on.
  std::string Caption(std::size_t at, const ReportFile& file) const;
  std::string Caption(std::size_t at, const ReportFile& file, std::size_t& next) const;

  void Paper(ReportFile& file) const;
  void Alias(ReportFile& file) const;
  ReportField Field(const ReportFile& file) const;
  ReportColumn Column(const ReportFile& file, const FileLine& line) const;
  ReportGroup Group(const ReportFile& file, const FileLine& line) const;
  ReportChart Chart(const ReportFile& file, const FileLine& line) const;
  ReportPicture Picture(const FileLine& line) const;

 private:
  bool Quoted(std::size_t at) const { return at < words_.size() && words_[at].quoted; }
  bool Is(std::size_t at, std::string_view word) const {
    return at < words_.size() && !words_[at].quoted && words_[at].text == word;
  }
  double Number(std::size_t at, const std::string& what) const;
  GroupBy By(std::size_t& at) const;
  void ColumnOptions(std::size_t at, ReportColumn& column) const;
  [[noreturn]] void Unknown(std::size_t at, std::string_view known) const;

  std::vector<ReportWord> words_;
};

}  // namespace kaunter
